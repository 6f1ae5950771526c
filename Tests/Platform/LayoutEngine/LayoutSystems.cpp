#include "LayoutSystems.h"

#include <algorithm>
#include <sstream>

namespace RVCore {

namespace {

// std::uniform_int_distribution differs between libraries; this does not.
int below(std::mt19937& random, int bound)
{
    return int(random() % std::uint32_t(bound));
}

LayoutRelation anyRelation(std::mt19937& random)
{
    return LayoutRelation(below(random, 3) - 1);
}

float anyPriority(std::mt19937& random)
{
    constexpr float priorities[] = {1000, 750, 749, 748, 500, 251, 250, 50};
    return priorities[below(random, 8)];
}

void addDense(TestSystem& system, std::mt19937& random, int count, int bound, bool withRequired)
{
    for (int i = 0; i < count; ++i) {
        TestConstraint one = makeRandomConstraint(random, system.variables);
        one.constant = below(random, 2 * bound + 1) - bound;
        if (!withRequired && one.priority == 1000.0f)
            one.priority = 900.0f;
        system.constraints.push_back(one);
    }
}

void addChain(TestSystem& system, std::mt19937& random, int links)
{
    // Variables 2i and 2i + 1 are position and size of element i.
    const float joint = below(random, 3) == 0 ? 1000.0f : 749.0f;
    system.variables = 2 * links + 1;
    const int size = 2 * links;
    const auto equality = LayoutRelation::equal;
    const auto atLeast = LayoutRelation::greaterThanOrEqual;
    system.constraints.push_back({{{0, 1}}, equality, double(below(random, 20)), 748});
    for (int i = 0; i < links; ++i) {
        if (i > 0)
            system.constraints.push_back(
                {{{2 * i, 1}, {2 * i - 2, -1}, {2 * i - 1, -1}}, equality, double(below(random, 10)), joint});
        const double hint = 10 * below(random, 8);
        system.constraints.push_back({{{2 * i + 1, 1}}, atLeast, 0, 1000});
        system.constraints.push_back({{{2 * i + 1, 1}}, atLeast, hint, float(700 + 50 * below(random, 2))});
        system.constraints.push_back(
            {{{2 * i + 1, 1}}, LayoutRelation::lessThanOrEqual, hint, float(250 + below(random, 2))});
    }
    system.constraints.push_back(
        {{{2 * links - 2, 1}, {2 * links - 1, 1}, {size, -1}}, equality, -double(below(random, 20)), 748});
    system.constraints.push_back({{{size, 1}}, equality, double(below(random, 60 * links)), 1000});
    std::shuffle(system.constraints.begin(), system.constraints.end(), random);
}

void addStar(TestSystem& system, std::mt19937& random, int arms)
{
    // Everything is centred on or bounded by variable 0.
    system.variables = 2 * arms + 1;
    for (int i = 0; i < arms; ++i) {
        const int y = 2 * i + 1;
        const int h = 2 * i + 2;
        system.constraints.push_back({{{y, 1}, {h, 0.5}, {0, -0.5}}, LayoutRelation::equal, 0, 749});
        system.constraints.push_back({{{y, 1}}, LayoutRelation::greaterThanOrEqual, double(below(random, 9)), 748});
        system.constraints.push_back(
            {{{0, 1}, {h, -1}, {y, -1}}, LayoutRelation::greaterThanOrEqual, double(below(random, 9)), 748});
        system.constraints.push_back({{{h, 1}}, LayoutRelation::greaterThanOrEqual, 0, 1000});
        system.constraints.push_back(
            {{{h, 1}}, anyRelation(random), double(10 * below(random, 6)), anyPriority(random)});
    }
    system.constraints.push_back({{{0, 1}}, anyRelation(random), double(below(random, 60)), anyPriority(random)});
}

void addCycle(TestSystem& system, std::mt19937& random, int length)
{
    system.variables = length;
    for (int i = 0; i < length; ++i)
        system.constraints.push_back({{{(i + 1) % length, 1}, {i, -1}},
                                      anyRelation(random),
                                      double(below(random, 7) - 3),
                                      anyPriority(random)});
    system.constraints.push_back({{{0, 1}}, LayoutRelation::equal, 5, anyPriority(random)});
}

} // namespace

TestConstraint makeRandomConstraint(std::mt19937& random, int variables)
{
    constexpr double coefficients[] = {1, -1, 1, -1, 0.5, -0.5, 2, 3, 0};
    TestConstraint result;
    const int terms = 1 + below(random, std::min(4, variables));
    for (int i = 0; i < terms; ++i)
        result.terms.push_back({below(random, variables), coefficients[below(random, 9)]});
    result.relation = anyRelation(random);
    result.constant = below(random, 21) - 10;
    result.priority = anyPriority(random);
    return result;
}

TestSystem makeRandomSystem(unsigned seed)
{
    std::mt19937 random(seed);
    TestSystem result;
    result.variables = 1 + below(random, 8);
    switch (seed % 9) {
    case 0:
        result.kind = "small";
        addDense(result, random, 1 + below(random, 12), 10, false);
        break;
    case 1:
        result.kind = "contradictory";
        addDense(result, random, 3 + below(random, 15), 10, true);
        for (TestConstraint& one : result.constraints) {
            if (below(random, 2))
                one.priority = 1000.0f;
        }
        break;
    case 2:
        result.kind = "degenerate";
        addDense(result, random, 5 + below(random, 25), 1, false);
        break;
    case 3:
        result.kind = "duplicates";
        addDense(result, random, 2 + below(random, 8), 4, false);
        for (std::size_t i = result.constraints.size(); i-- > 0;) {
            TestConstraint copy = result.constraints[i];
            if (below(random, 2))
                copy.priority = anyPriority(random);
            if (copy.priority == 1000.0f)
                copy.priority = 400.0f;
            if (below(random, 2))
                copy.constant += below(random, 3) - 1;
            result.constraints.push_back(copy);
        }
        break;
    case 4:
        result.kind = "chain";
        addChain(result, random, 2 + below(random, 12));
        break;
    case 5:
        result.kind = "star";
        addStar(result, random, 1 + below(random, 8));
        break;
    case 6:
        result.kind = "cycle";
        addCycle(result, random, 2 + below(random, 8));
        break;
    case 7:
        result.kind = "scaled";
        addDense(result, random, 2 + below(random, 16), 1000000, false);
        for (TestConstraint& one : result.constraints) {
            constexpr double multipliers[] = {0.001, 0.01, 0.1, 1, 10, 100, 1000};
            const double whole = multipliers[below(random, 7)];
            one.constant *= below(random, 2) ? whole : 1;
            for (auto& [variable, coefficient] : one.terms)
                coefficient *= below(random, 3) ? whole : whole * multipliers[2 + below(random, 3)];
        }
        break;
    default:
        result.kind = "larger";
        result.variables = 10 + below(random, 15);
        addDense(result, random, 20 + below(random, 40), 30, true);
        break;
    }
    return result;
}

std::string text(const TestSystem& system)
{
    std::ostringstream out;
    out << system.kind << ", " << system.variables << " variables\n";
    for (const TestConstraint& one : system.constraints) {
        for (const auto& [variable, coefficient] : one.terms)
            out << (coefficient < 0 ? " - " : " + ") << std::abs(coefficient) << " x" << variable;
        out << (one.relation == LayoutRelation::equal ? " = "
                : int(one.relation) < 0               ? " <= "
                                                      : " >= ")
            << one.constant << " @" << one.priority << "\n";
    }
    return out.str();
}

TestEngine::TestEngine(const TestSystem& system)
{
    for (int i = 0; i < system.variables; ++i)
        variables.push_back(engine.addVariable(std::uint64_t(i)));
    for (const TestConstraint& one : system.constraints)
        handles.push_back(add(one));
}

LayoutConstraintHandle TestEngine::add(const TestConstraint& one)
{
    std::vector<LayoutTerm> terms;
    for (const auto& [variable, coefficient] : one.terms)
        terms.push_back({variables[std::size_t(variable)], coefficient});
    return engine.addConstraint(terms, one.relation, one.constant, one.priority, handles.size());
}

} // namespace RVCore
