#include "LayoutFactor.h"

#include <cmath>
#include <utility>

namespace RVCore::LayoutInternal {

namespace {

// Rows have a largest coefficient of 1. A pivot below this fraction of it is taken for rounding.
constexpr double smallestPivot = 1e-11;

} // namespace

void Factor::factor(const System& system, Basis& basis, std::vector<Repair>& repairs)
{
    m_system = &system;
    m_basis = &basis;
    m_size = Index(basis.rows.size());
    m_before = {};
    m_exchanges.clear();
    m_exchangeTerms.clear();
    repairs.clear();
    // Each round replaces dependent rows by own rows of the columns left over; a second one nearly always suffices.
    for (;;) {
        Matching matching{std::vector<Index>(m_size, none), std::vector<Index>(m_size, none)};
        m_columnOfStep.assign(m_size, none);
        m_stepOf.assign(m_size, none);
        m_bumpBegin = 0;
        takeRowSingletons(matching);
        takeColumnSingletons(matching);
        takeBump(matching);
        const std::size_t known = repairs.size();
        if (factorBump(matching, repairs)) {
            order(matching, basis);
            break;
        }
        for (std::size_t i = known; i < repairs.size(); ++i) {
            const Index row = system.ownRow(repairs[i].column);
            const Index position = std::exchange(basis.places[repairs[i].row], none);
            basis.rows[position] = row;
            basis.places[row] = position;
        }
    }
    m_queue.resize(m_size);
}

void Factor::order(const Matching& matching, Basis& basis)
{
    std::vector<Index> rows(m_size);
    for (Index step = 0; step < m_size; ++step)
        rows[m_columnOfStep[step]] = basis.rows[matching.positionOfStep[step]];
    basis.rows.swap(rows);
    for (Index position = 0; position < m_size; ++position)
        basis.places[basis.rows[position]] = position;
}

void Factor::assign(Index step, Index position, Index column, Matching& matching)
{
    matching.positionOfStep[step] = position;
    matching.stepOfPosition[position] = step;
    m_columnOfStep[step] = column;
    m_stepOf[column] = step;
}

void Factor::takeRowSingletons(Matching& matching)
{
    std::vector<Index> count(m_size), todo;
    for (Index position = 0; position < m_size; ++position) {
        count[position] = Index(m_system->terms(m_basis->rows[position]).size());
        if (count[position] == 1)
            todo.push_back(position);
    }
    for (std::size_t next = 0; next < todo.size(); ++next) {
        const Index position = todo[next];
        if (count[position] != 1)
            continue; // another row has taken its column: dependent, left for the bump to find
        for (const Term& term : m_system->terms(m_basis->rows[position])) {
            if (m_stepOf[term.column] != none)
                continue;
            if (std::abs(term.coefficient) < smallestPivot)
                break;
            assign(m_bumpBegin++, position, term.column, matching);
            visitColumn(term.column, [&](Index other, double) {
                if (--count[other] == 1)
                    todo.push_back(other);
            });
            break;
        }
    }
}

void Factor::takeColumnSingletons(Matching& matching)
{
    std::vector<Index> count(m_size, 0), todo;
    for (Index column = 0; column < m_size; ++column) {
        if (m_stepOf[column] != none)
            continue;
        visitColumn(column,
                    [&](Index position, double) { count[column] += matching.stepOfPosition[position] == none; });
        if (count[column] == 1)
            todo.push_back(column);
    }
    m_bumpEnd = m_size;
    for (std::size_t next = 0; next < todo.size(); ++next) {
        const Index column = todo[next];
        if (count[column] != 1)
            continue;
        Index left = none;
        double coefficient = 0.0;
        visitColumn(column, [&](Index position, double its) {
            if (matching.stepOfPosition[position] == none) {
                left = position;
                coefficient = its;
            }
        });
        if (left == none || std::abs(coefficient) < smallestPivot)
            continue;
        // Taken from the end: what is found first is derived last.
        assign(--m_bumpEnd, left, column, matching);
        for (const Term& term : m_system->terms(m_basis->rows[left])) {
            if (m_stepOf[term.column] == none && --count[term.column] == 1)
                todo.push_back(term.column);
        }
    }
}

// What no order makes triangular.
void Factor::takeBump(Matching& matching)
{
    Index column = 0;
    for (Index position = 0, step = m_bumpBegin; step < m_bumpEnd; ++position) {
        if (matching.stepOfPosition[position] != none)
            continue;
        while (m_stepOf[column] != none)
            ++column;
        assign(step++, position, column, matching);
    }
}

bool Factor::factorBump(const Matching& matching, std::vector<Repair>& repairs)
{
    const Index size = m_bumpEnd - m_bumpBegin;
    m_bump.assign(std::size_t(size) * size, 0.0);
    for (Index i = 0; i < size; ++i) {
        for (const Term& term : m_system->terms(m_basis->rows[matching.positionOfStep[m_bumpBegin + i]])) {
            if (isInBump(m_stepOf[term.column]))
                m_bump[std::size_t(i) * size + (m_stepOf[term.column] - m_bumpBegin)] = term.coefficient;
        }
    }
    // Gauss elimination with row exchanges; columns without a pivot are put aside with the rows left over.
    m_bumpOrder.resize(size);
    for (Index i = 0; i < size; ++i)
        m_bumpOrder[i] = i;
    std::vector<Index> freeColumns;
    Index rank = 0;
    for (Index column = 0; column < size; ++column) {
        Index best = none;
        double magnitude = smallestPivot;
        for (Index i = rank; i < size; ++i) {
            const double candidate = std::abs(m_bump[std::size_t(m_bumpOrder[i]) * size + column]);
            if (candidate > magnitude) {
                magnitude = candidate;
                best = i;
            }
        }
        if (best == none) {
            freeColumns.push_back(column);
            continue;
        }
        std::swap(m_bumpOrder[rank], m_bumpOrder[best]);
        const double* pivotRow = &m_bump[std::size_t(m_bumpOrder[rank]) * size];
        for (Index i = rank + 1; i < size; ++i) {
            double* row = &m_bump[std::size_t(m_bumpOrder[i]) * size];
            if (row[column] == 0.0)
                continue;
            const double multiplier = row[column] / pivotRow[column];
            for (Index j = column + 1; j < size; ++j)
                row[j] -= multiplier * pivotRow[j];
            row[column] = multiplier;
        }
        ++rank;
    }
    for (std::size_t i = 0; i < freeColumns.size(); ++i) {
        repairs.push_back({m_basis->rows[matching.positionOfStep[m_bumpBegin + m_bumpOrder[rank + i]]],
                           m_columnOfStep[m_bumpBegin + freeColumns[i]]});
    }
    return freeColumns.empty();
}

bool Factor::canReplace(Index position, Index row) const
{
    const Index step = m_stepOf[position];
    if (isInBump(step) || !m_exchanges.empty())
        return false;
    double pivot = 0.0;
    for (const Term& term : m_system->terms(row)) {
        if (term.column == position)
            pivot = term.coefficient;
        else if (m_stepOf[term.column] > step)
            return false;
    }
    return std::abs(pivot) >= smallestPivot;
}

void Factor::exchange(Index position, const SparseVector& alpha)
{
    if (m_exchanges.empty())
        m_before = *m_basis;
    const std::size_t first = m_exchangeTerms.size();
    for (const Index index : alpha.indices()) {
        if (index != position && alpha[index] != 0.0)
            m_exchangeTerms.push_back({index, alpha[index]});
    }
    m_exchanges.push_back({position, alpha[position], first, m_exchangeTerms.size()});
}

} // namespace RVCore::LayoutInternal
