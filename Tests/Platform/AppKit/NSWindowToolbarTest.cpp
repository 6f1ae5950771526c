#include "ToolbarTesting.h"
#include "ViewTesting.h"

#include <AppKit/NSTextField.h>

#include <gmock/gmock.h>

namespace RVCore::NSWindowToolbarTests {
namespace {

using testing::ElementsAre;
using Mask = NSWindowStyleMask;

// A window that has had no toolbar yet: a title bar of 22 points and content of 400 × 278.
class NSWindowToolbarTest : public WindowTest {
protected:
    static constexpr CGFloat barHeight = 34;

    std::shared_ptr<NSWindow> window = make<NSWindow>(CGRect(100, 100, 400, 278), Mask::titled | Mask::resizable);
    std::shared_ptr<NSToolbar> toolbar = make<NSToolbar>("main");
};

TEST_F(NSWindowToolbarTest, theFrameGrowsAtTheBottomAndTheContentKeepsItsSize)
{
    window->setToolbar(toolbar);
    EXPECT_EQ(window->toolbar(), toolbar);
    EXPECT_EQ(toolbar->window(), window.get());
    EXPECT_EQ(window->frame(), CGRect(100, 66, 400, 334));
    EXPECT_EQ(window->contentSize(), (CGSize{400, 278}));
    EXPECT_EQ(window->contentView()->frame(), CGRect(0, 0, 400, 278));
    EXPECT_EQ(window->areaSize(), (CGSize{400, 312}));
    window->setToolbar(nullptr);
    EXPECT_EQ(window->frame(), CGRect(100, 100, 400, 300));
    EXPECT_EQ(window->contentSize(), (CGSize{400, 278}));
    EXPECT_EQ(toolbar->window(), nullptr);
}

TEST_F(NSWindowToolbarTest, framesCountTheToolbar)
{
    window->setToolbar(toolbar);
    EXPECT_EQ(window->frameRectForContentRect({10, 20, 30, 40}), CGRect(10, 20, 30, 96));
    EXPECT_EQ(window->contentRectForFrameRect({10, 20, 30, 96}), CGRect(10, 20, 30, 40));
    EXPECT_EQ(window->contentRectForFrameRect({10, 20, 30, 40}).size.height, 0);
    window->setFrame({50, 50, 500, 256});
    EXPECT_EQ(window->contentSize(), (CGSize{500, 200}));
    EXPECT_EQ(window->frame(), CGRect(50, 50, 500, 256));
    window->setContentSize({500, 100});
    EXPECT_EQ(window->frame(), CGRect(50, 150, 500, 156)) << "the top edge stays";
}

TEST_F(NSWindowToolbarTest, theDesktopsWindowHasRoomForBoth)
{
    window->orderFront();
    window->setToolbar(toolbar);
    EXPECT_EQ(screenOf(*window).contentSize(), (CGSize{400, 312}));
    EXPECT_EQ(screenOf(*window).placement().origin, (CGPoint{100, 900 - 400}));
    EXPECT_EQ(window->frame(), CGRect(100, 66, 400, 334));
    screenOf(*window).userResize({300, 200});
    EXPECT_EQ(window->contentSize(), (CGSize{300, 166}));
    EXPECT_EQ(window->contentView()->frame(), CGRect(0, 0, 300, 166));
    EXPECT_EQ(window->frame().maxY(), 400);
    window->setToolbar(nullptr);
    EXPECT_EQ(screenOf(*window).contentSize(), (CGSize{300, 166}));
}

TEST_F(NSWindowToolbarTest, aWindowThatIsShownWithAToolbarHasRoomForIt)
{
    window->setToolbar(toolbar);
    window->orderFront();
    EXPECT_EQ(screenOf(*window).contentSize(), (CGSize{400, 312}));
    EXPECT_EQ(screenOf(*window).placement().origin, (CGPoint{100, 900 - 400}));
}

TEST_F(NSWindowToolbarTest, limitsAreOfTheContent)
{
    window->setContentMinSize({200, 150});
    window->setContentMaxSize({600, 300});
    window->orderFront();
    window->setToolbar(toolbar);
    EXPECT_EQ(screenOf(*window).minimumContentSize(), (CGSize{200, 184}));
    EXPECT_EQ(screenOf(*window).maximumContentSize(), (CGSize{600, 334}));
    screenOf(*window).userResize({10, 10});
    EXPECT_EQ(window->contentSize(), (CGSize{200, 150}));
    window->setToolbar(nullptr);
    EXPECT_EQ(screenOf(*window).minimumContentSize(), (CGSize{200, 150}));
    EXPECT_EQ(window->contentSize(), (CGSize{200, 150})) << "the smallest content has no room to give";
    window->setToolbar(toolbar);
    EXPECT_EQ(window->contentSize(), (CGSize{200, 150}));
    EXPECT_EQ(screenOf(*window).contentSize(), (CGSize{200, 184}));
}

TEST_F(NSWindowToolbarTest, whatTheContentNeedsComesBesideTheToolbar)
{
    window->setToolbar(toolbar);
    const auto view = make<NSView>();
    view->setTranslatesAutoresizingMaskIntoConstraints(false);
    window->contentView()->addSubview(view);
    for (const auto edge : {Attribute::left, Attribute::right, Attribute::top, Attribute::bottom})
        make<NSLayoutConstraint>(*view, edge, Relation::equal, window->contentView().get(), edge, 1, 0)
            ->setActive(true);
    make<NSLayoutConstraint>(*view, Attribute::height, Relation::greaterThanOrEqual, nullptr,
                             Attribute::notAnAttribute, 1, 350)
        ->setActive(true);
    window->orderFront();
    EXPECT_EQ(window->contentSize(), (CGSize{400, 350}));
    EXPECT_EQ(screenOf(*window).contentSize(), (CGSize{400, 384}));
    EXPECT_EQ(screenOf(*window).minimumContentSize().height, 384);
}

TEST_F(NSWindowToolbarTest, aWindowAsHighAsADesktopAllowsGivesTheToolbarOfItsContent)
{
    window->setContentSize({100, 32767});
    window->orderFront();
    window->setToolbar(toolbar);
    EXPECT_EQ(screenOf(*window).contentSize(), (CGSize{100, 32767}));
    EXPECT_EQ(window->contentSize(), (CGSize{100, 32767 - barHeight}));
}

TEST_F(NSWindowToolbarTest, aDesktopThatLeavesNoRoomLeavesTheContentItsSmallestHeight)
{
    window->setToolbar(toolbar);
    window->orderFront();
    screenOf(*window).client().contentSizeChanged({50, 10});
    EXPECT_EQ(window->contentSize(), (CGSize{50, 1}));
}

TEST_F(NSWindowToolbarTest, aHiddenToolbarTakesNoRoom)
{
    window->setToolbar(toolbar);
    toolbar->setVisible(false);
    EXPECT_EQ(window->frame(), CGRect(100, 100, 400, 300));
    EXPECT_EQ(window->toolbar(), toolbar);
    toolbar->setVisible(false);
    toolbar->setVisible(true);
    EXPECT_EQ(window->frame(), CGRect(100, 66, 400, 334));
    const auto hidden = make<NSToolbar>();
    hidden->setVisible(false);
    window->setToolbar(hidden);
    EXPECT_EQ(window->frame(), CGRect(100, 100, 400, 300));
}

TEST_F(NSWindowToolbarTest, anotherToolbarChangesNoFrame)
{
    window->setToolbar(toolbar);
    const auto delegate = std::make_shared<RecordingDelegate>();
    window->setDelegate(delegate);
    window->setToolbar(make<NSToolbar>());
    EXPECT_EQ(window->frame(), CGRect(100, 66, 400, 334));
    EXPECT_EQ(toolbar->window(), nullptr);
    EXPECT_THAT(delegate->take(), ElementsAre());
    window->setToolbar(nullptr);
    EXPECT_THAT(delegate->take(), ElementsAre("resized"));
}

TEST_F(NSWindowToolbarTest, aToolbarMovesFromWindowToWindow)
{
    const auto other = make<NSWindow>(CGRect(500, 100, 400, 278), Mask::titled);
    window->setToolbar(toolbar);
    window->orderFront();
    other->orderFront();
    toolbar->insertItem(makeItem("Save"), 0);
    other->setToolbar(toolbar);
    EXPECT_EQ(window->toolbar(), nullptr);
    EXPECT_EQ(window->frame(), CGRect(100, 100, 400, 300));
    EXPECT_EQ(other->toolbar(), toolbar);
    EXPECT_EQ(other->frame(), CGRect(500, 66, 400, 334));
    EXPECT_EQ(toolbar->window(), other.get());
    EXPECT_EQ(screenOf(*window).contentSize(), (CGSize{400, 278}));
    EXPECT_EQ(toolbar->visibleItems().size(), 1U);
}

TEST_F(NSWindowToolbarTest, aDelegateMayTakeTheToolbarAwayAtOnce)
{
    const auto delegate = std::make_shared<RecordingDelegate>();
    delegate->onCall = [&](const std::string&) {
        delegate->onCall = nullptr;
        window->setToolbar(nullptr);
    };
    window->setDelegate(delegate);
    window->setToolbar(toolbar);
    EXPECT_EQ(window->toolbar(), nullptr);
    EXPECT_EQ(window->frame(), CGRect(100, 100, 400, 300));
}

TEST_F(NSWindowToolbarTest, aToolbarOutlivesItsWindow)
{
    window->setToolbar(toolbar);
    toolbar->insertItem(makeItem("Save"), 0);
    window.reset();
    EXPECT_EQ(toolbar->window(), nullptr);
    EXPECT_EQ(toolbar->visibleItems().size(), 1U);
    toolbar->items()[0]->setLabel("Open");
}

TEST_F(NSWindowToolbarTest, theContentIsDrawnAndPressedBelowTheToolbar)
{
    const auto view = make<ProbeView>();
    view->onDraw = [](Canvas& canvas, const CGRect& rect) { canvas.fill({rect, 0}, {1, 0, 0, 1}); };
    window->setContentView(view);
    window->setToolbar(toolbar);
    window->orderFront();
    screenOf(*window).flushFrame();
    const std::string drawn = screenOf(*window).lastFrame().text();
    EXPECT_NE(drawn.find("toolbar"), std::string::npos) << drawn;
    screenOf(*window).userInput({.kind = InputKind::buttonPressed, .location = {5, 33}});
    EXPECT_EQ(window->firstResponder(), window.get()) << "that was the toolbar";
    screenOf(*window).userInput({.kind = InputKind::buttonPressed, .location = {5, 35}});
    EXPECT_EQ(window->firstResponder(), view.get());
}

TEST_F(NSWindowToolbarTest, anInputMethodComposesBelowTheToolbar)
{
    const auto field = make<NSTextField>(CGRect(10, 200, 100, 24));
    window->contentView()->addSubview(field);
    window->makeKeyAndOrderFront();
    window->makeFirstResponder(field.get());
    screenOf(*window).flushFrame();
    const CGPoint before = screenOf(*window).textInputOrigin();
    window->setToolbar(toolbar);
    screenOf(*window).flushFrame();
    EXPECT_EQ(screenOf(*window).textInputOrigin(), (CGPoint{before.x, before.y + barHeight}));
}

} // namespace
} // namespace RVCore::NSWindowToolbarTests
