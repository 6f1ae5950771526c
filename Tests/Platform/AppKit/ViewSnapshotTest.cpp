#include "ViewTesting.h"

#include <AppKit/NSBitmapImageRep.h>
#include <AppKit/NSWindow.h>
#include <AppKit/ViewSnapshot.h>
#include <AppKit/WindowPainter.h>
#include <Backend/Backend.h>
#include <Foundation/Message.h>
#include <Foundation/NSException.h>
#include <HeadlessBackend/RecordingCanvas.h>
#include <Platform/Foundation/Raised.h>

#include <QuartzCore/CALayer.h>

#include <cmath>
#include <numbers>

namespace RVCore::ViewSnapshotTests {
namespace {

using testing::HasSubstr;

constexpr CGColor red{1, 0, 0, 1}, green{0, 1, 0, 1};

std::string painted(NSView& view)
{
    RecordingCanvas canvas;
    paintViewTree(view, canvas);
    EXPECT_TRUE(canvas.isBalanced());
    return canvas.text();
}

// A layer-backed view of this colour.
std::shared_ptr<ProbeView> plate(const CGRect& frame, const CGColor& color)
{
    const auto view = make<ProbeView>(frame);
    view->setWantsLayer(true);
    view->layer()->setBackgroundColor(color);
    return view;
}

TEST(ViewSnapshot, PaintsBackgroundThenOwnDrawingThenBorder)
{
    const auto view = plate({0, 0, 20, 10}, red);
    view->layer()->setCornerRadius(4);
    view->layer()->setBorderWidth(1);
    view->onDraw = [](Canvas& canvas, const CGRect& rect) { canvas.fill({rect, 0}, green); };
    EXPECT_EQ(painted(*view), "save\n"
                              "  transform [1, 0, 0, 1, 0, 0]\n"
                              "  fill (0, 0) 20 × 10 radius 4 rgba(1, 0, 0, 1)\n"
                              "restore\n"
                              "save\n"
                              "  transform [1, 0, 0, 1, 0, 0]\n"
                              "  clip (0, 0) 20 × 10\n"
                              "  transform [1, 0, 0, -1, 0, 10]\n" // not flipped: its own drawing runs upward
                              "  fill (0, 0) 20 × 10 rgba(0, 1, 0, 1)\n"
                              "restore\n"
                              "save\n"
                              "  transform [1, 0, 0, 1, 0, 0]\n"
                              "  stroke (0, 0) 20 × 10 radius 4 width 1 rgba(0, 0, 0, 1)\n"
                              "restore\n");
    view->layer()->setBorderColor(green);
    EXPECT_THAT(painted(*view), HasSubstr("width 1 rgba(0, 1, 0, 1)"));
}

TEST(ViewSnapshot, AFlippedViewDrawsDownwardFromItsScrolledOrigin)
{
    const auto view = makeHost(20, 10);
    view->setBoundsOrigin({3, 4});
    EXPECT_EQ(painted(*view), "save\n"
                              "  transform [1, 0, 0, 1, 0, 0]\n"
                              "  clip (0, 0) 20 × 10\n"
                              "  transform [1, 0, 0, 1, -3, -4]\n"
                              "restore\n");
}

TEST(ViewSnapshot, ClipsWhatIsInsideAlongTheRoundedEdgeIfAsked)
{
    const auto view = plate({0, 0, 20, 10}, red);
    view->layer()->setCornerRadius(3);
    EXPECT_THAT(painted(*view), testing::Not(HasSubstr("clip (0, 0) 20 × 10 radius")));
    view->layer()->setMasksToBounds(true);
    EXPECT_THAT(painted(*view), HasSubstr("clip (0, 0) 20 × 10 radius 3\n"));
}

TEST(ViewSnapshot, CutsALayersPictureAlongTheRoundedEdge)
{
    const auto view = plate({0, 0, 20, 10}, red);
    view->layer()->setCornerRadius(3);
    view->layer()->setMasksToBounds(true);
    view->layer()->setContents(std::make_shared<const CGImage>(1, 1, std::vector<std::uint8_t>(4)));
    const std::string text = painted(*view);
    EXPECT_LT(text.find("clip (0, 0) 20 × 10 radius 3"), text.find("image"));
}

// Whether the window paints something again after the change.
bool isPaintedAgain(const std::shared_ptr<NSView>& view, const std::function<void()>& change)
{
    const auto window = make<NSWindow>(CGSize{100, 100});
    window->contentView()->addSubview(view);
    WindowPainter painter;
    painter.paint(*window, 1);
    change();
    const bool isPainted = !painter.paint(*window, 1).isEmpty();
    view->removeFromSuperview();
    return isPainted;
}

TEST(ViewSnapshot, AViewThatWasScrolledOrWhoseLayerNeedsDisplayIsDrawnAgain)
{
    const auto view = plate({0, 0, 20, 10}, red);
    EXPECT_FALSE(isPaintedAgain(view, [] {}));
    EXPECT_TRUE(isPaintedAgain(view, [&] { view->setBoundsOrigin({0, 5}); }));
    EXPECT_TRUE(isPaintedAgain(view, [&] { view->layer()->setNeedsDisplay(); }));
    EXPECT_TRUE(isPaintedAgain(view, [&] { view->setNeedsDisplay(true); }));
}

// The translation with which a subview at (10, 20) 30 × 40 of a superview of 100 × 100 is painted.
template <class Host> std::string placed(bool hasLayer, CGPoint scroll = {})
{
    const auto host = make<Host>(CGRect(0, 0, 100, 100));
    host->setBoundsOrigin(scroll);
    const auto view = make<NSView>(CGRect(10, 20, 30, 40));
    view->setWantsLayer(hasLayer);
    host->addSubview(view);
    const std::string text = painted(*host);
    const std::string before = "save\n  transform [1, 0, 0, 1, ";
    const std::size_t start = text.rfind(before) + before.size();
    return text.substr(start, text.find(']', start) - start);
}

TEST(ViewSnapshot, PlacesSubviewsFromTheTopWhicheverWayTheSuperviewRuns)
{
    for (const bool hasLayer : {false, true}) {
        EXPECT_EQ(placed<FlippedView>(hasLayer), "10, 20");
        EXPECT_EQ(placed<NSView>(hasLayer), "10, 40"); // 100 - 20 - 40
        EXPECT_EQ(placed<FlippedView>(hasLayer, {1, 2}), "9, 18");
        EXPECT_EQ(placed<NSView>(hasLayer, {1, 2}), "9, 42");
    }
}

TEST(ViewSnapshot, ATransformActsAboutTheAnchorPointAndTurnsTheSuperviewsWay)
{
    const auto transformOf = [](NSView& host) {
        const auto view = plate({10, 20, 30, 40}, red);
        view->layer()->setAffineTransform(CGAffineTransform::rotation(std::numbers::pi / 2));
        host.addSubview(view);
        const std::string text = painted(host);
        const std::string before = "restore\nsave\n"; // the host's own drawing
        const std::size_t start = text.find(before) + before.size();
        return text.substr(start, text.find('\n', start) - start);
    };
    // The centre stays at (25, 40) from the top left; a quarter turn clockwise on the screen.
    EXPECT_EQ(transformOf(*makeHost(100, 100)), "  transform [0, 1, -1, 0, 45, 25]");
    // The centre is at 60 from the top; a quarter turn counter-clockwise on the screen.
    EXPECT_EQ(transformOf(*make<NSView>(CGRect(0, 0, 100, 100))), "  transform [0, -1, 1, 0, 5, 75]");
}

TEST(ViewSnapshot, AlphaBlendsAViewWithAllThatIsInItAsAGroup)
{
    const auto host = plate({0, 0, 10, 10}, red);
    const auto inner = plate({0, 0, 5, 5}, green);
    inner->setAlphaValue(0.5);
    host->addSubview(inner);
    host->setAlphaValue(0.25);
    EXPECT_EQ(painted(*host), "save\n"
                              "  layer 0.25\n"
                              "    save\n"
                              "      transform [1, 0, 0, 1, 0, 0]\n"
                              "      fill (0, 0) 10 × 10 rgba(1, 0, 0, 1)\n"
                              "    restore\n"
                              "    save\n"
                              "      transform [1, 0, 0, 1, 0, 0]\n"
                              "      clip (0, 0) 10 × 10\n"
                              "      transform [1, 0, 0, -1, 0, 10]\n"
                              "    restore\n"
                              "    save\n"
                              "      layer 0.5\n"
                              "        save\n"
                              "          transform [1, 0, 0, 1, 0, 5]\n"
                              "          fill (0, 0) 5 × 5 rgba(0, 1, 0, 1)\n"
                              "        restore\n"
                              "        save\n"
                              "          transform [1, 0, 0, 1, 0, 5]\n"
                              "          clip (0, 0) 5 × 5\n"
                              "          transform [1, 0, 0, -1, 0, 5]\n"
                              "        restore\n"
                              "      end\n"
                              "    restore\n"
                              "  end\n"
                              "restore\n");
}

TEST(ViewSnapshot, WhatIsHiddenOrFullyTransparentIsNotPainted)
{
    const auto host = make<NSView>(CGRect(0, 0, 10, 10));
    const auto hidden = plate({0, 0, 5, 5}, red), clear = plate({0, 0, 5, 5}, red);
    hidden->setHidden(true);
    clear->setAlphaValue(0);
    host->addSubview(hidden);
    host->addSubview(clear);
    EXPECT_THAT(painted(*host), testing::Not(HasSubstr("fill")));
    EXPECT_EQ(painted(*hidden), "");
    EXPECT_EQ(painted(*clear), "");
}

TEST(ViewSnapshot, PaintsByZPositionAndInOrderWhereItIsEqual)
{
    const auto host = make<NSView>(CGRect(0, 0, 10, 10));
    std::string order;
    const auto add = [&](char name, CGFloat z) {
        const auto view = plate({0, 0, 5, 5}, red);
        view->layer()->setZPosition(z);
        view->onDraw = [&order, name](Canvas&, const CGRect&) { order += name; };
        host->addSubview(view);
    };
    add('a', 2);
    add('b', 0);
    add('c', 2);
    add('d', -1);
    painted(*host);
    EXPECT_EQ(order, "dbac");
}

TEST(ViewSnapshot, AnExceptionFromADrawingLeavesTheCanvasInOrder)
{
    const auto host = make<NSView>(CGRect(0, 0, 10, 10));
    const auto view = plate({0, 0, 5, 5}, red);
    view->setAlphaValue(0.5);
    view->onDraw = [](Canvas&, const CGRect&) { raiseInvalidArgument("draw", "no"); };
    host->addSubview(view);
    RecordingCanvas canvas;
    EXPECT_THAT(raised([&] { paintViewTree(*host, canvas); }), HasSubstr("draw: no"));
    EXPECT_TRUE(canvas.isBalanced());
}

TEST(ViewSnapshot, AThousandLevelsArePainted)
{
    const auto host = plate({0, 0, 10, 10}, red);
    std::shared_ptr<NSView> innermost = host;
    for (int level = 0; level < 1000; ++level) {
        const auto view = plate({0, 0, 10, 10}, red);
        view->setAlphaValue(0.5);
        innermost->addSubview(view);
        innermost = view;
    }
    EXPECT_THAT(painted(*host), HasSubstr("layer 0.5"));
}

TEST(ViewSnapshot, ARepresentationIsMadeForAPartOfAView)
{
    const auto view = make<NSView>(CGRect(5, 6, 30, 20));
    const auto representation = view->bitmapImageRepForCachingDisplay({10, 10, 12, 8});
    ASSERT_TRUE(representation);
    EXPECT_EQ(representation->size(), (CGSize{12, 8}));
    EXPECT_EQ(representation->pixelsWide(), 12);
    EXPECT_EQ(send(view, "bitmapImageRepForCachingDisplayInRect:", view->bounds())
                  .as<std::shared_ptr<NSBitmapImageRep>>()
                  ->size(),
              (CGSize{30, 20}));
}

TEST(ViewSnapshot, WhatHasNoPictureHasNoRepresentation)
{
    const auto view = make<NSView>(CGRect(0, 0, 10, 10));
    for (const CGRect& rect :
         {CGRect(), CGRect(0, 0, 10, 0), CGRect(0, 0, 0, 10), CGRect(0, 0, -5, 5), CGRect(0, 0, 32768, 1),
          CGRect(0, 0, 1, 1e9), CGRect(0, 0, 30000, 30000), CGRect(0, 0, 1e-7, 5)})
        EXPECT_EQ(view->bitmapImageRepForCachingDisplay(rect), nullptr) << describe(rect);
    EXPECT_THAT(raised([&] { view->bitmapImageRepForCachingDisplay({0, 0, std::nan(""), 1}); }), HasSubstr("rect"));
}

TEST(ViewSnapshot, WithoutAPainterARepresentationStaysTransparent)
{
    const auto view = plate({0, 0, 4, 4}, red);
    int drawings = 0;
    view->onDraw = [&](Canvas&, const CGRect&) { ++drawings; };
    const auto representation = view->bitmapImageRepForCachingDisplay(view->bounds());
    send(view, "cacheDisplayInRect:toBitmapImageRep:", view->bounds(), representation);
    EXPECT_EQ(drawings, 1);
    EXPECT_THAT(representation->image()->pixels(), testing::Each(0));
}

TEST(ViewSnapshot, ARepresentationOfAnotherSizeThanThePartIsRefused)
{
    const auto view = make<NSView>(CGRect(0, 0, 10, 10));
    const auto representation = view->bitmapImageRepForCachingDisplay(view->bounds());
    EXPECT_THAT(raised([&] {
                    view->cacheDisplay({0, 0, 5, 5}, *representation);
                }),
                HasSubstr("expected 10 × 10 pixels, got 5 × 5"));
}

TEST(ViewSnapshot, APictureNeedsABackendThatPaints)
{
    const auto view = make<NSView>(CGRect(0, 0, 10, 10));
    EXPECT_THAT(raised([&] { writeViewPicture(*view, "picture.png", 1, red); }),
                HasSubstr("there is no painter without a desktop backend"));
    EXPECT_FALSE(view->needsLayout());
}

} // namespace
} // namespace RVCore::ViewSnapshotTests
