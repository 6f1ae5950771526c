#include <CoreGraphics/ControlDescription.h>

#include <gtest/gtest.h>

namespace RVCore::ControlDescriptionTests {
namespace {

TEST(ControlDescription, SaysWhatDiffersFromTheDefault)
{
    EXPECT_EQ(describe(ControlDescription()), "push button");
    ControlDescription all;
    all.kind = ControlKind::checkBox;
    all.value = ControlValue::mixed;
    all.appearance = Appearance::dark;
    all.isEnabled = all.isWindowActive = false;
    all.isPressed = all.isHovered = all.hasFocus = all.isDefault = true;
    EXPECT_EQ(describe(all),
              "check box, mixed, pressed, hovered, focused, default, disabled, in the background, dark");
}

TEST(ControlDescription, NamesEveryKind)
{
    ControlDescription control;
    control.kind = ControlKind::radioButton;
    control.value = ControlValue::on;
    EXPECT_EQ(describe(control), "radio button, on");
    control = {};
    control.kind = ControlKind::focusRing;
    EXPECT_EQ(describe(control), "focus ring");
    control.kind = ControlKind::toolbar;
    EXPECT_EQ(describe(control), "toolbar");
    control.kind = ControlKind::toolButton;
    EXPECT_EQ(describe(control), "tool button");
    control.kind = ControlKind::textField;
    EXPECT_EQ(describe(control), "text field");
    control.kind = ControlKind::progressBar;
    control.progress = 0.25;
    EXPECT_EQ(describe(control), "progress bar 0.25");
    control.isIndeterminate = true;
    EXPECT_EQ(describe(control), "progress bar, indeterminate at 0.25");
}

} // namespace
} // namespace RVCore::ControlDescriptionTests
