#include "LayoutSystems.h"

#include <algorithm>

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

double anyMultiplier(std::mt19937& random)
{
    constexpr double multipliers[] = {0.001, 0.01, 0.1, 1, 10, 100, 1000};
    return multipliers[below(random, 7)];
}

void makeSmall(TestSystem& system, std::mt19937& random)
{
    addDense(system, random, 1 + below(random, 12), 10, false);
}

void makeContradictory(TestSystem& system, std::mt19937& random)
{
    addDense(system, random, 3 + below(random, 15), 10, true);
    for (TestConstraint& one : system.constraints) {
        if (below(random, 2))
            one.priority = 1000.0f;
    }
}

void makeDegenerate(TestSystem& system, std::mt19937& random)
{
    addDense(system, random, 5 + below(random, 25), 1, false);
}

void makeDuplicates(TestSystem& system, std::mt19937& random)
{
    addDense(system, random, 2 + below(random, 8), 4, false);
    for (std::size_t i = system.constraints.size(); i-- > 0;) {
        TestConstraint copy = system.constraints[i];
        if (below(random, 2))
            copy.priority = anyPriority(random);
        if (copy.priority == 1000.0f)
            copy.priority = 400.0f;
        if (below(random, 2))
            copy.constant += below(random, 3) - 1;
        system.constraints.push_back(copy);
    }
}

void makeChain(TestSystem& system, std::mt19937& random)
{
    addChain(system, random, 2 + below(random, 12));
}

void makeLongChain(TestSystem& system, std::mt19937& random)
{
    addChain(system, random, 14 + below(random, 16));
}

void makeStar(TestSystem& system, std::mt19937& random)
{
    addStar(system, random, 1 + below(random, 8));
}

void makeWideStar(TestSystem& system, std::mt19937& random)
{
    addStar(system, random, 9 + below(random, 20));
}

void makeCycle(TestSystem& system, std::mt19937& random)
{
    addCycle(system, random, 2 + below(random, 8));
}

void makeScaled(TestSystem& system, std::mt19937& random)
{
    addDense(system, random, 2 + below(random, 16), 1000000, false);
    for (TestConstraint& one : system.constraints) {
        const double whole = anyMultiplier(random);
        one.constant *= below(random, 2) ? whole : 1;
        for (auto& [variable, coefficient] : one.terms)
            coefficient *= below(random, 3) ? whole : whole * std::clamp(anyMultiplier(random), 0.1, 10.0);
    }
}

// A chain whose links count their violations in units from a thousandth to a thousand.
void makeScaledChain(TestSystem& system, std::mt19937& random)
{
    addChain(system, random, 2 + below(random, 20));
    for (TestConstraint& one : system.constraints) {
        if (one.priority == 1000.0f)
            continue;
        const double whole = anyMultiplier(random);
        one.constant *= whole;
        for (auto& [variable, coefficient] : one.terms)
            coefficient *= whole;
    }
}

void makeLarger(TestSystem& system, std::mt19937& random)
{
    system.variables = 10 + below(random, 15);
    addDense(system, random, 20 + below(random, 40), 30, true);
}

void makeLarge(TestSystem& system, std::mt19937& random)
{
    system.variables = 30 + below(random, 31);
    addDense(system, random, 60 + below(random, 91), 100, true);
}

void makeEqualities(TestSystem& system, std::mt19937& random)
{
    addDense(system, random, 2 + below(random, 20), 20, true);
    for (TestConstraint& one : system.constraints)
        one.relation = LayoutRelation::equal;
}

void makeInequalities(TestSystem& system, std::mt19937& random)
{
    addDense(system, random, 2 + below(random, 20), 20, true);
    for (TestConstraint& one : system.constraints)
        one.relation = below(random, 2) ? LayoutRelation::lessThanOrEqual : LayoutRelation::greaterThanOrEqual;
}

// Boxes within boxes, each centred in its parent: variables 2i and 2i + 1 are position and size of box i.
void makeCentred(TestSystem& system, std::mt19937& random)
{
    const int boxes = 3 + below(random, 28);
    system.variables = 2 * boxes;
    system.constraints.push_back({{{0, 1}}, LayoutRelation::equal, 0, 1000});
    system.constraints.push_back({{{1, 1}}, anyRelation(random), double(below(random, 500)), 1000});
    for (int i = 1; i < boxes; ++i) {
        const int x = 2 * i;
        const int parent = 2 * below(random, i);
        const double hint = below(random, 100);
        const double padding = below(random, 9);
        system.constraints.push_back(
            {{{x, 1}, {x + 1, 0.5}, {parent, -1}, {parent + 1, -0.5}}, LayoutRelation::equal, 0, 749});
        system.constraints.push_back({{{x, 1}, {parent, -1}}, LayoutRelation::greaterThanOrEqual, padding, 748});
        system.constraints.push_back({{{x + 1, 1}}, LayoutRelation::greaterThanOrEqual, 0, 1000});
        system.constraints.push_back({{{x + 1, 1}}, LayoutRelation::greaterThanOrEqual, hint, anyPriority(random)});
        system.constraints.push_back({{{x + 1, 1}}, LayoutRelation::lessThanOrEqual, hint, 251});
    }
}

// Distances between any two of many points: full of cycles.
void makeDistances(TestSystem& system, std::mt19937& random)
{
    system.variables = 10 + below(random, 51);
    for (int i = system.variables + below(random, 80); i > 0; --i)
        system.constraints.push_back({{{below(random, system.variables), 1}, {below(random, system.variables), -1}},
                                      anyRelation(random),
                                      double(below(random, 41) - 20),
                                      anyPriority(random)});
}

// Rows and columns of a square share their variables.
void makeTable(TestSystem& system, std::mt19937& random)
{
    const int size = 2 + below(random, 6);
    system.variables = size * size;
    for (int i = 0; i < size; ++i) {
        TestConstraint row{{}, anyRelation(random), double(below(random, 40)), anyPriority(random)};
        TestConstraint column{{}, anyRelation(random), double(below(random, 40)), anyPriority(random)};
        for (int j = 0; j < size; ++j) {
            row.terms.push_back({i * size + j, 1});
            column.terms.push_back({j * size + i, 1});
            system.constraints.push_back({{{i * size + j, 1}}, LayoutRelation::greaterThanOrEqual, 0, 1000});
            system.constraints.push_back(
                {{{i * size + j, 1}}, anyRelation(random), double(below(random, 10)), anyPriority(random)});
        }
        system.constraints.push_back(row);
        system.constraints.push_back(column);
    }
}

void makeManyLevels(TestSystem& system, std::mt19937& random)
{
    addDense(system, random, 3 + below(random, 18), 10, false);
    for (TestConstraint& one : system.constraints)
        one.priority = float(1 + below(random, 999));
}

struct Family {
    const char* name;
    void (*make)(TestSystem&, std::mt19937&);
};

constexpr Family families[] = {
    {"small", makeSmall},
    {"contradictory", makeContradictory},
    {"degenerate", makeDegenerate},
    {"duplicates", makeDuplicates},
    {"chain", makeChain},
    {"long chain", makeLongChain},
    {"star", makeStar},
    {"wide star", makeWideStar},
    {"cycle", makeCycle},
    {"scaled", makeScaled},
    {"scaled chain", makeScaledChain},
    {"larger", makeLarger},
    {"large", makeLarge},
    {"equalities", makeEqualities},
    {"inequalities", makeInequalities},
    {"centred", makeCentred},
    {"distances", makeDistances},
    {"table", makeTable},
    {"many levels", makeManyLevels},
};

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
    const Family& family = families[seed % std::size(families)];
    TestSystem result;
    result.kind = family.name;
    result.variables = 1 + below(random, 8);
    family.make(result, random);
    return result;
}

} // namespace RVCore
