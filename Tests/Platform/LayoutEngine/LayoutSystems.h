#pragma once

#include <LayoutEngine/LayoutEngine.h>

#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace RVCore {

inline constexpr auto equal = LayoutRelation::equal;
inline constexpr auto atLeast = LayoutRelation::greaterThanOrEqual;
inline constexpr auto atMost = LayoutRelation::lessThanOrEqual;

// A constraint in a form that neither the engine nor the oracle owns.
struct TestConstraint {
    std::vector<std::pair<int, double>> terms; // variable, coefficient
    LayoutRelation relation = LayoutRelation::equal;
    double constant = 0.0;
    float priority = 1000.0f;
};

struct TestSystem {
    std::string kind;
    int variables = 0;
    std::vector<TestConstraint> constraints;
};

// One random system, of the families in turn; the same seed gives the same one everywhere.
TestSystem makeRandomSystem(unsigned seed);
TestConstraint makeRandomConstraint(std::mt19937& random, int variables);
// A number from the environment, for runs that are longer than the test command's.
unsigned numberFromEnvironment(const char* name, unsigned standard);
std::string text(const TestSystem&);

// A system together with an engine that it was put into.
struct TestEngine {
    explicit TestEngine(const TestSystem&);
    LayoutConstraintHandle add(const TestConstraint&);
    double value(int variable) { return engine.value(variables[std::size_t(variable)]); }

    LayoutEngine engine;
    std::vector<LayoutVariable> variables;
    std::vector<LayoutConstraintHandle> handles;
};

} // namespace RVCore
