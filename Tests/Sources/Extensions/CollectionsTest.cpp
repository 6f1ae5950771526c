#include <Extensions/Collections.h>

#include <gtest/gtest.h>

#include <array>
#include <deque>
#include <forward_list>
#include <limits>
#include <list>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace RVCore::CollectionsTests {

namespace {

TEST(SafeElement, ofAnArrayOfThreeIsThereForThreeIndices)
{
    const std::vector<int> numbers{10, 20, 30};
    ASSERT_TRUE(safe(numbers, 0));
    EXPECT_EQ(*safe(numbers, 0), 10);
    EXPECT_EQ(*safe(numbers, 1), 20);
    EXPECT_EQ(*safe(numbers, 2), 30);
    EXPECT_FALSE(safe(numbers, -1));
    EXPECT_FALSE(safe(numbers, 3));
}

TEST(SafeElement, anEmptyCollectionHasNone)
{
    const std::vector<int> none;
    EXPECT_FALSE(safe(none, 0));
    EXPECT_FALSE(safe(none, none.begin()));
    EXPECT_FALSE(safe(none, none.end()));
    const std::list<int> noneLinked;
    EXPECT_FALSE(safe(noneLinked, noneLinked.begin()));
}

TEST(SafeElement, theEndIsNeverValid)
{
    const std::vector<int> numbers{10, 20, 30};
    EXPECT_FALSE(safe(numbers, numbers.size()));
    EXPECT_FALSE(safe(numbers, numbers.end()));
    const std::list<int> linked{1, 2};
    EXPECT_FALSE(safe(linked, linked.end()));
}

TEST(SafeElement, anyIntegerTypeIsAnIndexAndNegativeOnesAreAbsent)
{
    const std::vector<int> numbers{10, 20, 30};
    EXPECT_EQ(*safe(numbers, 2U), 30);
    EXPECT_EQ(*safe(numbers, std::int8_t{2}), 30);
    EXPECT_EQ(*safe(numbers, std::uint64_t{2}), 30);
    EXPECT_FALSE(safe(numbers, std::numeric_limits<std::int64_t>::min()));
    EXPECT_FALSE(safe(numbers, std::numeric_limits<std::uint64_t>::max()));
    EXPECT_FALSE(safe(numbers, std::int8_t{-1}));
    EXPECT_FALSE(safe(numbers, static_cast<std::size_t>(-1)));
}

TEST(SafeElement, linkedPositionsAreFoundByEquality)
{
    const std::list<std::string> words{"one", "two", "three"};
    EXPECT_EQ(*safe(words, words.begin()), "one");
    EXPECT_EQ(*safe(words, std::next(words.begin(), 2)), "three");
    const std::forward_list<int> forward{1, 2};
    EXPECT_EQ(*safe(forward, std::next(forward.begin())), 2);
}

TEST(SafeElement, mapsAreReachedByPosition)
{
    const std::map<std::string, int> ages{{"Ann", 30}, {"Bob", 40}};
    EXPECT_EQ(safe(ages, ages.find("Bob"))->second, 40);
    EXPECT_FALSE(safe(ages, ages.find("Carl")));
}

TEST(SafeElement, aMutableCollectionTakesItsConstPositions)
{
    std::list<int> numbers{1, 2};
    EXPECT_EQ(*safe(numbers, numbers.cbegin()), 1);
    EXPECT_EQ(*safe(numbers, numbers.begin()), 1);
    std::vector<int> row{1, 2};
    EXPECT_EQ(*safe(row, row.begin() + 1), 2);
}

TEST(SafeElement, isTheElementItselfAndReadOnly)
{
    std::vector<std::unique_ptr<int>> owners;
    owners.push_back(std::make_unique<int>(5));
    static_assert(std::is_same_v<decltype(safe(owners, 0)), const std::unique_ptr<int>*>);
    EXPECT_EQ(safe(owners, 0), &owners[0]);
}

TEST(SafeElement, otherRandomAccessCollectionsWork)
{
    const std::deque<int> deque{1, 2};
    EXPECT_EQ(*safe(deque, 1), 2);
    const std::array<int, 2> array{1, 2};
    EXPECT_EQ(*safe(array, 1), 2);
    const int plain[] = {1, 2};
    EXPECT_EQ(*safe(plain, 1), 2);
    EXPECT_FALSE(safe(plain, 2));
    const std::string text = "ab";
    EXPECT_EQ(*safe(text, 1), 'b');
    EXPECT_FALSE(safe(text, 2)) << "not the terminator";
    EXPECT_EQ(*safe(std::span(array), 1), 2) << "a view does not own, so its elements outlive it";
}

TEST(SafeElement, elementsThatCannotBePointedAtAreCopied)
{
    const std::vector<bool> flags{false, true};
    static_assert(std::is_same_v<decltype(safe(flags, 0)), std::optional<bool>>);
    EXPECT_EQ(safe(flags, 1), true);
    EXPECT_EQ(safe(flags, 2), std::nullopt);
    EXPECT_EQ(safe(std::vector<int>{1, 2}, 1), std::optional(2)) << "a temporary would leave a dangling pointer";
    EXPECT_EQ(safe(std::vector<int>{1, 2}, 2), std::nullopt);
    EXPECT_EQ(safe(std::views::iota(5, 8), 2), std::optional(7));
}

} // namespace

} // namespace RVCore::CollectionsTests
