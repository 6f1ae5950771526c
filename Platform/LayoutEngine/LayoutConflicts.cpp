#include "LayoutConflictSearch.h"
#include "LayoutSolver.h"

#include <bit>
#include <numeric>

namespace RVCore::LayoutInternal {

void Solver::dropChangedConflicts()
{
    std::vector<Index>& changed = m_model.changedConflictMembers();
    if (changed.empty())
        return;
    std::sort(changed.begin(), changed.end());
    const auto isTouched = [&](const Conflict& conflict) {
        return std::any_of(conflict.members.begin(), conflict.members.end(),
                           [&](Index member) { return std::binary_search(changed.begin(), changed.end(), member); });
    };
    for (Conflict& conflict : m_conflicts) {
        if (isTouched(conflict))
            dropConflict(conflict);
    }
    std::erase_if(m_conflicts, [](const Conflict& conflict) { return conflict.members.empty(); });
    changed.clear();
    for (const Conflict& conflict : m_conflicts) {
        for (const Index member : conflict.members)
            m_model.constraints()[member].isInConflict = true;
    }
}

// The constraint that was left out takes part again. A number that stands for another constraint by now is not
// left out, and noting it does no harm.
void Solver::dropConflict(Conflict& conflict)
{
    for (const Index member : conflict.members)
        m_model.constraints()[member].isInConflict = false;
    Constraint& leftOut = m_model.constraints()[conflict.members.back()];
    if (leftOut.isAlive && leftOut.isLeftOut) {
        leftOut.isLeftOut = false;
        m_model.noteChange(conflict.members.back());
    }
    conflict.members.clear();
}

std::vector<Index> Solver::requiredConstraints(Part& part, const std::vector<Index>& rows) const
{
    std::vector<Index> result;
    for (const Index row : rows) {
        if (part.classOf(row) == none)
            continue;
        for (const Index index : m_model.constraintsOf(part.classOf(row))) {
            const Constraint& constraint = m_model.constraints()[index];
            if (constraint.priority == layoutPriorityRequired && !constraint.isLeftOut)
                result.push_back(index);
        }
    }
    std::sort(result.begin(), result.end(), [&](Index a, Index b) {
        return m_model.constraints()[a].sequence < m_model.constraints()[b].sequence;
    });
    return result;
}

// As long as the part cannot meet all required constraints, finds out which contradict each other and leaves the
// newest of each set out. The rows with a price at the required level hold at least one contradiction. Where the
// contradictions hang together, leaving one out lets others back in; then all of them are settled anew in one go.
void Solver::settleConflicts(Part& part, Effort& effort)
{
    constexpr int mostRounds = 4;
    const auto allRows = [&] {
        std::vector<Index> all(part.system().rowCount());
        std::iota(all.begin(), all.end(), Index(0));
        return all;
    };
    for (int round = 0; round <= mostRounds; ++round) {
        if (part.simplex().violatedRows(0).empty())
            break;
        if (round == mostRounds)
            letAllBackIn(part);
        const bool takesAll = round == mostRounds;
        auto found = findConflicts(
            m_model, requiredConstraints(part, takesAll ? allRows() : part.simplex().pricedRows(0)), effort);
        if (found.empty() && !takesAll)
            found = findConflicts(m_model, requiredConstraints(part, allRows()), effort);
        if (found.empty())
            break; // rounding
        for (std::vector<Index>& members : found)
            leaveOut(std::move(members), part);
        std::erase_if(m_conflicts, [](const Conflict& conflict) { return conflict.members.empty(); });
        part.run(effort);
    }
    part.simplex().forgetSuspects();
}

void Solver::letAllBackIn(Part& part)
{
    for (Conflict& conflict : m_conflicts) {
        const Constraint& leftOut = m_model.constraints()[conflict.members.back()];
        if (leftOut.formClass != none && m_parts[m_model.partOf(leftOut.formClass)].get() == &part)
            letBackIn(conflict, part);
    }
    std::erase_if(m_conflicts, [](const Conflict& conflict) { return conflict.members.empty(); });
}

void Solver::letBackIn(Conflict& conflict, Part& part)
{
    const Index back = conflict.members.back();
    for (const Index member : conflict.members)
        m_model.constraints()[member].isInConflict = false;
    conflict.members.clear();
    m_model.constraints()[back].isLeftOut = false;
    part.update(m_model, m_model.constraints()[back].formClass);
}

void Solver::leaveOut(std::vector<Index> members, Part& part)
{
    const Index leftOut = members.back();
    // What contradicted the one that is now out has to be looked at again.
    for (Conflict& conflict : m_conflicts) {
        if (std::find(conflict.members.begin(), conflict.members.end(), leftOut) == conflict.members.end())
            continue;
        letBackIn(conflict, part);
    }
    m_model.constraints()[leftOut].isLeftOut = true;
    part.update(m_model, m_model.constraints()[leftOut].formClass);
    Conflict& conflict = m_conflicts.emplace_back();
    conflict.cause = causeOf(members);
    conflict.members = std::move(members);
    for (const Conflict& one : m_conflicts) {
        for (const Index member : one.members)
            m_model.constraints()[member].isInConflict = true;
    }
}

// Forms without variables.
void Solver::settleConflictsByThemselves()
{
    for (const Index index : std::exchange(m_model.conflictsByThemselves(), {})) {
        Constraint& constraint = m_model.constraints()[index];
        constraint.isLeftOut = constraint.priority == layoutPriorityRequired && !Model::holdsByItself(constraint);
        if (!constraint.isLeftOut)
            continue;
        constraint.isInConflict = true;
        Conflict& conflict = m_conflicts.emplace_back();
        conflict.members = {index};
        conflict.cause = causeOf(conflict.members);
    }
}

std::uint64_t Solver::causeOf(const std::vector<Index>& members) const
{
    // What the members say, not which they are: equal ones put back in their place are the same cause.
    std::uint64_t hash = members.size();
    const auto mix = [&](std::uint64_t value) {
        hash = (hash ^ value) * 0x9e3779b97f4a7c15u;
        hash ^= hash >> 29;
    };
    for (const Index member : members) {
        const Constraint& constraint = m_model.constraints()[member];
        const bool hasForm = constraint.formClass != none;
        if (hasForm) {
            for (const Term& term : m_model.terms(constraint.formClass)) {
                mix(term.column);
                mix(std::bit_cast<std::uint64_t>(double(term.coefficient)));
            }
        }
        mix(std::bit_cast<std::uint64_t>(m_model.scale(member)));
        mix(std::bit_cast<std::uint64_t>(constraint.constant));
        mix(std::bit_cast<std::uint8_t>(constraint.relation));
        mix(hasForm ? 0 : constraint.owner);
    }
    return hash;
}

void Solver::reportConflicts()
{
    std::set<std::uint64_t> causes;
    for (Conflict& conflict : m_conflicts) {
        causes.insert(conflict.cause);
        if (!std::exchange(conflict.isNew, false) || m_knownCauses.contains(conflict.cause))
            continue;
        LayoutConflict& report = m_newConflicts.emplace_back();
        for (const Index member : conflict.members)
            report.constraints.push_back(m_model.constraints()[member].owner);
        report.leftOut = report.constraints.back();
    }
    m_knownCauses = std::move(causes);
}

} // namespace RVCore::LayoutInternal
