#include "WindowTesting.h"

#include <AppKit/NSAnimationContext.h>
#include <AppKit/NSViewAnimator.h>
#include <CoreImage/CIGaussianBlur.h>

#include <QuartzCore/LayerPresentation.h>

namespace RVCore::MovingViewsTests {
namespace {

// A window that is shown, with a view in it, and a desktop that has a frame every tenth of a second for who asks.
class MovingViewsTest : public WindowTest {
protected:
    MovingViewsTest()
    {
        window->contentView()->addSubview(view);
        window->orderFront();
        desktop->flushFrames();
    }

    // How many frames the window gets in a second.
    int framesOfASecond()
    {
        const std::size_t before = screenOf(*window).frameCount();
        for (int tick = 0; tick < 10; ++tick) {
            desktop->flushFrames();
            clock.advance(0.1);
        }
        return static_cast<int>(screenOf(*window).frameCount() - before);
    }
    void fade(double duration)
    {
        NSAnimationContext::runAnimationGroup([&](NSAnimationContext& context) {
            context.setDuration(duration);
            view->animator()->setAlphaValue(1 - view->alphaValue());
        });
    }

    std::shared_ptr<NSWindow> window = make<NSWindow>(CGSize{200, 200});
    std::shared_ptr<NSView> view = make<NSView>(CGRect(0, 0, 100, 100));
};

TEST_F(MovingViewsTest, AWindowInWhichNothingMovesGetsNoFrame)
{
    EXPECT_EQ(framesOfASecond(), 0);
    EXPECT_FALSE(screenOf(*window).needsFrame());
}

TEST_F(MovingViewsTest, AWindowGetsFramesAsLongAsSomethingMovesAndOneForTheEnd)
{
    fade(0.45); // frames at 0, 0.1 … 0.4, and what is there in the end at 0.5
    EXPECT_TRUE(screenOf(*window).needsFrame());
    EXPECT_EQ(framesOfASecond(), 6);
    EXPECT_FALSE(screenOf(*window).needsFrame());
    EXPECT_EQ(framesOfASecond(), 0);
}

TEST_F(MovingViewsTest, AFiltersInputThatMovesIsAMoveAsWell)
{
    const auto blur = make<CIGaussianBlur>();
    blur->setInputRadius(0);
    view->setBackgroundFilters({blur});
    framesOfASecond();
    NSAnimationContext::runAnimationGroup([&](NSAnimationContext& context) {
        context.setDuration(0.45);
        view->animator()->setValue(8, "backgroundFilters.CIGaussianBlur.inputRadius");
    });
    EXPECT_EQ(framesOfASecond(), 6);
}

TEST_F(MovingViewsTest, ASublayerThatMovesIsAMoveAsWell)
{
    view->setWantsLayer(true);
    const auto sublayer = make<CALayer>();
    view->layer()->addSublayer(sublayer);
    framesOfASecond();
    NSAnimationContext::runAnimationGroup([&](NSAnimationContext& context) {
        context.setDuration(0.45);
        context.setAllowsImplicitAnimation(true);
        sublayer->setPosition({9, 9});
    });
    EXPECT_EQ(framesOfASecond(), 6);
}

TEST_F(MovingViewsTest, AWindowGetsNoFramesForWhatMovesInAnother)
{
    const auto other = make<NSWindow>(CGSize{50, 50});
    other->orderFront();
    desktop->flushFrames();
    fade(0.45);
    framesOfASecond();
    EXPECT_EQ(screenOf(*other).frameCount(), 1U);
}

TEST_F(MovingViewsTest, AViewThatIsHiddenNeedsNoFramesUntilItIsShown)
{
    view->setHidden(true);
    framesOfASecond();
    fade(1.95);
    EXPECT_LE(framesOfASecond(), 1);
    view->setHidden(false);
    EXPECT_EQ(framesOfASecond(), 10);
    EXPECT_EQ(framesOfASecond(), 1);
}

TEST_F(MovingViewsTest, AViewThatMovesTakesItsFramesToTheWindowThatItComesInto)
{
    view->removeFromSuperview();
    framesOfASecond();
    fade(1.95);
    EXPECT_EQ(framesOfASecond(), 0);
    window->contentView()->addSubview(view);
    EXPECT_EQ(framesOfASecond(), 10);
    EXPECT_EQ(framesOfASecond(), 1);
    EXPECT_EQ(framesOfASecond(), 0);
}

TEST_F(MovingViewsTest, AWindowThatIsNotVisibleGetsItsFramesWhenItIsAgain)
{
    fade(1.95);
    window->orderOut();
    EXPECT_EQ(framesOfASecond(), 0);
    window->orderFront();
    EXPECT_EQ(framesOfASecond(), 10);
    EXPECT_EQ(framesOfASecond(), 1);
}

TEST_F(MovingViewsTest, AMinimisedWindowGetsItsFramesWhenItComesBack)
{
    fade(1.95);
    window->miniaturize();
    EXPECT_LE(framesOfASecond(), 1);
    window->deminiaturize();
    EXPECT_EQ(framesOfASecond(), 10);
}

TEST_F(MovingViewsTest, AViewThatDiesOrLosesItsLayerMovesNoMore)
{
    fade(5);
    const auto another = make<NSView>(CGRect(0, 0, 10, 10));
    window->contentView()->addSubview(another);
    another->animator()->setAlphaValue(0);
    another->setWantsLayer(false);
    view->removeFromSuperview();
    view = nullptr;
    framesOfASecond();
    EXPECT_EQ(framesOfASecond(), 0);
}

TEST_F(MovingViewsTest, WhatIsSetGoingByWhoHearsOfAnEndGetsItsFrames)
{
    view->setWantsLayer(true);
    const auto first = make<CALayer>();
    const auto second = make<CALayer>();
    view->layer()->addSublayer(first);
    view->layer()->addSublayer(second);
    framesOfASecond();
    const auto fadeLayer = [](CALayer& layer, double duration) {
        LayerMotion motion{.duration = duration};
        const LayerMotion::Scope scope(&motion);
        layer.setOpacity(0);
    };
    fadeLayer(*first, 0.25);
    first->setChangeHandler([&] { fadeLayer(*second, 0.45); });
    EXPECT_EQ(framesOfASecond(), 9); // until 0.3, when the second one begins, and until 0.8
    first->setChangeHandler(nullptr);
}

TEST_F(MovingViewsTest, AViewThatIsRemovedByWhoHearsOfItsMoveIsNoTrouble)
{
    fade(0.45);
    const auto sublayer = make<CALayer>();
    view->layer()->addSublayer(sublayer);
    LayerMotion motion;
    {
        const LayerMotion::Scope scope(&motion);
        sublayer->setOpacity(0);
    }
    sublayer->setChangeHandler([this] {
        if (!view)
            return;
        view->removeFromSuperview();
        view = nullptr;
    });
    framesOfASecond();
    EXPECT_EQ(framesOfASecond(), 0);
    sublayer->setChangeHandler(nullptr);
}

} // namespace
} // namespace RVCore::MovingViewsTests
