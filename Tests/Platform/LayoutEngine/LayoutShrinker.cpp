#include "LayoutShrinker.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace RVCore {

namespace {

using Fails = std::function<bool(const TestSystem&)>;

void dropConstraints(TestSystem& system, const Fails& fails)
{
    system.constraints = withoutNeedless(system.constraints, [&](const std::vector<TestConstraint>& fewer) {
        return fails({system.kind, system.variables, fewer});
    });
}

void dropTerms(TestSystem& system, const Fails& fails)
{
    for (std::size_t i = 0; i < system.constraints.size(); ++i) {
        auto candidate = system;
        system.constraints[i].terms = withoutNeedless(system.constraints[i].terms, [&](const auto& fewer) {
            candidate.constraints[i].terms = fewer;
            return fails(candidate);
        });
    }
}

// Variables that no constraint has left are not there at all.
void renumberVariables(TestSystem& system, const Fails& fails)
{
    std::vector<int> used;
    for (const TestConstraint& one : system.constraints) {
        for (const auto& [variable, coefficient] : one.terms)
            used.push_back(variable);
    }
    std::sort(used.begin(), used.end());
    used.erase(std::unique(used.begin(), used.end()), used.end());
    TestSystem candidate = system;
    candidate.variables = int(used.size());
    for (TestConstraint& one : candidate.constraints) {
        for (auto& [variable, coefficient] : one.terms)
            variable = int(std::lower_bound(used.begin(), used.end(), variable) - used.begin());
    }
    if (fails(candidate))
        system = candidate;
}

// Takes the first of the simpler numbers, which stand in order of simplicity, that keeps the fault.
template <class Number>
void simplify(TestSystem& system, Number& number, std::initializer_list<Number> simpler, const Fails& fails)
{
    const Number present = number;
    for (const Number candidate : simpler) {
        if (candidate == present)
            break;
        number = candidate;
        if (fails(system))
            return;
    }
    number = present;
}

void simplifyNumbers(TestSystem& system, const Fails& fails)
{
    for (std::size_t i = 0; i < system.constraints.size(); ++i) {
        TestConstraint& one = system.constraints[i];
        simplify(system, one.constant,
                 {0.0, 1.0, std::copysign(1.0, one.constant), std::copysign(10.0, one.constant),
                  std::round(one.constant / 100) * 100, std::round(one.constant)},
                 fails);
        simplify(system, one.priority, {1000.0f, 500.0f}, fails);
        for (auto& [variable, coefficient] : one.terms)
            simplify(system, coefficient, {1.0, -1.0, std::round(coefficient)}, fails);
    }
}

std::size_t termCount(const TestSystem& system)
{
    std::size_t count = 0;
    for (const TestConstraint& one : system.constraints)
        count += one.terms.size();
    return count;
}

// The shortest text that reads back as the same number.
template <class Number> std::string textOf(Number number)
{
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, number).ptr};
}

std::string nameOf(LayoutRelation relation)
{
    return relation == LayoutRelation::equal             ? "equal"
           : relation == LayoutRelation::lessThanOrEqual ? "atMost"
                                                         : "atLeast";
}

} // namespace

TestSystem shrunk(TestSystem system, const std::function<bool(const TestSystem&)>& fails)
{
    // Simpler numbers may make more of the system needless.
    for (std::size_t before = 0; before != system.constraints.size() + termCount(system);) {
        before = system.constraints.size() + termCount(system);
        dropConstraints(system, fails);
        dropTerms(system, fails);
        renumberVariables(system, fails);
        simplifyNumbers(system, fails);
    }
    return system;
}

std::string asInitializer(const TestConstraint& one)
{
    std::string terms;
    for (const auto& [variable, coefficient] : one.terms)
        terms += (terms.empty() ? "{" : ", {") + textOf(variable) + ", " + textOf(coefficient) + "}";
    return "{{" + terms + "}, " + nameOf(one.relation) + ", " + textOf(one.constant) + ", " + textOf(one.priority) +
           (one.priority == std::floor(one.priority) ? "}" : "f}");
}

std::string asTest(const TestSystem& system, const std::string& check)
{
    std::string text = "TEST(LayoutEngineOracle, nameTheRule)\n{\n    EXPECT_EQ(" + check + "({\"" + system.kind +
                       "\", " + std::to_string(system.variables) + ", {\n";
    for (const TestConstraint& one : system.constraints)
        text += "        " + asInitializer(one) + ",\n";
    return text + "    }}), \"\");\n}\n";
}

} // namespace RVCore
