#include "LayoutSolver.h"

#include "LayoutAmbiguity.h"

#include <algorithm>
#include <iterator>

namespace RVCore::LayoutInternal {

namespace {

constexpr Index reached = none - 1; // in place of a part, while what hangs together is looked for
constexpr Index waiting = none - 1; // in place of a column, of a variable that is loose

// Sorts what mostly is a few ascending runs one after another, by merging them. The buffer is kept for its memory.
template <typename T> void sortRuns(std::vector<T>& list, std::vector<T>& buffer)
{
    constexpr int mostRuns = 32;
    auto end = list.begin();
    for (int run = 0; end != list.end(); ++run) {
        if (run == mostRuns)
            return std::sort(list.begin(), list.end());
        const auto start = end;
        end = std::is_sorted_until(start, list.end());
        if (start == list.begin())
            continue;
        buffer.clear();
        std::merge(list.begin(), start, start, end, std::back_inserter(buffer));
        std::copy(buffer.begin(), buffer.end(), list.begin());
    }
}

} // namespace

void Solver::solve()
{
    if (!m_model.hasNotes())
        return;
    ++m_statistics.solves;
    const std::uint64_t buildsBefore = m_statistics.builds;
    m_changedVariables.clear();
    m_isAmbiguousKnown = false;
    dropChangedConflicts();
    m_model.takeNotedClasses(m_notedClasses);
    editParts();
    updateCosts();
    runParts();
    settleConflictsByThemselves();
    reportConflicts();
    sortRuns(m_changedVariables, m_variableBuffer);
    m_statistics.parts = std::uint32_t(m_parts.size() - m_freeParts.size());
    if (m_statistics.builds != buildsBefore)
        releaseBuffers();
}

// After a build, which needs many times what later edits do.
void Solver::releaseBuffers()
{
    for (std::vector<Index>* buffer : {&m_loose, &m_absorbedClasses, &m_indexBuffer, &m_notedClasses})
        std::vector<Index>().swap(*buffer);
    std::vector<LayoutVariable>().swap(m_variableBuffer);
    m_work.release();
}

// Pass 2. Parts are edited in place where that is the cheaper way; others are taken apart, and what hangs together
// now is built anew.
void Solver::editParts()
{
    m_loose.clear();
    m_absorbedClasses.clear();
    // 1. Parts that lose too much, or have no level for a new priority.
    std::vector<Index> gone;
    for (const Index index : m_notedClasses) {
        if (m_model.hasConstraints(index))
            continue;
        gone.push_back(index);
        if (const Index part = m_model.partOf(index); part != none && !isOwnForm(index))
            m_parts[part]->noteWear();
    }
    for (const Index index : m_notedClasses) {
        const Index part = m_model.partOf(index);
        if (part != none && (m_parts[part]->isWorn() || !m_parts[part]->coversPriorities(m_model, index)))
            takeApart(part);
    }
    // 2. What new forms tie together goes into one part.
    for (const Index index : m_notedClasses) {
        if (m_model.partOf(index) == none && m_model.hasConstraints(index))
            tieTogether(index);
    }
    // 3. Rows in place.
    for (const Index index : m_notedClasses)
        editInPlace(index);
    for (const Index index : m_absorbedClasses)
        editInPlace(index);
    m_model.removeClasses(gone);
    std::erase_if(m_notedClasses, [&](Index index) { return !m_model.hasConstraints(index); });
    // 4. The rest anew.
    sortRuns(m_loose, m_indexBuffer);
    buildParts(m_loose);
    letGoOfRemovedVariables();
}

// Sees to it that the variables of a new form are all in one part, or all loose. The largest of their parts takes in
// the others, or is taken apart as well where these are too many.
void Solver::tieTogether(Index index)
{
    const FormTerms terms = m_model.terms(index);
    Index largest = none;
    for (const Term& term : terms) {
        const Index part = m_model.variables()[term.column].part;
        if (part != none && (largest == none || m_parts[part]->variableCount() > m_parts[largest]->variableCount()))
            largest = part;
    }
    for (const Term& term : terms) {
        const Index part = m_model.variables()[term.column].part;
        if (part != none && part != largest)
            takeApart(part);
    }
    if (largest != none && !absorb(index, *m_parts[largest]))
        takeApart(largest);
    for (const Term& term : terms) {
        Variable& variable = m_model.variables()[term.column];
        if (variable.part == none && std::exchange(variable.column, waiting) != waiting)
            m_loose.push_back(term.column);
    }
}

// Takes what hangs on a form and is in no part into one. False, and nothing is done, when that is too much, or needs
// levels that the part does not have.
bool Solver::absorb(Index first, Part& part)
{
    const std::size_t most = part.variableCount() / 4 + 8;
    std::vector<Index> classes{first}, variables;
    bool fits = true;
    for (std::size_t next = 0; next < classes.size() && fits; ++next) {
        fits = !part.isWorn() && part.coversPriorities(m_model, classes[next]);
        for (const Term& term : m_model.terms(classes[next])) {
            Variable& variable = m_model.variables()[term.column];
            if (variable.part != none)
                continue;
            variable.part = reached;
            variables.push_back(term.column);
            m_model.visitClasses(term.column, [&](Index formClass) {
                if (m_model.partOf(formClass) == none)
                    classes.push_back(formClass);
            });
        }
        fits = fits && variables.size() <= most;
    }
    for (const Index variable : variables)
        m_model.variables()[variable].part = none;
    if (!fits)
        return false;
    for (const Index variable : variables)
        part.addVariable(m_model, variable);
    m_absorbedClasses.insert(m_absorbedClasses.end(), classes.begin(), classes.end());
    return true;
}

void Solver::editInPlace(Index index)
{
    const bool isWanted = m_model.hasConstraints(index);
    const Index present = m_model.partOf(index);
    if (!isWanted && present != none) {
        m_model.setPart(index, none);
        m_parts[present]->removeClass(m_model, index);
        m_touchedParts.insert(present);
        if (m_parts[present]->classCount() == 0)
            takeApart(present);
    } else if (isWanted && present == none) {
        if (const Index part = m_model.variables()[m_model.terms(index).front().column].part; part != none) {
            m_parts[part]->addClass(m_model, index);
            m_touchedParts.insert(part);
        }
    }
}

// Of removed variables, in parts that stay.
void Solver::letGoOfRemovedVariables()
{
    for (const Index index : m_model.removedVariables()) {
        const Index part = m_model.variables()[index].part;
        if (part == none)
            continue;
        m_parts[part]->removeVariable(m_model, index);
        if (m_parts[part]->variableCount() == 0)
            freePart(part);
    }
    m_model.recycleVariables();
}

void Solver::freePart(Index part)
{
    m_parts[part]->clear();
    m_freeParts.push_back(part);
}

void Solver::takeApart(Index part)
{
    for (const Index variable : m_parts[part]->variables()) {
        if (variable == none)
            continue;
        m_loose.push_back(variable);
        m_model.variables()[variable].column = waiting;
        m_model.variables()[variable].part = none;
        m_model.setPart(ownForm(variable), none);
        for (const Index formClass : m_model.variables()[variable].classes)
            m_model.setPart(formClass, none);
    }
    freePart(part);
}

Index Solver::takePart()
{
    if (m_freeParts.empty()) {
        m_parts.push_back(std::make_unique<Part>(m_work));
        m_touchedParts.grow(m_parts.size());
        return Index(m_parts.size() - 1);
    }
    const Index part = m_freeParts.back();
    m_freeParts.pop_back();
    return part;
}

// Sorts variables into what hangs together by shared classes, without recursion.
void Solver::buildParts(const std::vector<Index>& loose)
{
    std::vector<Index> members;
    for (const Index first : loose) {
        Variable& variable = m_model.variables()[first];
        if (variable.part != none)
            continue;
        if (variable.classes.empty() && !variable.own.hasConstraints()) {
            // Nothing holds it any more.
            if (variable.value != 0.0 && m_model.isAlive(first))
                m_changedVariables.push_back({first});
            variable.value = 0.0;
            variable.column = none;
            continue;
        }
        members.assign(1, first);
        variable.part = reached;
        for (std::size_t next = 0; next < members.size(); ++next) {
            for (const Index formClass : m_model.variables()[members[next]].classes) {
                if (m_model.partOf(formClass) == reached)
                    continue;
                m_model.setPart(formClass, reached);
                for (const Term& term : m_model.terms(formClass)) {
                    if (std::exchange(m_model.variables()[term.column].part, reached) != reached)
                        members.push_back(term.column);
                }
            }
        }
        sortRuns(members, m_indexBuffer);
        const Index part = takePart();
        m_parts[part]->build(m_model, part, members);
        m_touchedParts.insert(part);
        ++m_statistics.builds;
    }
}

// Pass 3.
void Solver::updateCosts()
{
    for (const Index index : m_notedClasses) {
        Part& part = *m_parts[m_model.partOf(index)];
        if (!part.isNew())
            part.update(m_model, index);
    }
}

// Pass 4. Only parts that were built or that a noted class is in can have something to do.
void Solver::runParts()
{
    for (const Index index : m_notedClasses)
        m_touchedParts.insert(m_model.partOf(index));
    for (const Index index : m_touchedParts.indices()) {
        if (m_parts[index]->isEmpty() || !m_parts[index]->needsRun())
            continue;
        Part& part = *m_parts[index];
        const bool wasNew = part.isNew();
        Effort effort;
        part.run(effort);
        settleConflicts(part, effort);
        countEffort(effort);
        collectChanges(part);
        if (wasNew)
            part.simplex().releaseBuffers();
    }
    m_touchedParts.clear();
}

// Pass 5.
void Solver::collectChanges(Part& part)
{
    for (const Index column : part.simplex().movedColumns()) {
        if (part.variables()[column] == none)
            continue;
        Variable& variable = m_model.variables()[part.variables()[column]];
        const double value = part.simplex().value(column);
        if (value == variable.value)
            continue;
        variable.value = value;
        m_changedVariables.push_back({part.variables()[column]});
    }
    part.simplex().forgetMoves();
}

void Solver::forgetChangedVariables()
{
    constexpr std::size_t usual = 256; // of what a resize moves; more is not kept for the next one
    m_changedVariables.clear();
    if (m_changedVariables.capacity() > usual)
        m_changedVariables.shrink_to_fit();
}

void Solver::countEffort(const Effort& effort)
{
    m_statistics.pivots += effort.pivots;
    m_statistics.kinkMoves += effort.kinkMoves;
    m_statistics.factorisations += effort.factorisations;
    m_statistics.limitsReached += effort.limitsReached;
}

const std::vector<Index>& Solver::ambiguousVariables()
{
    if (m_isAmbiguousKnown)
        return m_ambiguous;
    m_ambiguous.clear();
    for (const auto& part : m_parts) {
        if (part->isEmpty())
            continue;
        Effort effort;
        for (const Index column : ambiguousColumns(part->system(), part->simplex(), effort)) {
            const Index index = part->variables()[column];
            if (index != none && m_model.isAlive(index))
                m_ambiguous.push_back(index);
        }
        countEffort(effort);
    }
    for (Index index = 0; index < m_model.variables().size(); ++index) {
        if (m_model.isAlive(index) && m_model.variables()[index].part == none)
            m_ambiguous.push_back(index);
    }
    std::sort(m_ambiguous.begin(), m_ambiguous.end());
    m_isAmbiguousKnown = true;
    return m_ambiguous;
}

} // namespace RVCore::LayoutInternal
