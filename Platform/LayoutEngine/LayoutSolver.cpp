#include "LayoutSolver.h"

namespace RVCore::LayoutInternal {

void Solver::solve()
{
    if (!m_model.hasNotes())
        return;
    ++m_statistics.solves;
    m_changedVariables.clear();
    m_isAmbiguousKnown = false;
    dropChangedConflicts();
    m_notedClasses = std::exchange(m_model.notedClasses(), {});
    for (const Index index : m_notedClasses)
        m_model.classes()[index].isNoted = false;
    rebuildParts();
    updateCosts();
    runParts();
    settleConflictsByThemselves();
    reportConflicts();
    std::sort(m_changedVariables.begin(), m_changedVariables.end());
    m_statistics.parts = std::uint32_t(m_parts.size() - m_freeParts.size());
}

// Pass 2. A part is built anew when a row of it appears or goes, or a priority it has no level for.
void Solver::rebuildParts()
{
    std::vector<Index> loose, gone;
    m_rebuiltParts.clear();
    for (const Index index : m_notedClasses) {
        FormClass& formClass = m_model.classes()[index];
        const bool isWanted = !formClass.constraints.empty();
        if (!isWanted)
            gone.push_back(index);
        const bool isPresent = formClass.part != none;
        if (isPresent && isWanted && m_parts[formClass.part]->coversPriorities(m_model, index))
            continue;
        if (takesOwnRow(index))
            continue;
        for (const Term& term : formClass.terms) {
            if (m_model.variables()[term.column].part != none)
                takeApart(m_model.variables()[term.column].part, loose);
            else if (isWanted && !std::exchange(m_model.variables()[term.column].isLoose, true))
                loose.push_back(term.column);
        }
    }
    for (const Index index : gone) {
        FormClass& formClass = m_model.classes()[index];
        if (formClass.part != none && formClass.terms.size() == 1) {
            m_parts[formClass.part]->forgetClass(m_model, index);
            m_touchedParts.push_back(formClass.part);
        }
        formClass.part = none;
        formClass.row = none;
    }
    m_model.removeClasses(gone);
    std::erase_if(m_notedClasses, [&](Index index) { return m_model.classes()[index].terms.empty(); });
    std::sort(loose.begin(), loose.end());
    buildParts(loose);
    m_model.recycleVariables();
}

// A form of one variable comes and goes without building anything: the variable's own row is there anyhow.
bool Solver::takesOwnRow(Index index)
{
    FormClass& formClass = m_model.classes()[index];
    const Variable& variable = m_model.variables()[formClass.terms.front().column];
    if (formClass.terms.size() != 1 || variable.part == none)
        return false;
    if (formClass.constraints.empty())
        return formClass.part != none && variable.classes.size() > 1;
    if (formClass.part != none || !m_parts[variable.part]->coversPriorities(m_model, index))
        return false;
    formClass.part = variable.part;
    formClass.row = variable.column;
    return true;
}

void Solver::takeApart(Index part, std::vector<Index>& loose)
{
    for (const Index variable : m_parts[part]->variables()) {
        loose.push_back(variable);
        m_model.variables()[variable].isLoose = true;
        m_model.variables()[variable].part = none;
        for (const ClassUse& use : m_model.variables()[variable].classes)
            m_model.classes()[use.formClass].part = none;
    }
    m_parts[part]->clear();
    m_freeParts.push_back(part);
}

Index Solver::takePart()
{
    if (m_freeParts.empty()) {
        m_parts.push_back(std::make_unique<Part>());
        return Index(m_parts.size() - 1);
    }
    const Index part = m_freeParts.back();
    m_freeParts.pop_back();
    return part;
}

// Sorts variables into what hangs together by shared classes, without recursion.
void Solver::buildParts(const std::vector<Index>& loose)
{
    constexpr Index reached = none - 1;
    std::vector<Index> members;
    for (const Index first : loose) {
        Variable& variable = m_model.variables()[first];
        variable.isLoose = false;
        if (variable.part != none)
            continue;
        if (variable.classes.empty()) {
            // Nothing holds it any more.
            if (variable.value != 0.0 && variable.isAlive)
                m_changedVariables.push_back({first});
            variable.value = 0.0;
            continue;
        }
        members.assign(1, first);
        variable.part = reached;
        for (std::size_t next = 0; next < members.size(); ++next) {
            for (const ClassUse& use : m_model.variables()[members[next]].classes) {
                FormClass& formClass = m_model.classes()[use.formClass];
                if (formClass.part == reached)
                    continue;
                formClass.part = reached;
                for (const Term& term : formClass.terms) {
                    if (std::exchange(m_model.variables()[term.column].part, reached) != reached)
                        members.push_back(term.column);
                }
            }
        }
        std::sort(members.begin(), members.end());
        const Index part = takePart();
        m_parts[part]->build(m_model, part, members);
        m_rebuiltParts.push_back(part);
        ++m_statistics.builds;
    }
}

// Pass 3.
void Solver::updateCosts()
{
    for (const Index index : m_notedClasses) {
        Part& part = *m_parts[m_model.classes()[index].part];
        if (!part.isNew())
            part.update(m_model, index);
    }
}

// Pass 4. Only parts that were built or that a noted class is in can have something to do.
void Solver::runParts()
{
    std::vector<Index> parts = m_rebuiltParts;
    for (const Index index : m_notedClasses)
        parts.push_back(m_model.classes()[index].part);
    for (const Index part : m_touchedParts)
        parts.push_back(part);
    m_touchedParts.clear();
    for (const Index index : parts) {
        if (m_parts[index]->isEmpty() || !m_parts[index]->needsRun())
            continue;
        Part& part = *m_parts[index];
        Effort effort;
        part.run(effort);
        settleConflicts(part, effort);
        countEffort(effort);
        collectChanges(part);
    }
}

// Pass 5.
void Solver::collectChanges(Part& part)
{
    for (const Index column : part.simplex().movedColumns()) {
        Variable& variable = m_model.variables()[part.variables()[column]];
        const double value = part.simplex().value(column);
        if (value == variable.value)
            continue;
        variable.value = value;
        m_changedVariables.push_back({part.variables()[column]});
    }
    part.simplex().forgetMoves();
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
        for (const Index column : part->simplex().freeColumns())
            m_ambiguous.push_back(part->variables()[column]);
    }
    for (Index index = 0; index < m_model.variables().size(); ++index) {
        if (m_model.variables()[index].isAlive && m_model.variables()[index].part == none)
            m_ambiguous.push_back(index);
    }
    std::sort(m_ambiguous.begin(), m_ambiguous.end());
    m_isAmbiguousKnown = true;
    return m_ambiguous;
}

} // namespace RVCore::LayoutInternal
