#include "Threads.h"

#include <Foundation/Selector.h>

#include <gtest/gtest.h>

#include <unordered_set>

namespace RVCore {

TEST(SelectorTest, IsEqualExactlyWhenTheNameIs)
{
    EXPECT_EQ(Selector("setFrame:"), Selector(std::string("setFrame") + ":"));
    EXPECT_NE(Selector("setFrame:"), Selector("setFrame"));
    EXPECT_NE(Selector("frame"), Selector("Frame"));
    EXPECT_EQ(Selector("setFrame:").name(), "setFrame:");
}

TEST(SelectorTest, KeepsOneTextPerName)
{
    const std::string longName(300, 'x');
    EXPECT_EQ(&Selector(longName).name(), &Selector(std::string(longName)).name());
}

TEST(SelectorTest, HashesLikeItCompares)
{
    EXPECT_EQ(std::unordered_set<Selector>({"a", "b", std::string_view("a")}).size(), 2U);
}

TEST(SelectorTest, HasAnArgumentPerColon)
{
    EXPECT_EQ(Selector("frame").argumentCount(), 0U);
    EXPECT_EQ(Selector("setFrame:").argumentCount(), 1U);
    EXPECT_EQ(Selector("setVisibilityWithView:visible:").argumentCount(), 2U);
    EXPECT_EQ(Selector("::").argumentCount(), 2U);
    EXPECT_EQ(Selector("").argumentCount(), 0U);
}

TEST(SelectorTest, SetterCapitalisesTheFirstLetterOnly)
{
    EXPECT_EQ(Selector::setterFor("frame").name(), "setFrame:");
    EXPECT_EQ(Selector::setterFor("alphaValue").name(), "setAlphaValue:");
    EXPECT_EQ(Selector::setterFor("URL").name(), "setURL:");
    EXPECT_EQ(Selector::setterFor("x").name(), "setX:");
    EXPECT_EQ(Selector::setterFor("").name(), "set:");
}

TEST(SelectorTest, ThreadsThatNameTheSameMeanTheSame)
{
    constexpr int threadCount = 4, nameCount = 500;
    std::vector<std::vector<Selector>> made(threadCount);
    onThreads(threadCount, [&](int thread) {
        for (int i = 0; i < nameCount; ++i)
            made[std::size_t(thread)].emplace_back("threadedName" + std::to_string(i) + ":");
    });
    for (int thread = 1; thread < threadCount; ++thread)
        EXPECT_EQ(made[std::size_t(thread)], made[0]);
    EXPECT_EQ(std::unordered_set<Selector>(made[0].begin(), made[0].end()).size(), std::size_t(nameCount));
}

} // namespace RVCore
