#include "LayoutFactor.h"

#include <ranges>

namespace RVCore::LayoutInternal {

void Factor::solve(SparseVector& positions, SparseVector& columns)
{
    for (const Exchange& exchange : std::views::reverse(m_exchanges)) {
        double rest = positions[exchange.position];
        for (std::size_t i = exchange.firstTerm; i < exchange.lastTerm; ++i)
            rest -= m_exchangeTerms[i].coefficient * positions[m_exchangeTerms[i].column];
        if (rest != 0.0 || positions[exchange.position] != 0.0)
            positions.set(exchange.position, rest / exchange.pivot);
    }
    for (const Index position : positions.indices())
        m_queue.push(m_stepOf[position]);
    const auto pushOn = [&](Index column, double value) {
        columns.add(column, value);
        const Index step = m_stepOf[column];
        visitColumn(column, [&](Index position, double coefficient) {
            const Index other = m_stepOf[position];
            if (other > step && !(isInBump(step) && isInBump(other))) {
                positions.add(position, -coefficient * value);
                m_queue.push(other);
            }
        });
    };
    Index done = 0;
    for (Index step = m_queue.pop(); step != none; step = m_queue.pop()) {
        if (step < done)
            continue;
        if (isInBump(step)) {
            m_bumpWork.clear();
            for (Index i = m_bumpBegin; i < m_bumpEnd; ++i)
                m_bumpWork.push_back(positions[m_columnOfStep[i]]);
            solveBump(m_bumpWork);
            for (Index i = m_bumpBegin; i < m_bumpEnd; ++i) {
                if (m_bumpWork[i - m_bumpBegin] != 0.0)
                    pushOn(m_columnOfStep[i], m_bumpWork[i - m_bumpBegin]);
            }
            done = m_bumpEnd;
        } else if (const double value = positions[m_columnOfStep[step]]; value != 0.0) {
            pushOn(m_columnOfStep[step], value / pivot(m_columnOfStep[step]));
        }
    }
    positions.clear();
}

void Factor::solveTransposed(SparseVector& columns, SparseVector& positions)
{
    // The queue ascends, so the steps are counted from the end.
    const Index last = m_size - 1;
    for (const Index column : columns.indices())
        m_queue.push(last - m_stepOf[column]);
    const auto pushOn = [&](Index position, double value) {
        positions.add(position, value);
        const Index step = m_stepOf[position];
        for (const Term& term : m_system->terms(factored().rows[position])) {
            const Index other = m_stepOf[term.column];
            if (other < step && !(isInBump(step) && isInBump(other))) {
                columns.add(term.column, -term.coefficient * value);
                m_queue.push(last - other);
            }
        }
    };
    bool isBumpDone = false;
    for (Index reversed = m_queue.pop(); reversed != none; reversed = m_queue.pop()) {
        const Index step = last - reversed;
        if (isInBump(step)) {
            if (isBumpDone)
                continue;
            isBumpDone = true;
            m_bumpWork.clear();
            for (Index i = m_bumpBegin; i < m_bumpEnd; ++i)
                m_bumpWork.push_back(columns[m_columnOfStep[i]]);
            solveBumpTransposed(m_bumpWork);
            for (Index i = m_bumpBegin; i < m_bumpEnd; ++i) {
                if (m_bumpWork[i - m_bumpBegin] != 0.0)
                    pushOn(m_columnOfStep[i], m_bumpWork[i - m_bumpBegin]);
            }
        } else if (const double value = columns[m_columnOfStep[step]]; value != 0.0) {
            pushOn(m_columnOfStep[step], value / pivot(m_columnOfStep[step]));
        }
    }
    columns.clear();
    for (const Exchange& exchange : m_exchanges) {
        const double value = positions[exchange.position];
        if (value == 0.0)
            continue;
        const double quotient = value / exchange.pivot;
        positions.set(exchange.position, quotient);
        for (std::size_t i = exchange.firstTerm; i < exchange.lastTerm; ++i)
            positions.add(m_exchangeTerms[i].column, -m_exchangeTerms[i].coefficient * quotient);
    }
}

void Factor::solveBump(std::vector<double>& work)
{
    const std::size_t size = work.size();
    std::vector<double>& result = m_bumpSwap;
    result.resize(size);
    for (std::size_t i = 0; i < size; ++i) {
        const double* row = &m_bump[m_bumpOrder[i] * size];
        double sum = work[m_bumpOrder[i]];
        for (std::size_t j = 0; j < i; ++j)
            sum -= row[j] * result[j];
        result[i] = sum;
    }
    for (std::size_t i = size; i-- > 0;) {
        const double* row = &m_bump[m_bumpOrder[i] * size];
        double sum = result[i];
        for (std::size_t j = i + 1; j < size; ++j)
            sum -= row[j] * result[j];
        result[i] = sum / row[i];
    }
    work = result;
}

void Factor::solveBumpTransposed(std::vector<double>& work)
{
    const std::size_t size = work.size();
    for (std::size_t i = 0; i < size; ++i) {
        const double* row = &m_bump[m_bumpOrder[i] * size];
        work[i] /= row[i];
        for (std::size_t j = i + 1; j < size; ++j)
            work[j] -= row[j] * work[i];
    }
    for (std::size_t i = size; i-- > 0;) {
        const double* row = &m_bump[m_bumpOrder[i] * size];
        for (std::size_t j = 0; j < i; ++j)
            work[j] -= row[j] * work[i];
    }
    std::vector<double>& result = m_bumpSwap;
    result.resize(size);
    for (std::size_t i = 0; i < size; ++i)
        result[m_bumpOrder[i]] = work[i];
    work = result;
}

void Factor::derive(const Targets& targets, std::span<const Index> affected, std::vector<double>& values,
                    std::vector<Index>& changed)
{
    for (const Index position : affected)
        m_queue.push(m_stepOf[position]);
    Index done = 0;
    for (Index step = m_queue.pop(); step != none; step = m_queue.pop()) {
        if (step < done)
            continue;
        if (isInBump(step)) {
            deriveBump(targets, values, changed);
            done = m_bumpEnd;
        } else {
            deriveStep(step, targets, values, changed);
        }
    }
}

void Factor::deriveStep(Index step, const Targets& targets, std::vector<double>& values, std::vector<Index>& changed)
{
    const Index column = m_columnOfStep[step];
    double sum = targets.at(column);
    double pivot = 1.0;
    for (const Term& term : m_system->terms(factored().rows[column])) {
        if (term.column != column)
            sum -= term.coefficient * values[term.column];
        else
            pivot = term.coefficient;
    }
    setDerived(column, sum / pivot, values, changed);
}

void Factor::deriveBump(const Targets& targets, std::vector<double>& values, std::vector<Index>& changed)
{
    m_bumpWork.clear();
    for (Index i = m_bumpBegin; i < m_bumpEnd; ++i) {
        const Index position = m_columnOfStep[i];
        double sum = targets.at(position);
        for (const Term& term : m_system->terms(factored().rows[position])) {
            if (!isInBump(m_stepOf[term.column]))
                sum -= term.coefficient * values[term.column];
        }
        m_bumpWork.push_back(sum);
    }
    solveBump(m_bumpWork);
    for (Index i = m_bumpBegin; i < m_bumpEnd; ++i)
        setDerived(m_columnOfStep[i], m_bumpWork[i - m_bumpBegin], values, changed);
}

void Factor::setDerived(Index column, double value, std::vector<double>& values, std::vector<Index>& changed)
{
    value += 0.0; // no negative zero
    if (value == values[column])
        return;
    values[column] = value;
    changed.push_back(column);
    const Index step = m_stepOf[column];
    visitColumn(column, [&](Index position, double) {
        const Index other = m_stepOf[position];
        if (other > step && !(isInBump(step) && isInBump(other)))
            m_queue.push(other);
    });
}

} // namespace RVCore::LayoutInternal
