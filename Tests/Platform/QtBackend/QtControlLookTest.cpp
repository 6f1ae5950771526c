#include <Backend/Backend.h>
#include <Platform/QtBackend/Offscreen.h>

#include <gtest/gtest.h>

#include <set>

namespace RVCore::QtControlLookTests {
namespace {

constexpr ControlKind everyKind[] = {ControlKind::pushButton,  ControlKind::checkBox,  ControlKind::radioButton,
                                     ControlKind::progressBar, ControlKind::focusRing, ControlKind::toolbar,
                                     ControlKind::toolButton,  ControlKind::textField};

ControlDescription control(ControlKind kind)
{
    ControlDescription description;
    description.kind = kind;
    description.hasText = true;
    description.progress = 0.5;
    return description;
}

ControlLook& look()
{
    return Backend::shared().controlLook();
}

QImage drawn(const ControlDescription& description, const CGRect& rect = {10, 10, 80, 24}, CGFloat scale = 1)
{
    return paintedPicture({100, 44}, scale, [&](Canvas& canvas) { canvas.drawControl(description, rect); });
}

TEST(QtControlLook, HasRoomForItsContent)
{
    for (const ControlKind kind : {ControlKind::pushButton, ControlKind::checkBox, ControlKind::radioButton,
                                   ControlKind::toolButton, ControlKind::textField}) {
        for (const CGSize content : {CGSize{200, 16}, CGSize{30, 40}, CGSize{99.5, 17.25}}) {
            const CGSize size = look().sizeForContent(control(kind), content);
            const CGRect room = look().contentRect(control(kind), size);
            EXPECT_GE(room.size.width, content.width) << describe(control(kind)) << describe(content);
            EXPECT_GE(room.size.height, content.height) << describe(control(kind)) << describe(content);
            EXPECT_GE(room.minX(), 0);
            EXPECT_LE(room.maxX(), size.width);
            EXPECT_EQ(size.width, std::ceil(size.width));
        }
    }
}

TEST(QtControlLook, AButtonWithTextHasTheStylesSmallestWidth)
{
    ControlDescription description = control(ControlKind::pushButton);
    const CGSize withText = look().sizeForContent(description, {10, 16});
    description.hasText = false;
    const CGSize without = look().sizeForContent(description, {10, 16});
    EXPECT_GT(withText.width, without.width);
}

TEST(QtControlLook, WithoutRoomThereIsNoContent)
{
    for (const ControlKind kind : everyKind)
        EXPECT_TRUE(look().contentRect(control(kind), {1, 0}).isEmpty()) << describe(control(kind));
}

TEST(QtControlLook, EveryStateLooksDifferent)
{
    const auto differs = [](ControlKind kind, const std::function<void(ControlDescription&)>& change) {
        ControlDescription changed = control(kind);
        change(changed);
        return largestDifference(drawn(control(kind)), drawn(changed)) > 2;
    };
    for (const ControlKind kind : {ControlKind::pushButton, ControlKind::checkBox, ControlKind::radioButton}) {
        EXPECT_TRUE(differs(kind, [](auto& c) { c.isPressed = true; })) << describe(control(kind));
        EXPECT_TRUE(differs(kind, [](auto& c) { c.value = ControlValue::on; })) << describe(control(kind));
        EXPECT_TRUE(differs(kind, [](auto& c) { c.isEnabled = false; })) << describe(control(kind));
        EXPECT_TRUE(differs(kind, [](auto& c) { c.appearance = Appearance::dark; })) << describe(control(kind));
    }
    EXPECT_TRUE(differs(ControlKind::checkBox, [](auto& c) { c.value = ControlValue::mixed; }));
    EXPECT_TRUE(differs(ControlKind::pushButton, [](auto& c) { c.hasFocus = true; }));
    EXPECT_TRUE(differs(ControlKind::pushButton, [](auto& c) { c.isDefault = true; }));
    EXPECT_TRUE(differs(ControlKind::pushButton, [](auto& c) { c.isHovered = true; }));
    EXPECT_TRUE(differs(ControlKind::progressBar, [](auto& c) { c.progress = 0.75; }));
    EXPECT_TRUE(differs(ControlKind::progressBar, [](auto& c) { c.isIndeterminate = true; }));
    EXPECT_FALSE(inkBounds(drawn(control(ControlKind::focusRing))).isEmpty());
}

TEST(QtControlLook, AFieldIsAFrameThatShowsTheFocusOnlyWhileItsWindowHasTheKeys)
{
    ControlDescription field = control(ControlKind::textField);
    const QImage plain = drawn(field);
    EXPECT_EQ(inkBounds(plain), QRect(10, 10, 80, 24));
    EXPECT_EQ(qAlpha(plain.pixel(50, 22)), 0) << "the ground is the field's own";
    field.hasFocus = true;
    EXPECT_GT(largestDifference(plain, drawn(field)), 2);
    field.isWindowActive = false;
    const QImage behind = drawn(field);
    field.hasFocus = false;
    EXPECT_EQ(largestDifference(behind, drawn(field)), 0);
}

TEST(QtControlLook, AToolButtonIsFlatUntilThePointerIsOverIt)
{
    ControlDescription button = control(ControlKind::toolButton);
    EXPECT_TRUE(inkBounds(drawn(button)).isEmpty());
    button.isHovered = true;
    const QImage hovered = drawn(button);
    EXPECT_FALSE(inkBounds(hovered).isEmpty());
    button.isPressed = true;
    EXPECT_GT(largestDifference(hovered, drawn(button)), 2);
    button = control(ControlKind::toolButton);
    button.hasFocus = true;
    EXPECT_FALSE(inkBounds(drawn(button)).isEmpty());
    button = control(ControlKind::toolButton);
    button.isEnabled = false;
    button.isHovered = true;
    EXPECT_TRUE(inkBounds(drawn(button)).isEmpty()) << "there is nothing to press";
}

TEST(QtControlLook, AToolbarFillsItsRectangle)
{
    const QImage light = drawn(control(ControlKind::toolbar));
    EXPECT_EQ(inkBounds(light), QRect(10, 10, 80, 24));
    EXPECT_EQ(qAlpha(light.pixel(50, 10)), 255);
    ControlDescription dark = control(ControlKind::toolbar);
    dark.appearance = Appearance::dark;
    EXPECT_GT(qGray(light.pixel(50, 20)), 200);
    EXPECT_LT(qGray(drawn(dark).pixel(50, 20)), 80);
    EXPECT_LT(qGray(drawn(dark).pixel(50, 10)), 80) << "no light line towards the title bar";
}

TEST(QtControlLook, AMovingSignIsAtItsPlaceWhateverTheTime)
{
    ControlDescription bar = control(ControlKind::progressBar);
    bar.isIndeterminate = true;
    bar.progress = 0.25;
    const QImage first = drawn(bar);
    EXPECT_EQ(largestDifference(first, drawn(bar)), 0);
    bar.progress = 1.25;
    EXPECT_EQ(largestDifference(first, drawn(bar)), 0) << "it comes round";
    bar.progress = 0.75;
    EXPECT_EQ(largestDifference(first, drawn(bar)), 0) << "on the way back it is there again";
    bar.progress = 0.5;
    EXPECT_GT(largestDifference(first, drawn(bar)), 2);
}

TEST(QtControlLook, AMovingSignHasEndsOfItsOwn)
{
    ControlDescription bar = control(ControlKind::progressBar);
    bar.isIndeterminate = true;
    bar.progress = 0.25;
    const QImage image = drawn(bar);
    const int row = image.height() / 2;
    const QRgb groove = image.pixel(20, row);
    const QRgb sign = image.pixel(50, row);
    ASSERT_NE(sign, groove);
    int end = 20;
    while (image.pixel(end, row) == groove)
        ++end;
    EXPECT_NE(image.pixel(end, row), sign) << "at " << end;
}

TEST(QtControlLook, ProgressIsCutToWhatABarCanShow)
{
    ControlDescription bar = control(ControlKind::progressBar);
    bar.progress = 1;
    const QImage full = drawn(bar);
    bar.progress = 7;
    EXPECT_EQ(largestDifference(full, drawn(bar)), 0);
    bar.progress = 0;
    const QImage empty = drawn(bar);
    bar.progress = -1;
    EXPECT_EQ(largestDifference(empty, drawn(bar)), 0);
}

TEST(QtControlLook, ContentCanBeReadOnTheControl)
{
    for (const Appearance appearance : {Appearance::light, Appearance::dark}) {
        const auto luminance = [](const CGColor& color) {
            return 0.299 * color.red + 0.587 * color.green + 0.114 * color.blue;
        };
        const auto contrast = [&](const CGColor& a, const CGColor& b) {
            return std::abs(luminance(a) - luminance(b));
        };
        const CGColor window = look().windowColor(appearance);
        EXPECT_EQ(luminance(window) > 0.5, appearance == Appearance::light);
        EXPECT_GT(contrast(look().textColor(appearance), window), 0.5);
        EXPECT_GT(contrast(look().accentColor(appearance), window), 0.15);
        ControlDescription button = control(ControlKind::pushButton);
        button.appearance = appearance;
        const QRgb face = drawn(button).pixel(50, 22);
        EXPECT_GT(
            contrast(look().contentColor(button), {qRed(face) / 255.0, qGreen(face) / 255.0, qBlue(face) / 255.0, 1}),
            0.5);
        button.isEnabled = false;
        EXPECT_LT(contrast(look().contentColor(button), window), contrast(look().textColor(appearance), window));
    }
    EXPECT_EQ(look().desktopAppearance(), Appearance::light) << "off screen";
}

TEST(QtControlLook, StandsUprightWhereTheCanvasIsMirrored)
{
    ControlDescription box = control(ControlKind::checkBox);
    box.value = ControlValue::on;
    const QImage mirrored = paintedPicture({100, 44}, 1, [&](Canvas& canvas) {
        canvas.concatenate({1, 0, 0, -1, 0, 44});
        canvas.drawControl(box, {10, 10, 80, 24});
    });
    EXPECT_EQ(largestDifference(mirrored, drawn(box)), 0);
}

TEST(QtControlLook, WhatHasNoRoomOrFarTooMuchIsNotDrawn)
{
    for (const ControlKind kind : everyKind) {
        EXPECT_TRUE(inkBounds(drawn(control(kind), {10, 10, 0, 20})).isEmpty());
        EXPECT_TRUE(inkBounds(drawn(control(kind), {10, 10, -5, 20})).isEmpty());
        EXPECT_TRUE(inkBounds(drawn(control(kind), {10, 10, 1e7, 1e7})).isEmpty());
        EXPECT_TRUE(inkBounds(drawn(control(kind), {10, 10, 1e300, 1e300})).isEmpty());
        drawn(control(kind), {10, 10, 1, 1}); // hardly any room is drawn somehow
    }
}

TEST(QtControlLook, TurnsWithTheCanvas)
{
    const QImage turned = paintedPicture({100, 100}, 1, [&](Canvas& canvas) {
        canvas.concatenate({0, 1, -1, 0, 60, 10}); // a quarter turn: 24 wide, 80 high
        canvas.drawControl(control(ControlKind::pushButton), {0, 0, 80, 24});
    });
    const QRect ink = inkBounds(turned);
    EXPECT_NEAR(ink.width(), 24, 2);
    EXPECT_NEAR(ink.height(), 80, 2);
}

// At every scale that desktops use.
class QtControlLookScales : public testing::TestWithParam<CGFloat> {};

INSTANTIATE_TEST_SUITE_P(QtControlLook, QtControlLookScales, testing::Values(1.0, 1.25, 1.5, 2.0));

// The opacities that occur along a line of pixels through the middle of a picture's ink, from its left edge.
std::vector<int> opacitiesFromLeft(const QImage& picture, int count)
{
    const QRect ink = inkBounds(picture);
    std::vector<int> result;
    for (int x = ink.left(); x < ink.left() + count; ++x)
        result.push_back(qAlpha(picture.pixel(x, ink.center().y())));
    return result;
}

TEST_P(QtControlLookScales, EdgesFallOntoDevicePixels)
{
    const CGFloat scale = GetParam();
    const QImage atPixel = drawn(control(ControlKind::pushButton), {10, 10, 80, 24}, scale);
    const QRect ink = inkBounds(atPixel);
    const QRect expected(QPoint(qRound(10 * scale), qRound(10 * scale)),
                         QPoint(qRound(90 * scale) - 1, qRound(34 * scale) - 1));
    EXPECT_TRUE(expected.contains(ink)) << ink.left() << " " << ink.top();
    EXPECT_LE(ink.left() - expected.left(), std::ceil(scale));
    EXPECT_LE(expected.right() - ink.right(), std::ceil(scale));
    // Between pixels nothing changes but the place.
    const QImage between = drawn(control(ControlKind::pushButton), {10.3 / scale, 10.4 / scale, 80, 24}, scale);
    const QRect moved = inkBounds(between);
    EXPECT_EQ(moved.size(), ink.size());
    EXPECT_EQ(opacitiesFromLeft(between, 4), opacitiesFromLeft(atPixel, 4)) << "no edge is softer than another";
}

TEST_P(QtControlLookScales, SignsGrowWithTheScale)
{
    ControlDescription box = control(ControlKind::checkBox);
    const QRect ink = inkBounds(drawn(box, {10, 10, 80, 24}, GetParam()));
    const QRect atOne = inkBounds(drawn(box));
    EXPECT_NEAR(ink.width(), atOne.width() * GetParam(), 2);
    EXPECT_NEAR(ink.height(), atOne.height() * GetParam(), 2);
}

} // namespace
} // namespace RVCore::QtControlLookTests
