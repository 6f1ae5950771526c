#include <Foundation/InternedString.h>

#include <gtest/gtest.h>

namespace RVCore::InternedStringTests {
namespace {

TEST(InternedString, EqualTextsAreOneAndOthersAreNot)
{
    const std::string text = "a text that does not fit into the string itself";
    const std::string& first = interned(text);
    EXPECT_EQ(first, text);
    EXPECT_NE(&first, &text);
    EXPECT_EQ(&interned(std::string(text)), &first);
    EXPECT_NE(&interned("another"), &first);
}

TEST(ShortName, EqualTextsHaveOneNumberAndGiveTheTextBack)
{
    const ShortName first("chain");
    EXPECT_EQ(first, ShortName(std::string("chain")));
    EXPECT_NE(first, ShortName("ends"));
    EXPECT_EQ(&first.text(), &interned("chain"));
    EXPECT_EQ(ShortName::numbered(first.number()), first);
    EXPECT_TRUE(ShortName().isEmpty());
    EXPECT_TRUE(ShortName("").isEmpty());
    EXPECT_EQ(ShortName().text(), "");
    EXPECT_FALSE(first.isEmpty());
}

} // namespace
} // namespace RVCore::InternedStringTests
