#include "InputTesting.h"

#include <AppKit/NSCursor.h>
#include <AppKit/NSTrackingArea.h>
#include <Foundation/Message.h>
#include <Platform/Foundation/Raised.h>

#include <QuartzCore/CALayer.h>
#include <gmock/gmock.h>

#include <cmath>

namespace RVCore::NSViewInputTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::shared_ptr<NSView> add(NSView& superview, const CGRect& frame)
{
    auto view = make<NSView>(frame);
    superview.addSubview(view);
    return view;
}

TEST(NSViewInput, aHitIsInTheCoordinatesOfTheSuperview)
{
    const auto root = make<NSView>(CGRect(0, 0, 100, 100));
    const auto view = add(*root, {10, 20, 30, 40});
    EXPECT_EQ(view->hitTest({10, 60}), view.get()); // its top left corner
    EXPECT_EQ(view->hitTest({39, 21}), view.get());
    EXPECT_EQ(view->hitTest({9, 20}), nullptr);
    EXPECT_EQ(view->hitTest({40, 20}), nullptr); // the right edge belongs to the next one
    EXPECT_EQ(view->hitTest({10, 20}), nullptr); // and so does the bottom one
    EXPECT_EQ(view->hitTest({10, 61}), nullptr);
    EXPECT_EQ(root->hitTest({20, 30}), view.get());
    EXPECT_EQ(root->hitTest({50, 50}), root.get());
    EXPECT_EQ(send(root, "hitTest:", CGPoint{20, 30}).as<std::shared_ptr<NSView>>(), view);
    EXPECT_EQ(send(root, "hitTest:", CGPoint{200, 30}).as<std::shared_ptr<NSView>>(), nullptr);
}

TEST(NSViewInput, aHitFollowsScrollingAndFlipping)
{
    const auto root = makeHost(100, 100);
    const auto middle = add(*root, {0, 0, 50, 50});
    middle->setBoundsOrigin({0, 100});
    const auto inner = add(*middle, {0, 140, 10, 10}); // at the visible top left corner
    EXPECT_EQ(root->hitTest({5, 95}), inner.get());
    EXPECT_EQ(root->hitTest({5, 85}), middle.get());
}

TEST(NSViewInput, nothingIsHitOutsideOfTheViewsAroundIt)
{
    const auto root = makeHost(100, 100);
    const auto outer = add(*root, {0, 0, 20, 20});
    const auto inner = add(*outer, {0, 0, 80, 80});
    EXPECT_EQ(root->hitTest({10, 90}), inner.get());
    EXPECT_EQ(root->hitTest({50, 50}), root.get());
}

TEST(NSViewInput, aHiddenViewIsNotHitAndATransparentOneIs)
{
    const auto root = makeHost(100, 100);
    const auto view = add(*root, {0, 0, 20, 20});
    view->setAlphaValue(0);
    EXPECT_EQ(root->hitTest({10, 90}), view.get());
    view->setHidden(true);
    EXPECT_EQ(root->hitTest({10, 90}), root.get());
    EXPECT_TRUE(view->isHiddenOrHasHiddenAncestor());
    const auto inner = add(*view, {0, 0, 5, 5});
    EXPECT_TRUE(inner->isHiddenOrHasHiddenAncestor());
    EXPECT_FALSE(root->isHiddenOrHasHiddenAncestor());
}

TEST(NSViewInput, pointsAreConvertedWhereTheyArePainted)
{
    const auto root = makeHost(100, 100); // a root's frame is in coordinates that run upward
    const auto view = add(*root, {40, 40, 20, 20});
    view->setWantsLayer(true);
    view->layer()->setAffineTransform(CGAffineTransform::scale(2, 2)); // about its centre: 30 … 70
    EXPECT_EQ(view->convertPointTo({0, 20}, root.get()), (CGPoint{30, 30}));
    EXPECT_EQ(view->convertPointFrom({70, 70}, nullptr), (CGPoint{20, 20}));
    EXPECT_EQ(view->convertRectTo(view->bounds(), root.get()), CGRect(30, 30, 40, 40));
    const auto inner = add(*view, {0, 0, 10, 10});
    EXPECT_EQ(inner->convertRectTo(inner->bounds(), root.get()), CGRect(30, 50, 20, 20));
    EXPECT_EQ(inner->convertRectFrom({30, 50, 20, 20}, root.get()), CGRect(0, 0, 10, 10));
    view->layer()->setAffineTransform(CGAffineTransform::scale(0, 1));
    EXPECT_EQ(view->convertPointTo({0, 20}, root.get()), (CGPoint{40, 40})) << "squeezed to nothing: its frame";
    view->layer()->setAffineTransform({});
    view->layer()->setPosition({60, 60});
    EXPECT_EQ(view->convertPointFrom({50, 50}, nullptr), (CGPoint{0, 20}));
}

TEST(NSViewInput, theHigherLayerIsHitFirst)
{
    const auto root = makeHost(100, 100);
    const auto raised = add(*root, {0, 0, 20, 20});
    const auto later = add(*root, {0, 0, 20, 20});
    EXPECT_EQ(root->hitTest({10, 90}), later.get());
    raised->setWantsLayer(true);
    raised->layer()->setZPosition(1);
    EXPECT_EQ(root->hitTest({10, 90}), raised.get());
}

TEST(NSViewInput, theNextResponderIsTheSuperviewAndThenTheWindow)
{
    const auto window = make<NSWindow>();
    const auto view = add(*window->contentView(), {});
    EXPECT_EQ(view->nextResponder(), window->contentView().get());
    EXPECT_EQ(window->contentView()->nextResponder(), window.get());
    EXPECT_EQ(make<NSView>()->nextResponder(), nullptr);
}

TEST(NSViewInput, tryToPerformReachesTheFirstThatAnswers)
{
    const auto outer = makeHost(10, 10);
    const auto inner = add(*outer, {});
    EXPECT_FALSE(inner->tryToPerform("nobodyAnswersThis:", outer));
    EXPECT_TRUE(inner->tryToPerform("addSubview:", make<NSView>()));
    EXPECT_EQ(inner->subviews().size(), 1U);
}

TEST(NSViewInput, trackingAreasAreAddedOnceAndTakenOut)
{
    const auto view = make<NSView>();
    EXPECT_TRUE(view->trackingAreas().empty());
    const auto area = make<NSTrackingArea>(
        CGRect(), NSTrackingAreaOptions::mouseMoved | NSTrackingAreaOptions::activeAlways, *view);
    view->removeTrackingArea(area);
    view->addTrackingArea(area);
    view->addTrackingArea(area);
    EXPECT_THAT(view->trackingAreas(), ElementsAre(area));
    view->removeTrackingArea(area);
    EXPECT_TRUE(view->trackingAreas().empty());
    EXPECT_THAT(raised([&] { view->addTrackingArea(nullptr); }), HasSubstr("there is no tracking area"));
}

TEST(NSViewInput, cursorRectanglesThatAreNoneRaise)
{
    const auto view = make<NSView>();
    EXPECT_THAT(raised([&] { view->addCursorRect({}, nullptr); }), HasSubstr("there is no cursor"));
    EXPECT_THAT(raised([&] {
                    view->addCursorRect({0, 0, std::nan(""), 1}, make<NSCursor>());
                }),
                HasSubstr("rect.width"));
}

} // namespace
} // namespace RVCore::NSViewInputTests
