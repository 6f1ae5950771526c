#include "ViewTesting.h"
#include "WindowTesting.h"

#include <AppKit/NSViewController.h>
#include <Foundation/Message.h>
#include <Platform/Foundation/Raised.h>

#include <cmath>

namespace RVCore::NSViewControllerTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// Makes a view of this size and writes down what it is told.
class PageController : public NSViewController {
public:
    void loadView() override
    {
        calls.emplace_back("load");
        setView(make<NSView>(CGRect({}, size)));
    }
    void viewDidLoad() override { calls.emplace_back("did load"); }
    void viewWillAppear() override { note("will appear"); }
    void viewDidAppear() override { note("did appear"); }
    void viewWillDisappear() override { note("will disappear"); }
    void viewDidDisappear() override { note("did disappear"); }

    std::vector<std::string> take() { return std::exchange(calls, {}); }

    CGSize size{300, 200};
    std::vector<std::string> calls;

private:
    void note(const std::string& call)
    {
        const NSWindow* window = isViewLoaded() ? view()->window() : nullptr;
        calls.push_back(call + (window && window->isVisible() ? " on screen" : ""));
    }
};

class NSViewControllerTest : public WindowTest {
protected:
    std::shared_ptr<PageController> page = make<PageController>();
};

TEST_F(NSViewControllerTest, LoadsItsViewWhenItIsFirstAskedFor)
{
    EXPECT_FALSE(page->isViewLoaded());
    EXPECT_THAT(page->take(), IsEmpty());
    const auto view = page->view();
    EXPECT_EQ(view->frame().size, (CGSize{300, 200}));
    EXPECT_TRUE(page->isViewLoaded());
    EXPECT_EQ(page->view(), view);
    EXPECT_THAT(page->take(), ElementsAre("load", "did load"));
}

TEST_F(NSViewControllerTest, MakesAPlainViewOfItself)
{
    const auto plain = make<NSViewController>();
    EXPECT_EQ(&plain->view()->classObject(), &NSView::staticClass());
    EXPECT_EQ(plain->title(), "");
    EXPECT_EQ(plain->preferredContentSize(), CGSize());
}

TEST_F(NSViewControllerTest, AViewThatIsSetIsLoaded)
{
    const auto view = make<NSView>();
    page->setView(view);
    EXPECT_EQ(page->view(), view);
    EXPECT_THAT(page->take(), IsEmpty());
    EXPECT_THAT(raised([&] { page->setView(nullptr); }), HasSubstr("there is no view"));
    EXPECT_THAT(raised([&] { make<NSViewController>()->setView(view); }), HasSubstr("is another controller's view"));
    page->setView(make<NSView>());
    make<NSViewController>()->setView(view);
}

TEST_F(NSViewControllerTest, AViewWhoseLoadingRaisedIsLoadedAnew)
{
    class FailingController : public NSViewController {
    public:
        void loadView() override
        {
            setView(make<NSView>(CGRect(0, 0, 10, 10)));
            if (++attempts == 1)
                raiseInvalidArgument("loadView", "not yet");
        }
        void viewDidLoad() override { ++loaded; }
        int attempts = 0;
        int loaded = 0;
    };
    const auto controller = make<FailingController>();
    EXPECT_THAT(raised([&] { controller->view(); }), HasSubstr("not yet"));
    EXPECT_FALSE(controller->isViewLoaded());
    controller->view();
    EXPECT_EQ(controller->attempts, 2);
    EXPECT_EQ(controller->loaded, 1);
}

TEST_F(NSViewControllerTest, StandsOnTheResponderChainAfterItsView)
{
    EXPECT_EQ(page->nextResponder(), nullptr);
    const auto outer = make<NSView>();
    outer->addSubview(page->view());
    EXPECT_EQ(page->view()->nextResponder(), page.get());
    EXPECT_EQ(page->nextResponder(), outer.get());
    const auto view = page->view();
    page.reset();
    EXPECT_EQ(view->nextResponder(), outer.get());
}

TEST_F(NSViewControllerTest, ThereAreNoInterfaceFiles)
{
    EXPECT_THAT(raised([] { make<NSViewController>(std::string("Page"), nullptr); }),
                HasSubstr("NSViewController.initWithNibName:bundle:: there are no interface files, got \"Page\""));
    EXPECT_THAT(raised([&] { page->setPreferredContentSize({-1, 1}); }), HasSubstr("must not be negative"));
    EXPECT_THAT(raised([&] { page->setPreferredContentSize({1, std::nan("")}); }), HasSubstr("must be finite"));
}

// --- In a window

TEST_F(NSViewControllerTest, GivesAWindowItsViewAndItsSize)
{
    const auto window = makeAt({100, 100, 50, 50});
    window->setContentViewController(page);
    EXPECT_EQ(window->contentView(), page->view());
    EXPECT_EQ(window->frame(), CGRect(100, 150 - 222, 300, 222)); // below its top edge
    EXPECT_EQ(page->nextResponder(), window.get());
    const auto wide = make<PageController>();
    wide->setPreferredContentSize({400, 10});
    window->setContentViewController(wide);
    EXPECT_EQ(window->contentSize(), (CGSize{400, 10}));
    EXPECT_EQ(wide->view()->frame(), CGRect(0, 0, 400, 10));
}

TEST_F(NSViewControllerTest, AViewWithoutSizeTakesTheWindows)
{
    page->size = {};
    const auto window = makeAt({0, 0, 50, 72});
    window->setContentViewController(page);
    EXPECT_EQ(page->view()->frame(), CGRect(0, 0, 50, 50));
}

TEST_F(NSViewControllerTest, HearsOfComingAndGoing)
{
    const auto window = makeAt({0, 0, 50, 50});
    window->setContentViewController(page);
    page->take();
    window->orderFront();
    EXPECT_THAT(page->take(), ElementsAre("will appear", "did appear on screen"));
    window->makeKeyAndOrderFront();
    EXPECT_THAT(page->take(), IsEmpty());
    window->orderOut();
    EXPECT_THAT(page->take(), ElementsAre("will disappear on screen", "did disappear"));
    window->orderFront();
    page->take();
    window->close();
    EXPECT_THAT(page->take(), ElementsAre("will disappear on screen", "did disappear"));
}

TEST_F(NSViewControllerTest, IsReplacedOnTheScreen)
{
    const auto window = makeAt({0, 0, 50, 50});
    window->orderFront();
    window->setContentViewController(page);
    EXPECT_THAT(page->take(), ElementsAre("load", "did load", "will appear", "did appear on screen"));
    const auto other = make<PageController>();
    window->setContentViewController(other);
    EXPECT_THAT(page->take(), ElementsAre("will disappear on screen", "did disappear"));
    EXPECT_THAT(other->take(), ElementsAre("load", "did load", "will appear", "did appear on screen"));
    window->setContentView(make<NSView>());
    EXPECT_EQ(window->contentViewController(), nullptr);
    EXPECT_THAT(other->take(), ElementsAre("will disappear on screen", "did disappear"));
}

TEST_F(NSViewControllerTest, ItsViewIsInOneWindow)
{
    const auto first = makeAt({0, 0, 50, 50}), second = makeAt({0, 0, 50, 50});
    first->setContentViewController(page);
    EXPECT_THAT(raised([&] { second->setContentViewController(page); }), HasSubstr("content view of another window"));
    EXPECT_EQ(second->contentViewController(), nullptr);
}

TEST_F(NSViewControllerTest, IsReachedByName)
{
    const auto named = send(send(NSViewController::staticClass(), "alloc").as<std::shared_ptr<NSViewController>>(),
                            "initWithNibName:bundle:", nullptr, nullptr)
                           .as<std::shared_ptr<NSViewController>>();
    EXPECT_FALSE(send(named, "isViewLoaded").as<bool>());
    send(named, "loadView");
    EXPECT_NE(send(named, "view").as<std::shared_ptr<NSView>>(), nullptr);
    const auto view = make<NSView>();
    send(named, "setView:", view);
    EXPECT_EQ(send(named, "view").as<std::shared_ptr<NSView>>(), view);
    send(named, "setTitle:", "t");
    EXPECT_EQ(send(named, "title").as<std::string>(), "t");
    send(named, "setPreferredContentSize:", CGSize{3, 4});
    EXPECT_EQ(send(named, "preferredContentSize").as<CGSize>(), (CGSize{3, 4}));
    for (const char* notice :
         {"viewDidLoad", "viewWillAppear", "viewDidAppear", "viewWillDisappear", "viewDidDisappear"})
        send(page, notice);
    EXPECT_EQ(page->take().size(), 5U);
    const auto window = makeAt({0, 0, 50, 50});
    send(window, "setContentViewController:", named);
    EXPECT_EQ(send(window, "contentViewController").as<std::shared_ptr<NSViewController>>(), named);
}

class NSViewControllerDeathTest : public NSViewControllerTest {};

TEST_F(NSViewControllerDeathTest, ALoadViewThatMakesNoViewStopsTheProgram)
{
    class Empty : public NSViewController {
        void loadView() override {}
    };
    class Circular : public NSViewController {
        void loadView() override { view()->setHidden(true); }
    };
    EXPECT_DEATH(make<Empty>()->view(), "NSViewController.loadView has set no view");
    EXPECT_DEATH(make<Circular>()->view(), "NSViewController.loadView asks for the view before it has set one");
}

} // namespace
} // namespace RVCore::NSViewControllerTests
