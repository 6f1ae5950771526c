#include "ViewTesting.h"

#include <AppKit/NSTextField.h>
#include <AppKit/ViewDiagram.h>
#include <Backend/Backend.h>
#include <Foundation/NSException.h>
#include <HeadlessBackend/RecordingCanvas.h>
#include <Platform/Foundation/Raised.h>

namespace RVCore::ViewDiagramTests {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr CGColor black{0, 0, 0, 1};
constexpr const char* unsettled = "width 1.5 rgba(0.78, 0.1, 0.28, 1)";

// What is drawn over the ordinary picture, without the legend.
std::string marks(NSView& root)
{
    root.layoutSubtreeIfNeeded();
    RecordingCanvas canvas;
    paintViewDiagram(root, canvas);
    EXPECT_TRUE(canvas.isBalanced());
    std::string text = canvas.text();
    text = text.substr(text.find("    end\n") + 8);
    return text.substr(0, text.find("  restore\n"));
}

// A view that shows something.
std::shared_ptr<ProbeView> addSolid(NSView& superview, const CGRect& rect)
{
    const auto view = addTo<ProbeView>(superview);
    view->onDraw = [](Canvas& canvas, const CGRect& bounds) { canvas.fill({bounds, 0}, black); };
    place(*view, rect);
    return view;
}

TEST(ViewDiagram, DrawsFramesPaddingGapsAndLengthsOverThePicture)
{
    const auto host = makeHost(140, 40);
    addSolid(*host, {10, 10, 40, 30});
    place(*addTo(*host), {50, 24, 20, 1});
    addSolid(*host, {70, 10, 20, 30});
    addSolid(*host, {93, 10, 37, 30});
    EXPECT_EQ(marks(*host), "    fill (0, 0) 140 × 10 rgba(0.2, 0.6, 0.36, 0.16)\n"
                            "    fill (0, 10) 10 × 30 rgba(0.2, 0.6, 0.36, 0.16)\n"
                            "    fill (130, 10) 10 × 30 rgba(0.2, 0.6, 0.36, 0.16)\n"
                            "    fill (90, 10) 3 × 30 rgba(0.95, 0.56, 0.16, 0.18)\n"
                            "    fill (10, 10) 40 × 30 rgba(0.16, 0.36, 0.65, 0.07)\n"
                            "    fill (50, 24) 20 × 1 rgba(0.95, 0.56, 0.16, 0.18)\n"
                            "    fill (70, 10) 20 × 30 rgba(0.16, 0.36, 0.65, 0.07)\n"
                            "    fill (93, 10) 37 × 30 rgba(0.16, 0.36, 0.65, 0.07)\n"
                            "    stroke (0, 0) 140 × 40 width 0.75 rgba(0.16, 0.36, 0.65, 0.4)\n"
                            "    stroke (10, 10) 40 × 30 width 0.75 rgba(0.16, 0.36, 0.65, 1)\n"
                            "    stroke (70, 10) 20 × 30 width 0.75 rgba(0.16, 0.36, 0.65, 1)\n"
                            "    stroke (93, 10) 37 × 30 width 0.75 rgba(0.16, 0.36, 0.65, 1)\n"
                            "    fill (50, 24.125) 20 × 0.75 rgba(0.72, 0.36, 0.05, 1)\n"
                            "    fill (50, 22) 0.75 × 5 rgba(0.72, 0.36, 0.05, 1)\n"
                            "    fill (69.25, 22) 0.75 × 5 rgba(0.72, 0.36, 0.05, 1)\n"
                            "    fill (0.5, 20) 9 × 10 radius 2 rgba(1, 1, 1, 0.85)\n"
                            "    text \"10\" system 9 rgba(0.13, 0.45, 0.27, 1) in (0.5, 19) 9 × 12\n"
                            "    fill (130.5, 20) 9 × 10 radius 2 rgba(1, 1, 1, 0.85)\n"
                            "    text \"10\" system 9 rgba(0.13, 0.45, 0.27, 1) in (130.5, 19) 9 × 12\n"
                            "    fill (55.5, 13.5) 9 × 10 radius 2 rgba(1, 1, 1, 0.85)\n"
                            "    text \"20\" system 9 rgba(0.72, 0.36, 0.05, 1) in (55.5, 12.5) 9 × 12\n"
                            "    fill (14, 20) 32 × 10 radius 2 rgba(1, 1, 1, 0.85)\n"
                            "    text \"40 × 30\" system 9 rgba(0.16, 0.36, 0.65, 1) in (14, 19) 32 × 12\n"
                            "    fill (95.5, 20) 32 × 10 radius 2 rgba(1, 1, 1, 0.85)\n"
                            "    text \"37 × 30\" system 9 rgba(0.16, 0.36, 0.65, 1) in (95.5, 19) 32 × 12\n");
}

TEST(ViewDiagram, ThePictureBelowIsPaleAndTheLegendStandsUnderIt)
{
    const auto host = makeHost(400, 40);
    RecordingCanvas canvas;
    paintViewDiagram(*host, canvas);
    EXPECT_EQ(viewDiagramSize(*host), (CGSize{432, 100}));
    EXPECT_EQ(canvas.text(),
              "save\n"
              "  fill (0, 0) 432 × 100 rgba(1, 1, 1, 1)\n"
              "  transform [1, 0, 0, 1, 16, 16]\n"
              "  save\n"
              "    clip (0, 0) 400 × 40\n"
              "    layer 0.35\n"
              "      save\n"
              "        transform [1, 0, 0, 1, 0, 0]\n"
              "        clip (0, 0) 400 × 40\n"
              "        transform [1, 0, 0, 1, 0, 0]\n"
              "      restore\n"
              "    end\n"
              "    fill (0, 0) 400 × 40 rgba(0.95, 0.56, 0.16, 0.18)\n"
              "  restore\n"
              "  transform [1, 0, 0, 1, 0, 56]\n"
              "  fill (0, 0) 10 × 10 rgba(0.16, 0.36, 0.65, 0.07)\n"
              "  stroke (0, 0) 10 × 10 width 0.75 rgba(0.16, 0.36, 0.65, 1)\n"
              "  text \"frame and size\" system 9 rgba(0.16, 0.36, 0.65, 1) in (15, -1) 63 × 12\n"
              "  fill (94, 0) 10 × 10 rgba(0.2, 0.6, 0.36, 0.16)\n"
              "  stroke (94, 0) 10 × 10 width 0.75 rgba(0.13, 0.45, 0.27, 1)\n"
              "  text \"padding\" system 9 rgba(0.13, 0.45, 0.27, 1) in (109, -1) 32 × 12\n"
              "  fill (157, 0) 10 × 10 rgba(0.95, 0.56, 0.16, 0.18)\n"
              "  stroke (157, 0) 10 × 10 width 0.75 rgba(0.72, 0.36, 0.05, 1)\n"
              "  text \"gap or empty view\" system 9 rgba(0.72, 0.36, 0.05, 1) in (172, -1) 77 × 12\n"
              "  fill (265, 0) 10 × 10 rgba(0.78, 0.1, 0.28, 0.08)\n"
              "  stroke (265, 0) 10 × 10 width 1.5 rgba(0.78, 0.1, 0.28, 1)\n"
              "  text \"not settled by constraints\" system 9 rgba(0.78, 0.1, 0.28, 1) in (280, -1) 117 × 12\n"
              "restore\n");
}

TEST(ViewDiagram, ALegendThatIsTooWideWraps)
{
    EXPECT_EQ(viewDiagramSize(*makeHost(140, 40)), (CGSize{172, 151}));
    EXPECT_EQ(viewDiagramSize(*makeHost(20, 40)), (CGSize{164, 151})) << "never narrower than its longest entry";
}

TEST(ViewDiagram, HiddenViewsAreNotShown)
{
    const auto host = makeHost(100, 50);
    const auto a = addSolid(*host, {0, 0, 100, 25});
    const auto b = addSolid(*host, {0, 25, 100, 25});
    const std::string both = marks(*host);
    a->setHidden(true);
    EXPECT_THAT(marks(*host), HasSubstr("text \"25\""));
    a->setHidden(false);
    a->setAlphaValue(0);
    EXPECT_THAT(marks(*host), HasSubstr("text \"25\""));
    EXPECT_THAT(both, Not(HasSubstr("text \"25\"")));
}

TEST(ViewDiagram, ViewsThatAreNotSettledAreMarkedEvenWithoutAnArea)
{
    const auto host = makeHost(100, 50);
    const auto view = addTo<ProbeView>(*host);
    view->onDraw = [](Canvas& canvas, const CGRect& bounds) { canvas.fill({bounds, 0}, black); };
    EXPECT_THAT(marks(*host), HasSubstr("stroke (-3, -3) 6 × 6 " + std::string(unsettled)));
    view->intrinsicSize = {20, 10};
    view->invalidateIntrinsicContentSize();
    EXPECT_THAT(marks(*host), HasSubstr("stroke (0, 0) 20 × 10 " + std::string(unsettled)));
    view->onDraw = nullptr;
    EXPECT_THAT(marks(*host), Not(HasSubstr(unsettled))) << "nobody misses the place of a view that shows nothing";
}

TEST(ViewDiagram, ASizeKeepsClearOfTheViewsOwnText)
{
    const auto host = makeHost(100, 17);
    const auto label = plainLabel("left");
    label->setTranslatesAutoresizingMaskIntoConstraints(false);
    host->addSubview(label);
    place(*label, {0, 0, 100, 17});
    const auto placeOf = [&](const std::string& text, NSTextAlignment alignment) {
        label->setStringValue(text);
        label->setAlignment(alignment);
        const std::string drawn = marks(*host);
        const std::size_t start = drawn.find("text \"100 × 17\"");
        return start == std::string::npos ? "none" : drawn.substr(drawn.find("in ", start), 12);
    };
    EXPECT_EQ(placeOf("left", NSTextAlignment::left), "in (32, 2.5)");
    EXPECT_EQ(placeOf("left side", NSTextAlignment::left), "in (62, 2.5)");
    EXPECT_EQ(placeOf("rightmost", NSTextAlignment::right), "in (2, 2.5) ");
    EXPECT_EQ(placeOf("all the width", NSTextAlignment::center), "none");
}

TEST(ViewDiagram, NumbersDoNotCoverEachOther)
{
    struct TextCollector : RecordingCanvas {
        void drawText(const TextDescription& text, const CGRect& rect) override
        {
            RecordingCanvas::drawText(text, rect);
            rects.push_back(rect);
        }
        std::vector<CGRect> rects;
    } canvas;
    const auto host = makeHost(120, 60);
    for (int i = 0; i < 12; ++i)
        addSolid(*host, {i * 9.0, i * 4.0, 50, 16});
    host->layoutSubtreeIfNeeded();
    paintViewDiagram(*host, canvas);
    ASSERT_GT(canvas.rects.size(), 6U) << "more than the legend";
    for (std::size_t i = 0; i < canvas.rects.size() - 4; ++i) {
        for (std::size_t j = 0; j < i; ++j)
            EXPECT_TRUE(canvas.rects[i].intersection(canvas.rects[j]).isEmpty()) << i << " and " << j;
    }
}

TEST(ViewDiagram, PlacesCountFromTheTopInATreeThatIsNotFlipped)
{
    const auto host = make<NSView>(CGRect(0, 0, 100, 50));
    const auto flipped = makeHost(100, 50);
    addSolid(*host, {10, 5, 30, 20});
    addSolid(*flipped, {10, 5, 30, 20});
    EXPECT_EQ(marks(*host), marks(*flipped));
}

TEST(ViewDiagram, WhatSticksOutIsShownUnlessItIsFarAway)
{
    const auto host = makeHost(400, 40);
    addSolid(*host, {-10, 5, 30, 20});
    host->layoutSubtreeIfNeeded();
    EXPECT_EQ(viewDiagramSize(*host), (CGSize{442, 100}));
    RecordingCanvas canvas;
    paintViewDiagram(*host, canvas);
    EXPECT_THAT(canvas.text(), HasSubstr("  transform [1, 0, 0, 1, 26, 16]\n  save\n    clip (-10, 0) 410 × 40\n"));
    EXPECT_THAT(canvas.text(), HasSubstr("  transform [1, 0, 0, 1, -10, 56]\n"));
    const auto far = makeHost(400, 40);
    addSolid(*far, {10, 5, 5000, 5000});
    far->layoutSubtreeIfNeeded();
    EXPECT_EQ(viewDiagramSize(*far), (CGSize{632, 300}));
}

TEST(ViewDiagram, WhatCannotBeWrittenRaises)
{
    EXPECT_THAT(raised([] { writeViewDiagram(*makeHost(10, 10), "picture.png", 1); }),
                HasSubstr("NSInvalidArgumentException"));
}

} // namespace
} // namespace RVCore::ViewDiagramTests
