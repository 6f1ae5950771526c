#include <Contacts/ColorText.h>

#include <gtest/gtest.h>

namespace Contacts::ColorTextTests {
namespace {

TEST(ColorText, givesBackWhatWasRead)
{
    for (const char* text : {"#000000", "#ffffff", "#1a2b3c", "#8e8e93"})
        EXPECT_EQ(textFromColor(colorFromText(text)), text);
}

TEST(ColorText, readsRedGreenAndBlueInThisOrderInEitherCase)
{
    EXPECT_EQ(colorFromText("#FF0033"), (RVCore::CGColor{1, 0, 0.2, 1}));
}

} // namespace
} // namespace Contacts::ColorTextTests
