#include <Foundation/InternedString.h>

#include <gtest/gtest.h>

namespace RVCore {
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

} // namespace
} // namespace RVCore
