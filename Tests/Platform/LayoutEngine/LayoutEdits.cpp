#include "LayoutEdits.h"

#include "LayoutComparison.h"
#include "LayoutShrinker.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <sstream>

namespace RVCore {

std::vector<TestEdit> asEdits(const TestSystem& system)
{
    std::vector<TestEdit> edits(std::size_t(system.variables), {TestEdit::Kind::addVariable, 0, {}});
    for (const TestConstraint& one : system.constraints)
        edits.push_back({TestEdit::Kind::add, 0, one});
    return edits;
}

std::vector<TestEdit> makeRandomEdits(std::mt19937& random, int count)
{
    using enum TestEdit::Kind;
    constexpr TestEdit::Kind kinds[] = {add,         add,          add,          remove,      remove,
                                        remove,      putBackEqual, putBackEqual, setConstant, setConstant,
                                        setConstant, setPriority,  setPriority,  addVariable, removeVariable,
                                        solve,       solve,        solve,        solve};
    constexpr int manyVariables = 60; // taken modulo what there is
    std::vector<TestEdit> edits;
    for (int i = 0; i < count; ++i) {
        const TestEdit::Kind kind = kinds[random() % std::size(kinds)];
        const unsigned which = unsigned(random());
        edits.push_back({kind, which, makeRandomConstraint(random, manyVariables)});
        if (random() % 4 == 0)
            edits.back().constraint.constant *= 1000.0 / 7.0;
    }
    return edits;
}

std::string text(const std::vector<TestEdit>& edits)
{
    constexpr const char* names[] = {"add",         "remove",      "putBackEqual",   "setConstant",
                                     "setPriority", "addVariable", "removeVariable", "solve"};
    std::string result;
    for (const TestEdit& edit : edits)
        result += std::string("{") + names[std::size_t(edit.kind)] + ", " + std::to_string(edit.which) + ", " +
                  asInitializer(edit.constraint) + "},\n";
    return result;
}

void EditedEngine::apply(const TestEdit& edit)
{
    LayoutEngine& engine = m_test.engine;
    const std::size_t constraint = m_system.constraints.empty() ? 0 : edit.which % m_system.constraints.size();
    const bool hasNone = m_system.constraints.empty();
    switch (edit.kind) {
    case TestEdit::Kind::add:
        add(edit.constraint);
        break;
    case TestEdit::Kind::remove:
        if (!hasNone)
            remove(constraint);
        break;
    case TestEdit::Kind::putBackEqual:
        if (!hasNone) {
            const TestConstraint equalOne = m_system.constraints[constraint];
            remove(constraint);
            add(equalOne);
        }
        break;
    case TestEdit::Kind::setConstant:
        if (!hasNone) {
            m_system.constraints[constraint].constant = edit.constraint.constant;
            engine.setConstant(m_test.handles[constraint], edit.constraint.constant);
        }
        break;
    case TestEdit::Kind::setPriority:
        if (!hasNone) {
            m_system.constraints[constraint].priority = edit.constraint.priority;
            engine.setPriority(m_test.handles[constraint], edit.constraint.priority);
        }
        break;
    case TestEdit::Kind::addVariable:
        m_test.variables.push_back(engine.addVariable(0));
        ++m_system.variables;
        break;
    case TestEdit::Kind::removeVariable:
        if (m_system.variables > 0)
            removeVariable(int(edit.which % unsigned(m_system.variables)));
        break;
    case TestEdit::Kind::solve:
        solve();
        break;
    }
}

void EditedEngine::add(TestConstraint one)
{
    if (m_system.variables == 0)
        one.terms.clear();
    for (auto& [variable, coefficient] : one.terms)
        variable %= m_system.variables;
    m_system.constraints.push_back(one);
    m_test.handles.push_back(m_test.add(one));
}

void EditedEngine::remove(std::size_t constraint)
{
    m_test.engine.removeConstraint(m_test.handles[constraint]);
    m_test.handles.erase(m_test.handles.begin() + std::ptrdiff_t(constraint));
    m_system.constraints.erase(m_system.constraints.begin() + std::ptrdiff_t(constraint));
}

void EditedEngine::removeVariable(int removed)
{
    for (std::size_t i = m_system.constraints.size(); i-- > 0;) {
        const auto& terms = m_system.constraints[i].terms;
        if (std::any_of(terms.begin(), terms.end(), [&](const auto& term) { return term.first == removed; }))
            remove(i);
    }
    m_values.erase(m_test.variables[std::size_t(removed)]);
    m_test.engine.removeVariable(m_test.variables[std::size_t(removed)]);
    m_test.variables.erase(m_test.variables.begin() + removed);
    --m_system.variables;
    for (TestConstraint& one : m_system.constraints) {
        for (auto& [variable, coefficient] : one.terms)
            variable -= variable > removed;
    }
}

void EditedEngine::solve()
{
    LayoutEngine& engine = m_test.engine;
    const bool hasWork = engine.needsSolve();
    engine.solve();
    std::vector<LayoutVariable> changed;
    for (const LayoutVariable variable : m_test.variables) {
        if (engine.value(variable) != m_values[variable])
            changed.push_back(variable);
        m_values[variable] = engine.value(variable);
    }
    std::sort(changed.begin(), changed.end());
    const std::span<const LayoutVariable> told = engine.changedVariables();
    if (hasWork ? !std::equal(changed.begin(), changed.end(), told.begin(), told.end()) : !changed.empty())
        m_wrongChanges += std::to_string(changed.size()) + " variables have changed, " + std::to_string(told.size()) +
                          " are said to have\n";
}

std::string EditedEngine::differenceFromFresh()
{
    solve();
    TestEngine fresh(m_system);
    const OracleAnswer answer = answerOf(m_test, m_system);
    std::ostringstream out;
    out << m_wrongChanges << difference(answer, answerOf(fresh, m_system));
    std::vector<bool> ambiguous; // asked only when it matters: the oracle takes its time
    for (std::size_t i = 0; i < m_test.variables.size(); ++i) {
        const bool isAmbiguous = m_test.engine.isAmbiguous(m_test.variables[i]);
        if (isAmbiguous != fresh.engine.isAmbiguous(fresh.variables[i]))
            out << "x" << i << " is ambiguous " << (isAmbiguous ? "here" : "in a fresh engine") << " only\n";
        const double value = m_test.value(int(i)), expected = fresh.value(int(i));
        if (std::abs(value - expected) <= 1e-6 * std::max(1.0, std::abs(expected)))
            continue;
        if (ambiguous.empty())
            ambiguous = askOracleForAmbiguity(m_system);
        if (!ambiguous[i])
            out << "x" << i << " is " << value << ", in a fresh engine " << expected << "\n";
    }
    if (m_test.engine.statistics().limitsReached > 0)
        out << "an iteration limit was reached\n";
    return out.str();
}

std::vector<std::uint64_t> EditedEngine::bits()
{
    std::vector<std::uint64_t> result;
    for (const LayoutVariable variable : m_test.variables)
        result.push_back(std::bit_cast<std::uint64_t>(m_test.engine.value(variable)));
    return result;
}

std::string firstDifference(const std::vector<TestEdit>& edits)
{
    EditedEngine edited;
    std::string difference;
    for (std::size_t i = 0; i < edits.size() && difference.empty(); ++i) {
        edited.apply(edits[i]);
        if (edits[i].kind == TestEdit::Kind::solve || i + 1 == edits.size())
            difference = edited.differenceFromFresh();
    }
    return difference;
}

} // namespace RVCore
