#include "LayoutOracle.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace RVCore {
namespace {

// The engine's sum of violations by priority, computed here from its values alone.
OracleAnswer answerOf(TestEngine& test, const TestSystem& system)
{
    OracleAnswer answer;
    for (std::size_t i = 0; i < system.constraints.size(); ++i) {
        const TestConstraint& one = system.constraints[i];
        answer.leftOut.push_back(test.engine.isLeftOut(test.handles[i]));
        double excess = -one.constant;
        for (const auto& [variable, coefficient] : one.terms)
            excess += coefficient * test.value(variable);
        const double violation = one.relation == LayoutRelation::equal             ? std::abs(excess)
                                 : one.relation == LayoutRelation::lessThanOrEqual ? std::max(0.0, excess)
                                                                                   : std::max(0.0, -excess);
        if (!answer.leftOut.back())
            answer.violations[one.priority] += violation;
    }
    return answer;
}

void expectSame(const OracleAnswer& engine, const OracleAnswer& oracle, const TestSystem& system)
{
    EXPECT_EQ(engine.leftOut, oracle.leftOut);
    double scale = 1.0;
    for (const TestConstraint& one : system.constraints)
        scale = std::max(scale, std::abs(one.constant));
    for (const auto& [priority, violation] : engine.violations) {
        const auto found = oracle.violations.find(priority);
        const double least = found == oracle.violations.end() ? 0.0 : found->second;
        EXPECT_NEAR(violation, least, 1e-6 * std::max(scale, least)) << "at priority " << priority;
    }
}

unsigned countFromEnvironment(const char* name, unsigned standard)
{
    const char* text = std::getenv(name);
    return text ? unsigned(std::strtoul(text, nullptr, 10)) : standard;
}

bool isContradictory(const TestSystem& system, const std::vector<std::uint64_t>& tags, std::size_t without)
{
    TestSystem part{system.kind, system.variables, {}};
    for (std::size_t i = 0; i < tags.size(); ++i) {
        if (i != without)
            part.constraints.push_back(system.constraints[std::size_t(tags[i])]);
    }
    const std::vector<bool> leftOut = askOracle(part).leftOut;
    return std::find(leftOut.begin(), leftOut.end(), true) != leftOut.end();
}

// The whole set contradicts itself, and without any one of its members it does not.
void expectMinimal(TestEngine& test, const TestSystem& system)
{
    for (const LayoutConflict& conflict : test.engine.takeConflicts()) {
        EXPECT_EQ(conflict.leftOut, conflict.constraints.back());
        EXPECT_TRUE(isContradictory(system, conflict.constraints, conflict.constraints.size()));
        for (std::size_t i = 0; i < conflict.constraints.size(); ++i)
            EXPECT_FALSE(isContradictory(system, conflict.constraints, i)) << "without " << conflict.constraints[i];
    }
}

TEST(LayoutEngineOracle, everyLevelIsAsSmallAsAnIndependentSolverFinds)
{
    const unsigned first = countFromEnvironment("LAYOUT_FIRST_SEED", 0);
    const unsigned count = countFromEnvironment("LAYOUT_SEEDS", 4000);
    std::printf("seeds %u to %u\n", first, first + count - 1);
    std::map<std::string, int> kinds;
    std::uint64_t pivots = 0;
    int withLeftOut = 0;
    for (unsigned seed = first; seed < first + count; ++seed) {
        const TestSystem system = makeRandomSystem(seed);
        SCOPED_TRACE("seed " + std::to_string(seed) + ": " + text(system));
        TestEngine test(system);
        const OracleAnswer engine = answerOf(test, system);
        expectSame(engine, askOracle(system), system);
        expectMinimal(test, system);
        ++kinds[system.kind];
        pivots += test.engine.statistics().pivots;
        withLeftOut += std::count(engine.leftOut.begin(), engine.leftOut.end(), true) > 0;
        ASSERT_EQ(test.engine.statistics().limitsReached, 0u);
        if (HasFailure())
            break;
    }
    for (const auto& [kind, number] : kinds)
        std::printf("%s %d\n", kind.c_str(), number);
    std::printf("with constraints left out %d, pivots %llu\n", withLeftOut, static_cast<unsigned long long>(pivots));
}

// All required, most of them contradicting others: leaving one out lets others back in.
TEST(LayoutEngineOracle, crowdsOfContradictionsAreSettledInOrderOfInstallation)
{
    for (unsigned seed = 0; seed < 60; ++seed) {
        std::mt19937 random(seed);
        TestSystem system{"crowd", 8, {}};
        for (int i = 0; i < 40; ++i) {
            system.constraints.push_back(makeRandomConstraint(random, system.variables));
            system.constraints.back().priority = 1000.0f;
        }
        SCOPED_TRACE("seed " + std::to_string(seed) + ": " + text(system));
        TestEngine test(system);
        expectSame(answerOf(test, system), askOracle(system), system);
        expectMinimal(test, system);
        if (HasFailure())
            return;
    }
}

// Adds, removes and changes; after each step the engine must be where a fresh one is.
void editAndCompare(unsigned seed)
{
    std::mt19937 random(seed * 7919 + 1);
    TestSystem system = makeRandomSystem(seed);
    SCOPED_TRACE("seed " + std::to_string(seed));
    TestEngine edited(system);
    for (int step = 0; step < 12; ++step) {
        for (int edits = 1 + int(random() % 3); edits > 0; --edits) {
            const std::size_t chosen = system.constraints.empty() ? 0 : random() % system.constraints.size();
            const int action = system.constraints.empty() ? 0 : int(random() % 5);
            if (action == 0) {
                system.constraints.push_back(makeRandomConstraint(random, system.variables));
                edited.handles.push_back(edited.add(system.constraints.back()));
            } else if (action == 1) {
                edited.engine.removeConstraint(edited.handles[chosen]);
                system.constraints.erase(system.constraints.begin() + std::ptrdiff_t(chosen));
                edited.handles.erase(edited.handles.begin() + std::ptrdiff_t(chosen));
            } else if (action == 2) {
                system.constraints[chosen].priority = random() % 2 ? 1000.0f : 748.0f;
                edited.engine.setPriority(edited.handles[chosen], system.constraints[chosen].priority);
            } else {
                system.constraints[chosen].constant = double(random() % 41) - 20.0;
                edited.engine.setConstant(edited.handles[chosen], system.constraints[chosen].constant);
            }
        }
        TestEngine fresh(system);
        SCOPED_TRACE("step " + std::to_string(step) + ": " + text(system));
        expectSame(answerOf(edited, system), answerOf(fresh, system), system);
        ASSERT_EQ(edited.engine.statistics().limitsReached, 0u);
        for (int i = 0; i < system.variables; ++i)
            EXPECT_NEAR(edited.value(i), fresh.value(i), 1e-6 * std::max(1.0, std::abs(fresh.value(i)))) << "x" << i;
        if (testing::Test::HasFailure())
            return;
    }
}

TEST(LayoutEngineOracle, editsEndWhereAFreshEngineEnds)
{
    const unsigned first = countFromEnvironment("LAYOUT_FIRST_SEED", 0);
    const unsigned count = countFromEnvironment("LAYOUT_SEEDS", 4000) / 4;
    std::printf("seeds %u to %u\n", first, first + count - 1);
    for (unsigned seed = first; seed < first + count && !HasFailure(); ++seed)
        editAndCompare(seed);
}

} // namespace
} // namespace RVCore
