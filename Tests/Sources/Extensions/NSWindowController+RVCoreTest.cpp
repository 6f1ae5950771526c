#include <Extensions/NSWindowController+RVCore.h>
#include <Foundation/Message.h>
#include <Platform/AppKit/ViewTesting.h>
#include <Platform/AppKit/WindowTesting.h>
#include <Platform/Foundation/Raised.h>

namespace RVCore::NSWindowControllerRVCoreTests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Counts how often its window is shown.
class CountingController : public NSWindowController {
    RVCORE_CLASS(CountingController)

public:
    void showWindow(const ObjectRef& sender) override
    {
        ++showCount;
        hadSender = sender != nullptr;
        NSWindowController::showWindow(sender);
    }
    int showCount = 0;
    bool hadSender = false;
};

Class& CountingController::staticClass()
{
    static Class& theClass =
        defineClass<CountingController>("CountingController", NSWindowController::staticClass(), [](auto&) {});
    return theClass;
}

// A controller of a page of this size.
std::shared_ptr<NSViewController> makePage(CGSize size)
{
    auto page = make<NSViewController>();
    page->setView(make<NSView>(CGRect({}, size)));
    return page;
}

class NSWindowControllerRVCore : public WindowTest {
protected:
    std::shared_ptr<NSWindow> key = makeAt({0, 0, 800, 600});
    std::shared_ptr<NSWindow> own = makeAt({5, 5, 400, 300});
    std::shared_ptr<CountingController> controller = make<CountingController>(own);
};

// --- Making

TEST_F(NSWindowControllerRVCore, MakesAWindowInTheDefaultStyleAroundAViewController)
{
    const auto page = makePage({300, 200});
    const auto made = defaultWindowController(page);
    EXPECT_EQ(made->contentViewController(), page);
    EXPECT_EQ(made->window()->contentView(), page->view());
    EXPECT_EQ(made->window()->styleMask(), defaultStyleMask());
    EXPECT_EQ(made->window()->contentSize(), (CGSize{300, 200}));
    EXPECT_FALSE(made->window()->isVisible());
}

TEST_F(NSWindowControllerRVCore, MakesTheClassThatItIsCalledOnInTheStyleThatIsGiven)
{
    const std::shared_ptr<CountingController> made =
        makeWindowController<CountingController>(makePage({10, 10}), NSWindowStyleMask::borderless);
    EXPECT_EQ(made->window()->styleMask(), NSWindowStyleMask::borderless);
    EXPECT_EQ(makeWindowController(makePage({10, 10}))->window()->styleMask(), defaultStyleMask());
}

// --- showAboveKeyWindow

TEST_F(NSWindowControllerRVCore, TheOffsetIsTwoHundredPoints)
{
    EXPECT_EQ(NSWindowControllerConstants::windowOffset, 200.0);
}

TEST_F(NSWindowControllerRVCore, WithoutAKeyWindowNothingIsShown)
{
    key->orderFront(); // visible, not key
    ASSERT_EQ(application.keyWindow(), nullptr);
    showAboveKeyWindow(*controller);
    EXPECT_FALSE(own->isVisible());
    EXPECT_EQ(controller->showCount, 0);
    EXPECT_EQ(own->frame().origin, (CGPoint{5, 5}));
}

TEST_F(NSWindowControllerRVCore, WithoutAWindowOfItsOwnNothingHappens)
{
    key->makeKeyAndOrderFront();
    const auto empty = make<CountingController>();
    showAboveKeyWindow(*empty, {.stayOnTop = true});
    EXPECT_EQ(empty->showCount, 0);
    EXPECT_THAT(key->childWindows(), IsEmpty());
}

TEST_F(NSWindowControllerRVCore, TheKeyWindowItselfIsShownWhereItIs)
{
    own->makeKeyAndOrderFront();
    showAboveKeyWindow(*controller, {.stayOnTop = true});
    EXPECT_EQ(own->frame(), CGRect(5, 5, 400, 300));
    EXPECT_EQ(own->parentWindow(), nullptr);
    EXPECT_THAT(own->childWindows(), IsEmpty());
    EXPECT_EQ(controller->showCount, 1);
}

TEST_F(NSWindowControllerRVCore, IsCentredTwoHundredPointsBelowTheTopOfTheKeyWindow)
{
    key->makeKeyAndOrderFront();
    showAboveKeyWindow(*controller);
    EXPECT_EQ(own->frame(), CGRect(200, 100, 400, 300));
    EXPECT_TRUE(own->isVisible());
    EXPECT_TRUE(own->isKeyWindow());
    EXPECT_EQ(controller->showCount, 1);
    EXPECT_FALSE(controller->hadSender);
    EXPECT_EQ(screenOf(*own).placement().origin, (CGPoint{200, 900 - 400}));
}

TEST_F(NSWindowControllerRVCore, TheKeyWindowsPlaceCountsAndHalfPointsStay)
{
    key->setFrame({30, 50, 801, 600});
    key->makeKeyAndOrderFront();
    showAboveKeyWindow(*controller);
    EXPECT_EQ(own->frame().origin, (CGPoint{230.5, 150}));
}

TEST_F(NSWindowControllerRVCore, ATallWindowReachesBelowTheKeyWindow)
{
    own->setFrame({0, 0, 400, 500});
    key->makeKeyAndOrderFront();
    showAboveKeyWindow(*controller);
    EXPECT_EQ(own->frame(), CGRect(200, -100, 400, 500));
    EXPECT_EQ(own->frame().maxY(), key->frame().maxY() - 200);
}

TEST_F(NSWindowControllerRVCore, IsPlacedInTheSizeThatItsContentNeeds)
{
    const auto made = defaultWindowController(makePage({}));
    NSView& content = *made->window()->contentView();
    hold(content, Attribute::width, {.constant = 200});
    hold(content, Attribute::height, {.constant = 78});
    key->makeKeyAndOrderFront();
    showAboveKeyWindow(*made);
    EXPECT_EQ(made->window()->frame(), CGRect(300, 300, 200, 100));
}

TEST_F(NSWindowControllerRVCore, StaysOnTopAndMovesWithTheKeyWindowIfItIsTo)
{
    key->makeKeyAndOrderFront();
    showAboveKeyWindow(*controller, {.stayOnTop = true});
    EXPECT_THAT(key->childWindows(), ElementsAre(own));
    EXPECT_EQ(own->frame(), CGRect(200, 100, 400, 300));
    key->makeKeyAndOrderFront();
    EXPECT_THAT(application.orderedWindows(), ElementsAre(own, key));
    key->setFrameOrigin({10, 20});
    EXPECT_EQ(own->frame(), CGRect(210, 120, 400, 300));
}

TEST_F(NSWindowControllerRVCore, OtherwiseItIsNotAttached)
{
    key->makeKeyAndOrderFront();
    showAboveKeyWindow(*controller);
    EXPECT_THAT(key->childWindows(), IsEmpty());
    EXPECT_EQ(own->parentWindow(), nullptr);
    key->makeKeyAndOrderFront();
    EXPECT_THAT(application.orderedWindows(), ElementsAre(key, own));
}

TEST_F(NSWindowControllerRVCore, ShownAgainOverItsParentItStaysItsChild)
{
    key->makeKeyAndOrderFront();
    showAboveKeyWindow(*controller, {.stayOnTop = true});
    key->makeKeyWindow();
    showAboveKeyWindow(*controller, {.stayOnTop = true});
    EXPECT_THAT(key->childWindows(), ElementsAre(own));
    EXPECT_EQ(controller->showCount, 2);
}

// --- By name

TEST_F(NSWindowControllerRVCore, IsReachedByName)
{
    const auto made = [](const Value& value) { return value.as<std::shared_ptr<NSWindowController>>(); };
    const auto page = makePage({30, 40});
    const auto standard =
        made(send(CountingController::staticClass(), "defaultWindowControllerWithContentViewController:", page));
    EXPECT_EQ(&standard->classObject(), &CountingController::staticClass());
    EXPECT_EQ(standard->contentViewController(), page);
    EXPECT_EQ(standard->window()->styleMask(), defaultStyleMask());
    const auto plain = made(send(made(send(NSWindowController::staticClass(), "alloc")),
                                 "initWithContentViewController:styleMask:", makePage({5, 5}), 0));
    EXPECT_EQ(plain->window()->styleMask(), NSWindowStyleMask::borderless);
    key->makeKeyAndOrderFront();
    send(controller, "showAboveKeyWindowWithStayOnTop:", true);
    EXPECT_EQ(own->parentWindow(), key.get());
    EXPECT_TRUE(own->isVisible());
}

TEST_F(NSWindowControllerRVCore, AChildWindowOfItsOwnCannotBeStayedOnTopOf)
{
    own->addChildWindow(key, NSWindowOrderingMode::above);
    key->makeKeyAndOrderFront();
    EXPECT_THAT(raised([&] { showAboveKeyWindow(*controller, {.stayOnTop = true}); }),
                testing::HasSubstr("a parent of the window"));
    EXPECT_EQ(key->parentWindow(), own.get());
}

} // namespace
} // namespace RVCore::NSWindowControllerRVCoreTests
