#include "LayoutEdits.h"
#include "LayoutShrinker.h"

#include <gtest/gtest.h>

namespace RVCore::LayoutEditTests {
namespace {

// The seeds are spread over cases that run side by side. LAYOUT_FIRST_SEED and LAYOUT_EDIT_SEEDS ask for others.
constexpr unsigned shards = 6;

class LayoutEdits : public testing::TestWithParam<unsigned> {
protected:
    unsigned count() const { return numberFromEnvironment("LAYOUT_EDIT_SEEDS", 3000) / shards; }
    unsigned first() const { return numberFromEnvironment("LAYOUT_FIRST_SEED", 0) + GetParam() * count(); }
};

std::vector<TestEdit> makeRandomSequence(unsigned seed)
{
    std::mt19937 random(seed * 7919 + 1);
    std::vector<TestEdit> edits = asEdits(makeRandomSystem(seed));
    const std::vector<TestEdit> more = makeRandomEdits(random, 40);
    edits.insert(edits.end(), more.begin(), more.end());
    return edits;
}

TEST_P(LayoutEdits, leadToWhereAFreshEngineIs)
{
    std::printf("seeds %u to %u\n", first(), first() + count() - 1);
    for (unsigned seed = first(); seed < first() + count(); ++seed) {
        const std::vector<TestEdit> edits = makeRandomSequence(seed);
        if (firstDifference(edits).empty())
            continue;
        const std::vector<TestEdit> fewer =
            withoutNeedless(edits, [](const std::vector<TestEdit>& some) { return !firstDifference(some).empty(); });
        FAIL() << "seed " << seed << "\n" << firstDifference(fewer) << text(fewer);
    }
}

std::vector<std::uint64_t> bitsAlong(const std::vector<TestEdit>& edits)
{
    EditedEngine edited;
    std::vector<std::uint64_t> bits;
    for (const TestEdit& edit : edits) {
        edited.apply(edit);
        if (edit.kind != TestEdit::Kind::solve)
            continue;
        const std::vector<std::uint64_t> now = edited.bits();
        bits.insert(bits.end(), now.begin(), now.end());
    }
    return bits;
}

TEST_P(LayoutEdits, giveTheSameBitsEveryTime)
{
    std::printf("seeds %u to %u\n", first(), first() + count() - 1);
    for (unsigned seed = first(); seed < first() + count(); ++seed) {
        const std::vector<TestEdit> edits = makeRandomSequence(seed);
        ASSERT_EQ(bitsAlong(edits), bitsAlong(edits)) << "seed " << seed;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, LayoutEdits, testing::Range(0u, shards));

} // namespace
} // namespace RVCore::LayoutEditTests
