#include "ViewTesting.h"

#include <AppKit/NSApplication.h>
#include <AppKit/NSWindow.h>
#include <Dispatch/DispatchQueue.h>
#include <Dispatch/ManualDispatchClock.h>
#include <Foundation/Message.h>
#include <Foundation/NSException.h>
#include <HeadlessBackend/HeadlessBackend.h>
#include <Platform/Foundation/Raised.h>

#include <cmath>

namespace RVCore::NSWindowTests {
namespace {

using testing::HasSubstr;

class NSWindowTest : public testing::Test {
protected:
    NSWindowTest()
    {
        auto owned = std::make_unique<HeadlessBackend>();
        desktop = owned.get();
        Backend::install(std::move(owned));
    }
    ~NSWindowTest() override
    {
        for (const auto& open : std::vector(NSApplication::shared().windows()))
            open->close();
        window.reset();
        Backend::install(nullptr);
    }
    HeadlessWindow& screen() { return *desktop->windows().front(); }
    NSView& content() { return *window->contentView(); }

    ManualDispatchClock clock; // by which nothing takes long
    HeadlessBackend* desktop = nullptr;
    std::shared_ptr<NSWindow> window = make<NSWindow>(CGSize{200, 100});
};

TEST_F(NSWindowTest, HasAContentViewOfItsSize)
{
    EXPECT_EQ(content().frame(), CGRect(0, 0, 200, 100));
    EXPECT_EQ(content().window(), window.get());
    EXPECT_TRUE(content().isContentView());
    EXPECT_EQ(make<NSWindow>()->contentSize(), (CGSize{480, 320}));
    EXPECT_TRUE(desktop->windows().empty()); // until it is shown
}

TEST_F(NSWindowTest, SizesAreRoundedUpToWholePointsThatADesktopKnows)
{
    window->setContentSize({100.25, 50.5});
    EXPECT_EQ(window->contentSize(), (CGSize{101, 51}));
    window->setContentSize({1e9, 50});
    EXPECT_EQ(window->contentSize(), (CGSize{32767, 50}));
    EXPECT_EQ(make<NSWindow>(CGSize{10.5, 20})->contentView()->frame(), CGRect(0, 0, 11, 20));
}

TEST_F(NSWindowTest, SizesThatAreNoneRaiseAndChangeNothing)
{
    EXPECT_THAT(raised([&] { window->setContentSize({0, 50}); }), HasSubstr("at least 1 × 1, got 0 × 50"));
    EXPECT_THAT(raised([&] { window->setContentSize({50, std::nan("")}); }), HasSubstr("size.height"));
    EXPECT_THAT(raised([] { make<NSWindow>(CGSize{-1, 5}); }), HasSubstr("NSWindow.init"));
    EXPECT_EQ(window->contentSize(), (CGSize{200, 100}));
}

TEST_F(NSWindowTest, OpensAtItsSizeWithItsTitleAndTheApplicationHoldsIt)
{
    window->setTitle("Title");
    EXPECT_FALSE(window->isVisible());
    window->makeKeyAndOrderFront();
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(screen().isVisible());
    EXPECT_EQ(screen().title(), "Title");
    EXPECT_EQ(screen().contentSize(), (CGSize{200, 100}));
    window->setTitle("Other");
    EXPECT_EQ(screen().title(), "Other");
    screen().setBackingScale(2);
    EXPECT_EQ(window->backingScaleFactor(), 2);
    const std::weak_ptr<NSWindow> held = window;
    window.reset();
    EXPECT_FALSE(held.expired());
    held.lock()->close();
    EXPECT_TRUE(held.expired());
    EXPECT_TRUE(desktop->windows().empty());
}

TEST_F(NSWindowTest, WhatDrawingRaisesIsReportedAndTheNextFrameIsWhole)
{
    const auto view = make<ProbeView>(CGRect(0, 0, 10, 10));
    content().addSubview(view);
    window->orderFront();
    view->onDraw = [](Canvas&, const CGRect&) { raiseInvalidArgument("draw", "no paint"); };
    testing::internal::CaptureStderr();
    EXPECT_TRUE(screen().client().paintPixels(1).changed.empty());
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("draw: no paint"));
    view->onDraw = nullptr;
    EXPECT_EQ(screen().client().paintPixels(1).changed.front(), (PixelRect{0, 0, 200, 100}));
}

TEST_F(NSWindowTest, FollowsTheUsersResizingWithLiveLayout)
{
    const auto view = addTo(content());
    hold(*view, Attribute::width, content(), Attribute::width, {.constant = -20});
    window->makeKeyAndOrderFront();
    desktop->flushFrames();
    EXPECT_EQ(view->frame().size.width, 180);
    screen().userResize({300, 150});
    EXPECT_TRUE(screen().needsFrame());
    EXPECT_EQ(desktop->flushFrames(), 1);
    EXPECT_EQ(view->frame().size.width, 280);
    EXPECT_EQ(window->contentSize(), (CGSize{300, 150}));
    EXPECT_EQ(desktop->flushFrames(), 0); // nothing moves, nothing is painted
}

TEST_F(NSWindowTest, TheMinimumIsWhatTheContentNeedsAlsoWhenItWasCompleteBefore)
{
    const auto built = make<NSView>();
    const auto view = addTo(*built);
    place(*view, {10, 10, 50, 30});
    hold(*view, Attribute::right, *built, Attribute::right, {.constant = -10, .relation = Relation::lessThanOrEqual});
    hold(*view, Attribute::bottom, *built, Attribute::bottom,
         {.constant = -9.5, .relation = Relation::lessThanOrEqual});
    window->setContentView(built);
    window->makeKeyAndOrderFront();
    EXPECT_EQ(screen().minimumContentSize(), (CGSize{70, 50}));
    screen().userResize({10, 10});
    desktop->flushFrames();
    EXPECT_EQ(window->contentSize(), (CGSize{70, 50}));
    // And follows it.
    for (const auto& constraint : view->constraints())
        constraint->setConstant(20);
    desktop->flushFrames();
    EXPECT_EQ(screen().minimumContentSize(), (CGSize{40, 40}));
    EXPECT_EQ(window->contentSize(), (CGSize{70, 50})); // never by itself
}

// Whose measuring takes ten milliseconds.
class SlowView : public NSView {
    RVCORE_CLASS(SlowView)

public:
    void init(ManualDispatchClock& clock)
    {
        NSView::init(CGRect(0, 0, 10, 10));
        m_clock = &clock;
    }
    CGSize intrinsicContentSize() const override
    {
        m_clock->advance(0.01);
        return NSView::intrinsicContentSize();
    }

private:
    ManualDispatchClock* m_clock = nullptr;
};

Class& SlowView::staticClass()
{
    static Class& theClass = defineClass<SlowView>("NSWindowTests.SlowView", NSView::staticClass(), [](auto&) {});
    return theClass;
}

TEST_F(NSWindowTest, AMinimumThatTakesLongToFindWaitsUntilThereHaveBeenNoFramesForAWhile)
{
    const auto view = make<NSView>(CGRect(0, 0, 50, 30));
    content().addSubview(make<SlowView>(clock));
    content().addSubview(view);
    hold(*view, Attribute::right, content(), Attribute::right, {.relation = Relation::lessThanOrEqual});
    window->makeKeyAndOrderFront();
    EXPECT_EQ(screen().minimumContentSize().width, 50);

    for (const CGFloat width : {80, 70, 60}) {
        view->setFrame({0, 0, width, 30});
        desktop->flushFrames();
        clock.advance(0.15);
        EXPECT_EQ(screen().minimumContentSize().width, 50) << width;
    }
    clock.advance(0.1);
    EXPECT_EQ(screen().minimumContentSize().width, 60);
    EXPECT_FALSE(DispatchQueue::main().nextDeadline());

    view->setFrame({0, 0, 90, 30});
    window->layoutIfNeeded();
    EXPECT_EQ(screen().minimumContentSize().width, 90) << "whoever asks for it does not wait";
    view->setFrame({0, 0, 500, 30});
    desktop->flushFrames();
    EXPECT_EQ(window->contentSize().width, 500) << "nor does what the content needs now";
    EXPECT_EQ(screen().minimumContentSize().width, 500);

    view->setFrame({0, 0, 70, 30});
    desktop->flushFrames();
    window->close();
    window.reset();
    clock.advance(1);
}

TEST_F(NSWindowTest, AFrameThatIsGivenCountsForTheMinimum)
{
    const auto view = make<NSView>(CGRect(0, 0, 50, 30));
    content().addSubview(view);
    hold(*view, Attribute::right, content(), Attribute::right, {.relation = Relation::lessThanOrEqual});
    window->makeKeyAndOrderFront();
    EXPECT_EQ(screen().minimumContentSize().width, 50);
    view->setFrame({0, 0, 80, 30});
    desktop->flushFrames();
    EXPECT_EQ(screen().minimumContentSize().width, 80);
}

TEST_F(NSWindowTest, GrowsToRequiredContentAndStaysThere)
{
    window->makeKeyAndOrderFront();
    const auto wide =
        hold(content(), Attribute::width, {.constant = 250.5, .relation = Relation::greaterThanOrEqual});
    desktop->flushFrames();
    EXPECT_EQ(window->contentSize(), (CGSize{251, 100}));
    EXPECT_EQ(screen().contentSize(), (CGSize{251, 100}));
    EXPECT_EQ(content().frame().size, (CGSize{251, 100}));
    wide->setActive(false);
    desktop->flushFrames();
    EXPECT_EQ(window->contentSize(), (CGSize{251, 100}));
    EXPECT_EQ(desktop->flushFrames(), 0);
}

TEST_F(NSWindowTest, OpensAtTheSizeThatItsContentNeeds)
{
    hold(content(), Attribute::height, {.constant = 130});
    window->makeKeyAndOrderFront();
    EXPECT_EQ(screen().contentSize(), (CGSize{200, 130}));
}

TEST_F(NSWindowTest, ComesToRestWhereTheDesktopCannotGiveWhatTheContentNeeds)
{
    for (const double width : {120.5, 0.0, 40'000.0}) {
        const auto fixed = hold(content(), Attribute::width, {.constant = width});
        window->makeKeyAndOrderFront();
        for (int i = 0; i < 4; ++i)
            desktop->flushFrames();
        EXPECT_EQ(desktop->flushFrames(), 0) << width;
        EXPECT_EQ(screen().contentSize().width, std::clamp(std::ceil(width), 1.0, 32767.0));
        EXPECT_EQ(window->contentSize(), screen().contentSize());
        fixed->setActive(false);
    }
}

// A desktop that gives every window the size that it likes, as tiling ones do.
class TilingWindow : public WindowBackend {
public:
    explicit TilingWindow(WindowClient& client) : m_client(client) {}
    void setTitle(const std::string&) override {}
    void setContentSize(CGSize) override
    {
        ++askedCount;
        m_client.contentSizeChanged({150, 150});
    }
    void setMinimumContentSize(CGSize) override {}
    void setMaximumContentSize(CGSize) override {}
    void setStyle(const WindowStyle&) override {}
    void setOrigin(CGPoint) override {}
    WindowPlacement placement() const override { return {}; }
    void order(WindowOrder) override {}
    void activate() override {}
    void setMinimized(bool) override {}
    void setParent(WindowBackend*) override {}
    void setVisible(bool) override {}
    bool isExposed() const override { return true; }
    void setCursor(CursorShape) override {}
    void accessibilityChanged(const std::shared_ptr<AccessibleElement>&, AccessibleChange) override {}
    void requestFrame() override {}
    CGFloat backingScale() const override { return 1; }
    void setTextInput(const std::shared_ptr<TextEditor>&, CGPoint) override {}
    static inline int askedCount = 0;

private:
    WindowClient& m_client;
};
class TilingDesktop : public HeadlessBackend {
public:
    std::unique_ptr<WindowBackend> makeWindow(WindowClient& client, CGSize) override
    {
        return std::make_unique<TilingWindow>(client);
    }
};

TEST_F(NSWindowTest, ADesktopThatRefusesASizeIsAskedOnce)
{
    Backend::install(std::make_unique<TilingDesktop>());
    window->makeKeyAndOrderFront();
    TilingWindow::askedCount = 0;
    const auto wide = hold(content(), Attribute::width, {.constant = 400});
    for (int i = 0; i < 3; ++i)
        window->layoutIfNeeded();
    EXPECT_EQ(TilingWindow::askedCount, 1);
    EXPECT_EQ(window->contentSize(), (CGSize{150, 150}));
    wide->setConstant(450);
    window->layoutIfNeeded();
    EXPECT_EQ(TilingWindow::askedCount, 2);
}

TEST_F(NSWindowTest, ANewContentViewTakesTheWindowsSizeAndTheOldOneIsARootAgain)
{
    const auto old = window->contentView();
    const auto replacement = make<NSView>(CGRect(5, 5, 10, 10));
    window->setContentView(replacement);
    EXPECT_EQ(replacement->frame(), CGRect(0, 0, 200, 100));
    EXPECT_EQ(replacement->window(), window.get());
    EXPECT_EQ(old->window(), nullptr);
    window->setContentView(replacement);
    hold(*old, Attribute::width, {.constant = 300, .priority = 900});
    old->layoutSubtreeIfNeeded();
    EXPECT_EQ(old->frame().size.width, 200); // held by its own frame
    EXPECT_THAT(raised([&] { window->setContentView(nullptr); }), HasSubstr("there is no view"));
    EXPECT_THAT(raised([&] { make<NSWindow>()->setContentView(replacement); }),
                HasSubstr("is the content view of another window"));
}

TEST_F(NSWindowTest, AContentViewCannotBecomeASubview)
{
    EXPECT_THAT(raised([&] { make<NSView>()->addSubview(window->contentView()); }),
                HasSubstr("is a window's content view"));
    EXPECT_EQ(content().superview(), nullptr);
}

TEST_F(NSWindowTest, ASubviewBecomesTheContentView)
{
    const auto inner = addTo(content());
    const auto old = window->contentView();
    window->setContentView(inner);
    EXPECT_TRUE(old->subviews().empty());
    EXPECT_EQ(inner->superview(), nullptr);
    EXPECT_EQ(inner->frame(), CGRect(0, 0, 200, 100));
}

TEST_F(NSWindowTest, ItsContentOutlivesItAsARootThatHoldsItsFrame)
{
    const auto view = window->contentView();
    window->layoutIfNeeded();
    window.reset();
    EXPECT_FALSE(view->isContentView());
    EXPECT_EQ(view->window(), nullptr);
    hold(*view, Attribute::width, {.constant = 300, .priority = 900});
    view->layoutSubtreeIfNeeded();
    EXPECT_EQ(view->frame().size.width, 200);
}

TEST_F(NSWindowTest, AnOverrideMayReplaceTheContentOrCloseTheWindowInTheMiddleOfAFrame)
{
    const auto view = addTo<ProbeView>(content());
    window->makeKeyAndOrderFront();
    view->onLayout = [&] { window->setContentView(make<NSView>()); };
    view->setNeedsLayout(true);
    desktop->flushFrames();
    EXPECT_NE(view->window(), window.get());
    const auto last = addTo<ProbeView>(content());
    last->onLayout = [&] {
        window->close();
        window.reset();
    };
    desktop->flushFrames();
    EXPECT_TRUE(desktop->windows().empty());
    window = make<NSWindow>();
}

// --- First responder

TEST_F(NSWindowTest, IsItsOwnFirstResponderUntilSomethingAcceptsToBeIt)
{
    EXPECT_EQ(window->firstResponder(), window.get());
    const auto view = addTo<ProbeView>(content());
    EXPECT_TRUE(window->makeFirstResponder(view.get()));
    EXPECT_EQ(window->firstResponder(), view.get());
    EXPECT_FALSE(window->makeFirstResponder(&content())); // does not accept
    EXPECT_EQ(window->firstResponder(), view.get());
    EXPECT_TRUE(window->makeFirstResponder(nullptr));
    EXPECT_EQ(window->firstResponder(), window.get());
}

TEST_F(NSWindowTest, AViewOutsideTheWindowIsRefused)
{
    const auto outside = make<ProbeView>();
    EXPECT_FALSE(window->makeFirstResponder(outside.get()));
    const auto other = make<NSWindow>();
    other->setContentView(outside);
    EXPECT_FALSE(window->makeFirstResponder(outside.get()));
    EXPECT_TRUE(other->makeFirstResponder(outside.get()));
}

TEST_F(NSWindowTest, AFirstResponderThatLeavesOrDiesGivesTheRoleBack)
{
    const auto middle = addTo(content());
    auto view = addTo<ProbeView>(*middle);
    window->makeFirstResponder(view.get());
    middle->removeFromSuperview();
    EXPECT_EQ(window->firstResponder(), window.get());
    content().addSubview(middle);
    window->makeFirstResponder(view.get());
    window->setContentView(make<NSView>());
    EXPECT_EQ(window->firstResponder(), window.get());

    class Eager : public NSResponder {
        bool acceptsFirstResponder() const override { return true; }
    };
    auto responder = make<Eager>();
    EXPECT_TRUE(window->makeFirstResponder(responder.get()));
    responder.reset();
    EXPECT_EQ(window->firstResponder(), window.get());
}

// --- Closing

TEST_F(NSWindowTest, ClosesWhenTheUserAsksAndOpensAgain)
{
    window->makeKeyAndOrderFront();
    screen().userClose();
    EXPECT_FALSE(window->isVisible());
    EXPECT_FALSE(screen().isVisible());
    EXPECT_TRUE(NSApplication::shared().windows().empty());
    window->close();
    window->makeKeyAndOrderFront();
    EXPECT_TRUE(screen().isVisible());
}

TEST_F(NSWindowTest, EveryPropertyAndOperationIsReachedByName)
{
    send(window, "setTitle:", "t");
    EXPECT_EQ(send(window, "title").as<std::string>(), "t");
    send(window, "setContentSize:", CGSize{30, 40});
    EXPECT_EQ(send(window, "contentSize").as<CGSize>(), (CGSize{30, 40}));
    const auto view = make<ProbeView>();
    send(window, "setContentView:", view);
    EXPECT_EQ(send(window, "contentView").as<std::shared_ptr<NSView>>(), std::static_pointer_cast<NSView>(view));
    EXPECT_EQ(send(view, "window").as<std::shared_ptr<NSWindow>>(), window);
    EXPECT_TRUE(send(window, "makeFirstResponder:", view).as<bool>());
    EXPECT_EQ(send(window, "firstResponder").as<ObjectRef>(), view);
    EXPECT_TRUE(send(window, "makeFirstResponder:", nullptr).as<bool>());
    EXPECT_EQ(send(window, "firstResponder").as<ObjectRef>(), window);
    EXPECT_EQ(send(window, "backingScaleFactor").as<double>(), 1);
    send(window, "makeKeyAndOrderFront");
    EXPECT_TRUE(send(window, "isVisible").as<bool>());
    send(window, "layoutIfNeeded");
    send(window, "close");
    EXPECT_FALSE(send(window, "isVisible").as<bool>());
}

TEST_F(NSWindowTest, TheDelegateIsReadAndWrittenByName)
{
    class Delegate : public NSObject, public NSWindowDelegate {};
    const auto object = make<Delegate>();
    send(window, "setDelegate:", object);
    EXPECT_EQ(window->delegate(), object);
    EXPECT_EQ(send(window, "delegate").as<ObjectRef>(), object);
    EXPECT_THAT(raised([&] { send(window, "setDelegate:", make<NSView>()); }), HasSubstr("is no NSWindowDelegate"));
    send(window, "setDelegate:", Value());
    EXPECT_EQ(window->delegate(), nullptr);
}

} // namespace
} // namespace RVCore::NSWindowTests
