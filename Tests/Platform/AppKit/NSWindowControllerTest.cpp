#include "ViewTesting.h"
#include "WindowTesting.h"

#include <AppKit/NSViewController.h>
#include <AppKit/NSWindowController.h>
#include <Foundation/Message.h>
#include <Platform/Foundation/Raised.h>

namespace RVCore::NSWindowControllerTests {
namespace {

using testing::HasSubstr;

// Makes its window late.
class LateController : public NSWindowController {
public:
    void loadWindow() override
    {
        ++loadCount;
        if (makesWindow)
            setWindow(make<NSWindow>(CGSize{50, 50}));
    }
    void windowDidLoad() override { ++didLoadCount; }

    bool makesWindow = true;
    int loadCount = 0;
    int didLoadCount = 0;
};

class NSWindowControllerTest : public WindowTest {
protected:
    std::shared_ptr<NSWindow> window = makeAt({0, 0, 100, 100});
};

TEST_F(NSWindowControllerTest, HoldsItsWindowAndFollowsItOnTheResponderChain)
{
    auto controller = make<NSWindowController>(window);
    EXPECT_EQ(controller->window(), window);
    EXPECT_TRUE(controller->isWindowLoaded());
    EXPECT_EQ(window->windowController(), controller.get());
    EXPECT_EQ(window->nextResponder(), controller.get());
    EXPECT_EQ(controller->nextResponder(), &application);
    EXPECT_EQ(application.nextResponder(), nullptr);
    controller.reset();
    EXPECT_EQ(window->windowController(), nullptr);
    EXPECT_EQ(window->nextResponder(), &application);
}

TEST_F(NSWindowControllerTest, LoadsItsWindowOnceWhenItIsFirstAskedFor)
{
    const auto late = make<LateController>();
    EXPECT_FALSE(late->isWindowLoaded());
    late->close(); // loads nothing
    EXPECT_EQ(late->loadCount, 0);
    const auto loaded = late->window();
    EXPECT_NE(loaded, nullptr);
    EXPECT_EQ(late->window(), loaded);
    EXPECT_EQ(late->loadCount, 1);
    EXPECT_EQ(late->didLoadCount, 1);
}

TEST_F(NSWindowControllerTest, WithoutAWindowItShowsNothing)
{
    const auto late = make<LateController>();
    late->makesWindow = false;
    late->showWindow(nullptr);
    EXPECT_EQ(late->window(), nullptr);
    EXPECT_EQ(late->loadCount, 1);
    EXPECT_EQ(late->didLoadCount, 0);
    EXPECT_EQ(late->contentViewController(), nullptr);
    EXPECT_THAT(raised([&] { late->setContentViewController(make<NSViewController>()); }),
                HasSubstr("NSWindowController.setContentViewController:: there is no window"));
    EXPECT_EQ(make<NSWindowController>()->window(), nullptr);
}

TEST_F(NSWindowControllerTest, ShowsAndClosesItsWindow)
{
    const auto controller = make<NSWindowController>(window);
    controller->showWindow(nullptr);
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(window->isKeyWindow());
    controller->close();
    EXPECT_FALSE(window->isVisible());
}

TEST_F(NSWindowControllerTest, AWindowHasOneController)
{
    const auto controller = make<NSWindowController>(window);
    EXPECT_THAT(raised([&] { make<NSWindowController>(window); }), HasSubstr("is another controller's window"));
    controller->setWindow(make<NSWindow>());
    EXPECT_EQ(window->windowController(), nullptr);
    make<NSWindowController>(window);
}

TEST_F(NSWindowControllerTest, AnActionGoesUpTheWholeChain)
{
    // view, its controller, the window, its controller, the application
    const auto controller = make<NSWindowController>(window);
    const auto page = make<NSViewController>();
    controller->setContentViewController(page);
    std::vector<const NSResponder*> chain;
    for (const NSResponder* responder = page->view().get(); responder; responder = responder->nextResponder())
        chain.push_back(responder);
    EXPECT_THAT(chain,
                testing::ElementsAre(page->view().get(), page.get(), window.get(), controller.get(), &application));
}

TEST_F(NSWindowControllerTest, IsReachedByName)
{
    const auto named =
        send(send(NSWindowController::staticClass(), "alloc").as<std::shared_ptr<NSWindowController>>(),
             "initWithWindow:", window)
            .as<std::shared_ptr<NSWindowController>>();
    EXPECT_EQ(send(named, "window").as<std::shared_ptr<NSWindow>>(), window);
    EXPECT_EQ(send(window, "windowController").as<std::shared_ptr<NSWindowController>>(), named);
    EXPECT_TRUE(send(named, "isWindowLoaded").as<bool>());
    const auto page = make<NSViewController>();
    send(named, "setContentViewController:", page);
    EXPECT_EQ(send(named, "contentViewController").as<std::shared_ptr<NSViewController>>(), page);
    send(named, "showWindow:", nullptr);
    EXPECT_TRUE(window->isVisible());
    send(named, "close");
    EXPECT_FALSE(window->isVisible());
    send(named, "setWindow:", nullptr);
    send(named, "loadWindow");
    send(named, "windowDidLoad");
    EXPECT_FALSE(send(named, "isWindowLoaded").as<bool>());
}

} // namespace
} // namespace RVCore::NSWindowControllerTests
