#include <AppKit/NSApplication.h>
#include <AppKit/NSEvent.h>
#include <AppKit/NSWindow.h>
#include <HeadlessBackend/HeadlessBackend.h>
#include <Sources/Views/TestViews.h>

#include <gmock/gmock.h>

namespace RVCore::NSViewRVCoreEventsTests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Writes down every event that is handed on to it.
class CatchingView : public NSView {
public:
    void mouseDown(NSEvent&) override { caught.emplace_back("mouseDown:"); }
    void mouseUp(NSEvent&) override { caught.emplace_back("mouseUp:"); }
    void mouseMoved(NSEvent&) override { caught.emplace_back("mouseMoved:"); }
    void mouseDragged(NSEvent&) override { caught.emplace_back("mouseDragged:"); }
    void scrollWheel(NSEvent&) override { caught.emplace_back("scrollWheel:"); }
    void keyDown(NSEvent&) override { caught.emplace_back("keyDown:"); }
    void keyUp(NSEvent&) override { caught.emplace_back("keyUp:"); }
    void mouseEntered(NSEvent&) override { caught.emplace_back("mouseEntered:"); }
    void mouseExited(NSEvent&) override { caught.emplace_back("mouseExited:"); }
    void rightMouseDown(NSEvent&) override { caught.emplace_back("rightMouseDown:"); }
    void rightMouseUp(NSEvent&) override { caught.emplace_back("rightMouseUp:"); }
    void rightMouseDragged(NSEvent&) override { caught.emplace_back("rightMouseDragged:"); }
    void otherMouseDown(NSEvent&) override { caught.emplace_back("otherMouseDown:"); }
    void otherMouseUp(NSEvent&) override { caught.emplace_back("otherMouseUp:"); }
    void otherMouseDragged(NSEvent&) override { caught.emplace_back("otherMouseDragged:"); }
    void flagsChanged(NSEvent&) override { caught.emplace_back("flagsChanged:"); }
    void cursorUpdate(NSEvent&) override { caught.emplace_back("cursorUpdate:"); }

    std::vector<std::string> caught;
};

const std::vector<std::string> blockable = {
    "mouseDown:", "mouseUp:", "mouseMoved:", "mouseDragged:", "scrollWheel:", "keyDown:", "keyUp:"};
const std::vector<std::string> others = {
    "mouseEntered:",   "mouseExited:",  "rightMouseDown:",    "rightMouseUp:", "rightMouseDragged:",
    "otherMouseDown:", "otherMouseUp:", "otherMouseDragged:", "flagsChanged:", "cursorUpdate:"};

class EventBlocking : public testing::Test {
protected:
    EventBlocking() { superview->addSubview(view); }

    // What reaches the superview when the view is sent these.
    std::vector<std::string> handedOn(const std::vector<std::string>& selectors)
    {
        for (const std::string& selector : selectors)
            send(view, Selector(selector), event);
        return std::exchange(superview->caught, {});
    }

    std::shared_ptr<CatchingView> superview = make<CatchingView>();
    std::shared_ptr<NSView> view = make<NSView>();
    std::shared_ptr<NSEvent> event = make<NSEvent>(NSEventContent());
};

TEST_F(EventBlocking, aViewWithoutAFlagHandsOnEachOfTheSevenEvents)
{
    EXPECT_FALSE(disableEventPropagation(*view));
    EXPECT_EQ(handedOn(blockable), blockable);
    EXPECT_FALSE(view->wantsLayer()) << "without a flag the alpha is not asked for";
}

TEST_F(EventBlocking, aBlockingViewKeepsTheSevenEventsAndHandsOnAllOthers)
{
    setDisableEventPropagation(*view, true);
    EXPECT_THAT(handedOn(blockable), IsEmpty());
    EXPECT_EQ(handedOn(others), others);
}

TEST_F(EventBlocking, aFlagThatWasTakenBackHandsOn)
{
    setDisableEventPropagation(*view, true);
    setDisableEventPropagation(*view, false);
    EXPECT_FALSE(disableEventPropagation(*view));
    EXPECT_EQ(handedOn(blockable), blockable);
}

TEST_F(EventBlocking, aHiddenViewDoesNotBlockUntilItIsShownAgain)
{
    setDisableEventPropagation(*view, true);
    view->setHidden(true);
    EXPECT_FALSE(disableEventPropagation(*view));
    EXPECT_EQ(handedOn({"mouseDown:"}), std::vector<std::string>{"mouseDown:"});
    view->setHidden(false);
    EXPECT_TRUE(disableEventPropagation(*view));
    EXPECT_THAT(handedOn({"mouseDown:"}), IsEmpty());
}

TEST_F(EventBlocking, aTransparentViewDoesNotBlockUntilItIsOpaqueAgain)
{
    setDisableEventPropagation(*view, true);
    setAlpha(*view, 0);
    EXPECT_FALSE(disableEventPropagation(*view));
    EXPECT_EQ(handedOn({"keyDown:"}), std::vector<std::string>{"keyDown:"});
    setAlpha(*view, 0.01);
    EXPECT_THAT(handedOn({"keyDown:"}), IsEmpty());
}

TEST_F(EventBlocking, readingTheFlagOfABlockingViewMakesItLayerBacked)
{
    setDisableEventPropagation(*view, true);
    EXPECT_FALSE(view->wantsLayer());
    EXPECT_TRUE(disableEventPropagation(*view));
    EXPECT_TRUE(view->wantsLayer());
}

TEST_F(EventBlocking, theFlagIsPublished)
{
    send(view, "setDisableEventPropagation:", true);
    EXPECT_TRUE(send(view, "disableEventPropagation").as<bool>());
    EXPECT_TRUE(disableEventPropagation(*view));
}

TEST_F(EventBlocking, aSubclasssOwnHandlerIsNotBlocked)
{
    const auto own = make<CatchingView>();
    superview->addSubview(own);
    setDisableEventPropagation(*own, true);
    send(own, "mouseDown:", event);
    EXPECT_THAT(own->caught, ElementsAre("mouseDown:"));
}

TEST_F(EventBlocking, everyViewOfTheFrameworkBlocksToo)
{
    const auto group = make<RVGroupView>();
    superview->addSubview(group);
    setDisableEventPropagation(*group, true);
    send(group, "mouseDown:", event);
    EXPECT_THAT(superview->caught, IsEmpty());
}

TEST_F(EventBlocking, aClickOnABlockingViewReachesNeitherSuperviewNorWindow)
{
    // What is handed on comes by the content view to the window.
    class PassingView : public CatchingView {
    public:
        void mouseDown(NSEvent& event) override
        {
            CatchingView::mouseDown(event);
            NSResponder::mouseDown(event);
        }
        void mouseUp(NSEvent& event) override
        {
            CatchingView::mouseUp(event);
            NSResponder::mouseUp(event);
        }
    };
    class CatchingWindow : public NSWindow {
    public:
        void mouseDown(NSEvent&) override { caught.emplace_back("window mouseDown:"); }
        void mouseUp(NSEvent&) override { caught.emplace_back("window mouseUp:"); }
        std::vector<std::string> caught;
    };
    auto owned = std::make_unique<HeadlessBackend>();
    HeadlessBackend& desktop = *owned;
    Backend::install(std::move(owned));
    const auto window = make<CatchingWindow>();
    const auto content = make<PassingView>();
    content->addSubview(view);
    window->setContentView(content);
    view->setFrame({0, 0, 100, 100});
    window->makeKeyAndOrderFront();
    const auto click = [&] {
        InputEvent press{.kind = InputKind::buttonPressed, .location = {50, window->contentSize().height - 50}};
        desktop.windows().front()->userInput(press);
        press.kind = InputKind::buttonReleased;
        desktop.windows().front()->userInput(press);
        std::vector<std::string> caught = std::exchange(content->caught, {});
        std::ranges::copy(std::exchange(window->caught, {}), std::back_inserter(caught));
        return caught;
    };
    const auto isHandedOn = ElementsAre("mouseDown:", "mouseUp:", "window mouseDown:", "window mouseUp:");
    EXPECT_THAT(click(), isHandedOn);
    setDisableEventPropagation(*view, true);
    EXPECT_THAT(click(), IsEmpty());
    setAlpha(*view, 0);
    EXPECT_THAT(click(), isHandedOn);
    setAlpha(*view, 1);
    view->setHidden(true);
    EXPECT_THAT(click(), isHandedOn);
    window->close();
    Backend::install(nullptr);
}

TEST(GroupKeyOrder, isTheMembersOwnWhateverTheirFrames)
{
    class KeyView : public SizedView {
    public:
        bool acceptsFirstResponder() const override { return true; }
    };
    const auto tall = make<KeyView>(CGSize{20, 60});
    const auto low = make<KeyView>(CGSize{20, 10});
    const auto third = make<KeyView>(CGSize{20, 40});
    const auto group = make<RVGroupView>(RVGroupView::Views{tall, low, third}, RVGroupView::Arrangement());
    group->layoutSubtreeIfNeeded();
    auto order = group->subviewsInKeyOrder();
    ASSERT_EQ(order.size(), group->subviews().size());
    order.resize(3);
    EXPECT_THAT(order, ElementsAre(tall.get(), low.get(), third.get()));
    group->setViews({third, tall});
    order = group->subviewsInKeyOrder();
    EXPECT_EQ(order[0], third.get());
    EXPECT_EQ(order[1], tall.get());
}

} // namespace
} // namespace RVCore::NSViewRVCoreEventsTests
