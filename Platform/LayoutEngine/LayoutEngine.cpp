#include "LayoutEngine.h"

#include "LayoutCheck.h"
#include "LayoutSolver.h"

#include <cmath>

namespace RVCore {

using LayoutInternal::check;
using LayoutInternal::Index;

struct LayoutEngine::Implementation {
    LayoutInternal::Solver solver;

    LayoutInternal::Model& model() { return solver.model(); }
    void require(LayoutVariable variable)
    {
        check(solver.model().isAlive(variable.index), "a variable is not one of this engine");
    }
    LayoutInternal::Variable& at(LayoutVariable variable)
    {
        require(variable);
        return solver.model().variables()[variable.index];
    }
    bool contains(LayoutConstraintHandle handle)
    {
        const auto& constraints = solver.model().constraints();
        return handle.index < constraints.size() && constraints[handle.index].isAlive &&
               constraints[handle.index].generation() == handle.generation;
    }
    LayoutInternal::Constraint& at(LayoutConstraintHandle handle)
    {
        check(contains(handle), "a constraint is not installed in this engine");
        return solver.model().constraints()[handle.index];
    }
};

namespace {

void checkPriority(float priority)
{
    check(priority > 0.0f && priority <= layoutPriorityRequired, "a priority is outside (0, 1000]");
}

} // namespace

LayoutEngine::LayoutEngine() : m_implementation(std::make_unique<Implementation>()) {}

LayoutEngine::~LayoutEngine() = default;
LayoutEngine::LayoutEngine(LayoutEngine&&) noexcept = default;
LayoutEngine& LayoutEngine::operator=(LayoutEngine&&) noexcept = default;

LayoutVariable LayoutEngine::addVariable(std::uint64_t owner)
{
    m_implementation->solver.forgetAmbiguousVariables();
    return {m_implementation->model().addVariable(owner)};
}

void LayoutEngine::removeVariable(LayoutVariable variable)
{
    m_implementation->require(variable);
    m_implementation->solver.forgetAmbiguousVariables();
    m_implementation->model().removeVariable(variable.index);
}

std::uint64_t LayoutEngine::owner(LayoutVariable variable) const
{
    return m_implementation->at(variable).owner;
}

LayoutConstraintHandle LayoutEngine::addConstraint(std::span<const LayoutTerm> terms, LayoutRelation relation,
                                                   double constant, float priority, std::uint64_t owner)
{
    for (const LayoutTerm& term : terms) {
        m_implementation->require(term.variable);
        check(std::isfinite(term.coefficient), "a coefficient is not finite");
    }
    check(std::isfinite(constant), "a constant is not finite");
    checkPriority(priority);
    const Index index = m_implementation->model().addConstraint(terms, relation, constant, priority, owner);
    return m_implementation->solver.handle(index);
}

void LayoutEngine::removeConstraint(LayoutConstraintHandle handle)
{
    m_implementation->at(handle);
    m_implementation->model().removeConstraint(handle.index);
}

bool LayoutEngine::contains(LayoutConstraintHandle handle) const
{
    return m_implementation->contains(handle);
}

LayoutConstraintHandle LayoutEngine::handle(std::uint32_t index) const
{
    const auto& constraints = m_implementation->model().constraints();
    check(index < constraints.size() && constraints[index].isAlive, "a constraint is not installed in this engine");
    return m_implementation->solver.handle(index);
}

std::uint64_t LayoutEngine::owner(LayoutConstraintHandle handle) const
{
    return m_implementation->at(handle).owner;
}

double LayoutEngine::constant(LayoutConstraintHandle handle) const
{
    return m_implementation->at(handle).constant;
}

void LayoutEngine::setConstant(LayoutConstraintHandle handle, double constant)
{
    check(std::isfinite(constant), "a constant is not finite");
    LayoutInternal::Constraint& constraint = m_implementation->at(handle);
    if (constraint.constant == constant)
        return;
    constraint.constant = constant;
    m_implementation->model().noteChange(handle.index);
}

float LayoutEngine::priority(LayoutConstraintHandle handle) const
{
    return m_implementation->at(handle).priority;
}

void LayoutEngine::setPriority(LayoutConstraintHandle handle, float priority)
{
    checkPriority(priority);
    LayoutInternal::Constraint& constraint = m_implementation->at(handle);
    if (constraint.priority == priority)
        return;
    constraint.priority = priority;
    m_implementation->model().noteChange(handle.index);
}

void LayoutEngine::solve()
{
    m_implementation->solver.solve();
}

bool LayoutEngine::needsSolve() const
{
    return m_implementation->solver.needsSolve();
}

double LayoutEngine::value(LayoutVariable variable)
{
    solve();
    return m_implementation->at(variable).value;
}

double LayoutEngine::violation(LayoutConstraintHandle handle)
{
    solve();
    m_implementation->at(handle);
    return m_implementation->model().violation(handle.index);
}

std::span<const LayoutVariable> LayoutEngine::changedVariables() const
{
    return m_implementation->solver.changedVariables();
}

void LayoutEngine::forgetChangedVariables()
{
    m_implementation->solver.forgetChangedVariables();
}

std::vector<LayoutConflict> LayoutEngine::takeConflicts()
{
    solve();
    return m_implementation->solver.takeConflicts();
}

bool LayoutEngine::isLeftOut(LayoutConstraintHandle handle)
{
    solve();
    return m_implementation->at(handle).isLeftOut;
}

std::vector<LayoutVariable> LayoutEngine::ambiguousVariables()
{
    solve();
    std::vector<LayoutVariable> result;
    for (const Index index : m_implementation->solver.ambiguousVariables())
        result.push_back({index});
    return result;
}

bool LayoutEngine::isAmbiguous(LayoutVariable variable)
{
    solve();
    m_implementation->require(variable);
    const std::vector<Index>& ambiguous = m_implementation->solver.ambiguousVariables();
    return std::binary_search(ambiguous.begin(), ambiguous.end(), variable.index);
}

LayoutExplanation LayoutEngine::explain(LayoutVariable variable)
{
    solve();
    m_implementation->require(variable);
    return m_implementation->solver.explain(variable.index);
}

std::string LayoutEngine::description(const LayoutNaming& naming)
{
    solve();
    return m_implementation->solver.description(naming);
}

const LayoutStatistics& LayoutEngine::statistics() const
{
    return m_implementation->solver.statistics();
}

} // namespace RVCore
