#include <Backend/Backend.h>
#include <HeadlessBackend/HeadlessControlLook.h>

#include <gtest/gtest.h>

namespace RVCore::HeadlessControlLookTests {
namespace {

ControlDescription control(ControlKind kind, bool hasText = true)
{
    ControlDescription description;
    description.kind = kind;
    description.hasText = hasText;
    return description;
}

ControlLook& look()
{
    return Backend::shared().controlLook();
}

TEST(HeadlessControlLook, APushButtonPutsAMarginAroundItsContent)
{
    EXPECT_EQ(look().sizeForContent(control(ControlKind::pushButton), {100, 17}), (CGSize{120, 25}));
    EXPECT_EQ(look().contentRect(control(ControlKind::pushButton), {120, 25}), CGRect(10, 4, 100, 17));
}

TEST(HeadlessControlLook, APushButtonWithTextHasASmallestWidth)
{
    EXPECT_EQ(look().sizeForContent(control(ControlKind::pushButton), {5, 17}), (CGSize{60, 25}));
    EXPECT_EQ(look().sizeForContent(control(ControlKind::pushButton, false), {5, 17}), (CGSize{25, 25}));
}

TEST(HeadlessControlLook, ASignStandsBeforeTheContent)
{
    for (const ControlKind kind : {ControlKind::checkBox, ControlKind::radioButton}) {
        EXPECT_EQ(look().sizeForContent(control(kind), {30, 17}), (CGSize{48, 17}));
        EXPECT_EQ(look().sizeForContent(control(kind), {30, 10}), (CGSize{48, 14}));
        EXPECT_EQ(look().sizeForContent(control(kind), {0, 0}), (CGSize{14, 14}));
        EXPECT_EQ(look().contentRect(control(kind), {48, 17}), CGRect(18, 0, 30, 17));
    }
}

TEST(HeadlessControlLook, AFieldHasAMarginAroundItsText)
{
    EXPECT_EQ(look().sizeForContent(control(ControlKind::textField), {20, 17}), (CGSize{32, 25}));
    EXPECT_EQ(look().contentRect(control(ControlKind::textField), {32, 25}), CGRect(6, 4, 20, 17));
}

TEST(HeadlessControlLook, AToolButtonIsAsWideAsItsContentAsks)
{
    EXPECT_EQ(look().sizeForContent(control(ControlKind::toolButton), {20, 17}), (CGSize{32, 25}));
    EXPECT_EQ(look().contentRect(control(ControlKind::toolButton), {32, 25}), CGRect(6, 4, 20, 17));
    EXPECT_EQ(look().sizeForContent(control(ControlKind::toolbar), {90, 34}), (CGSize{90, 34}));
    EXPECT_TRUE(look().contentRect(control(ControlKind::toolbar), {90, 34}).isEmpty());
}

TEST(HeadlessControlLook, ABarHasAHeightOnlyAndNoContent)
{
    EXPECT_EQ(look().sizeForContent(control(ControlKind::progressBar), {9, 9}), (CGSize{0, 12}));
    EXPECT_TRUE(look().contentRect(control(ControlKind::progressBar), {90, 12}).isEmpty());
    EXPECT_TRUE(look().contentRect(control(ControlKind::focusRing), {90, 12}).isEmpty());
    EXPECT_EQ(look().sizeForContent(control(ControlKind::focusRing), {9, 8.5}), (CGSize{9, 9}));
}

TEST(HeadlessControlLook, WithoutRoomThereIsNoContent)
{
    EXPECT_TRUE(look().contentRect(control(ControlKind::pushButton), {12, 6}).isEmpty());
    EXPECT_TRUE(look().contentRect(control(ControlKind::checkBox), {12, 6}).isEmpty());
}

TEST(HeadlessControlLook, ContentStandsOutFromTheWindow)
{
    ControlDescription description = control(ControlKind::pushButton);
    EXPECT_EQ(look().contentColor(description), (CGColor{0, 0, 0, 1}));
    description.appearance = Appearance::dark;
    EXPECT_EQ(look().contentColor(description), (CGColor{1, 1, 1, 1}));
    description.isEnabled = false;
    EXPECT_EQ(look().contentColor(description), (CGColor{0.5, 0.5, 0.5, 1}));
    EXPECT_EQ(look().windowColor(Appearance::light), (CGColor{1, 1, 1, 1}));
    EXPECT_EQ(look().windowColor(Appearance::dark), (CGColor{0, 0, 0, 1}));
    EXPECT_EQ(look().accentColor(Appearance::light), (CGColor{0, 0, 1, 1}));
    EXPECT_EQ(look().desktopAppearance(), Appearance::light);
}

} // namespace
} // namespace RVCore::HeadlessControlLookTests
