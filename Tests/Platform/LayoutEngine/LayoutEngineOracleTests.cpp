#include "LayoutComparison.h"
#include "LayoutShrinker.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace RVCore::LayoutEngineOracleTests {
namespace {

// The seeds are spread over cases that run side by side. LAYOUT_FIRST_SEED and LAYOUT_SEEDS ask for others.
constexpr unsigned shards = 20;

class LayoutEngineOracle : public testing::TestWithParam<unsigned> {};

TEST_P(LayoutEngineOracle, everyLevelIsAsSmallAsAnIndependentSolverFinds)
{
    const unsigned count = numberFromEnvironment("LAYOUT_SEEDS", 10000) / shards;
    const unsigned first = numberFromEnvironment("LAYOUT_FIRST_SEED", 0) + GetParam() * count;
    std::printf("seeds %u to %u\n", first, first + count - 1);
    std::map<std::string, int> kinds;
    for (unsigned seed = first; seed < first + count; ++seed) {
        const TestSystem system = makeRandomSystem(seed);
        ++kinds[system.kind];
        const std::string faults = faultsOf(system);
        if (faults.empty())
            continue;
        const TestSystem small = shrunk(system, [](const TestSystem& one) { return !faultsOf(one).empty(); });
        FAIL() << "seed " << seed << "\n" << faults << "shrunk:\n" << faultsOf(small) << asTest(small);
    }
    for (const auto& [kind, number] : kinds)
        std::printf("oracle:%s:%d\n", kind.c_str(), number); // `make test` adds these up
}

TEST_P(LayoutEngineOracle, whatIsAmbiguousAndNothingElseIsCalledSo)
{
    const unsigned count = numberFromEnvironment("LAYOUT_SEEDS", 10000) / shards;
    const unsigned first = numberFromEnvironment("LAYOUT_FIRST_SEED", 0) + GetParam() * count;
    constexpr int mostVariables = 20; // two exact linear programs for each
    std::printf("seeds %u to %u\n", first, first + count - 1);
    for (unsigned seed = first; seed < first + count; ++seed) {
        const TestSystem system = makeRandomSystem(seed);
        if (system.variables > mostVariables)
            continue;
        const std::string faults = ambiguityFaultsOf(system);
        if (faults.empty())
            continue;
        const TestSystem small =
            shrunk(system, [](const TestSystem& one) { return !ambiguityFaultsOf(one).empty(); });
        FAIL() << "seed " << seed << "\n"
               << faults << "shrunk:\n"
               << ambiguityFaultsOf(small) << asTest(small, "ambiguityFaultsOf");
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, LayoutEngineOracle, testing::Range(0u, shards));

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
        ASSERT_EQ(faultsOf(system), "") << "seed " << seed << ": " << text(system);
    }
}

} // namespace
} // namespace RVCore::LayoutEngineOracleTests
