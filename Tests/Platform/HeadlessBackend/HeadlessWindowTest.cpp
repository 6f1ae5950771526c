#include <HeadlessBackend/HeadlessBackend.h>
#include <Platform/Backend/RecordingClient.h>
#include <Platform/Foundation/Raised.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace RVCore::HeadlessWindowTests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class HeadlessWindowTest : public testing::Test {
protected:
    HeadlessWindow& window() { return *m_backend.windowOf(m_client); }

    // Visible, and its first frame painted.
    void settle()
    {
        m_window->setVisible(true);
        m_backend.flushFrames();
        m_client.takeCalls();
    }

    HeadlessBackend m_backend;
    RecordingClient m_client;
    std::unique_ptr<WindowBackend> m_window = m_backend.makeWindow(m_client, {100, 50});
};

TEST_F(HeadlessWindowTest, StartsHiddenWithItsSize)
{
    EXPECT_FALSE(window().isVisible());
    EXPECT_EQ(window().contentSize(), (CGSize{100, 50}));
    EXPECT_EQ(window().backingScale(), 1);
    EXPECT_EQ(window().title(), "");
    EXPECT_THAT(m_client.takeCalls(), IsEmpty());
}

TEST_F(HeadlessWindowTest, KeepsItsTitle)
{
    m_window->setTitle("Größe");
    EXPECT_EQ(window().title(), "Größe");
}

TEST_F(HeadlessWindowTest, AHiddenWindowPaintsNothing)
{
    m_window->requestFrame();
    EXPECT_EQ(m_backend.flushFrames(), 0);
    EXPECT_THAT(m_client.takeCalls(), IsEmpty());
}

TEST_F(HeadlessWindowTest, BecomingVisiblePaintsOnce)
{
    m_window->setVisible(true);
    EXPECT_EQ(m_backend.flushFrames(), 1);
    EXPECT_THAT(m_client.takeCalls(), ElementsAre("prepare", "paint"));
    EXPECT_EQ(window().lastFrame().text(), "fill (0, 0) 100 × 50 rgba(1, 0, 0, 1)\n");
    EXPECT_EQ(m_backend.flushFrames(), 0);
}

TEST_F(HeadlessWindowTest, AskingForAFrameTwiceGivesOne)
{
    settle();
    m_window->requestFrame();
    m_window->requestFrame();
    EXPECT_EQ(m_backend.flushFrames(), 1);
    EXPECT_EQ(window().frameCount(), 2U);
    EXPECT_EQ(m_backend.flushFrames(), 0);
}

TEST_F(HeadlessWindowTest, WhatPreparingAsksForIsInTheSameFrame)
{
    settle();
    m_client.onPrepare = [this] { m_window->requestFrame(); };
    m_window->requestFrame();
    EXPECT_EQ(m_backend.flushFrames(), 1);
    EXPECT_EQ(m_backend.flushFrames(), 0);
}

TEST_F(HeadlessWindowTest, WhatPaintingAsksForIsTheNextFrame)
{
    settle();
    m_client.onPaint = [this] { m_window->requestFrame(); };
    m_window->requestFrame();
    EXPECT_EQ(m_backend.flushFrames(), 1);
    m_client.onPaint = nullptr;
    EXPECT_EQ(m_backend.flushFrames(), 1);
    EXPECT_EQ(m_backend.flushFrames(), 0);
}

TEST_F(HeadlessWindowTest, AUsersResizeReachesTheClientAndPaints)
{
    settle();
    window().userResize({200, 80});
    EXPECT_THAT(m_client.takeCalls(), ElementsAre("size 200 × 80"));
    EXPECT_EQ(m_backend.flushFrames(), 1);
    EXPECT_EQ(window().lastFrame().text(), "fill (0, 0) 200 × 80 rgba(1, 0, 0, 1)\n");
}

TEST_F(HeadlessWindowTest, AUserCannotGoBelowTheMinimumOrDragByNothing)
{
    settle();
    m_window->setMinimumContentSize({60, 50});
    window().userResize({10, 10});
    EXPECT_THAT(m_client.takeCalls(), ElementsAre("size 60 × 50"));
    window().userResize({20, 20});
    EXPECT_THAT(m_client.takeCalls(), IsEmpty());
}

TEST_F(HeadlessWindowTest, AMinimumAboveTheSizeEnlargesTheContent)
{
    m_window->setMinimumContentSize({150, 20});
    EXPECT_EQ(window().contentSize(), (CGSize{150, 50}));
    EXPECT_THAT(m_client.takeCalls(), ElementsAre("size 150 × 50"));
}

TEST_F(HeadlessWindowTest, TheProgramsOwnSizeIsNotToldBack)
{
    settle();
    m_window->setContentSize({300, 40});
    EXPECT_EQ(window().contentSize(), (CGSize{300, 40}));
    EXPECT_THAT(m_client.takeCalls(), IsEmpty());
    EXPECT_EQ(m_backend.flushFrames(), 1);
}

TEST_F(HeadlessWindowTest, WhatTheDesktopMakesOfTheProgramsSizeIsTold)
{
    m_window->setContentSize({99.5, 40});
    EXPECT_THAT(m_client.takeCalls(), ElementsAre("size 100 × 40"));
    m_window->setContentSize({0, 1e9});
    EXPECT_THAT(m_client.takeCalls(), ElementsAre("size 1 × 32767"));
}

TEST_F(HeadlessWindowTest, SizesThatAreNotFiniteRaise)
{
    EXPECT_EQ(raised([this] {
                  m_window->setContentSize({std::nan(""), 1});
              }),
              "NSInvalidArgumentException: WindowBackend.setContentSize: size.width must be finite, got nan");
    EXPECT_EQ(raised([this] {
                  m_window->setMinimumContentSize({1, HUGE_VAL});
              }),
              "NSInvalidArgumentException: WindowBackend.setMinimumContentSize: size.height must be finite, got inf");
    EXPECT_EQ(raised([this] {
                  m_backend.makeWindow(m_client, {1, std::nan("")});
              }),
              "NSInvalidArgumentException: Backend.makeWindow: contentSize.height must be finite, got nan");
    EXPECT_EQ(window().contentSize(), (CGSize{100, 50}));
}

TEST_F(HeadlessWindowTest, AUsersCloseIsAQuestionToTheClient)
{
    window().userClose();
    EXPECT_THAT(m_client.takeCalls(), ElementsAre("close"));
    EXPECT_EQ(m_backend.windows().size(), 1U);
}

TEST_F(HeadlessWindowTest, TheClientMayEndTheWindowInAnyCall)
{
    const auto end = [this] { m_window.reset(); };
    m_client.onClose = end;
    window().userClose();
    EXPECT_THAT(m_backend.windows(), IsEmpty());

    m_client.onClose = nullptr;
    for (auto* call : {&m_client.onPrepare, &m_client.onPaint}) {
        m_window = m_backend.makeWindow(m_client, {10, 10});
        m_window->setVisible(true);
        *call = end;
        m_backend.flushFrames();
        EXPECT_THAT(m_backend.windows(), IsEmpty());
        *call = nullptr;
    }
}

TEST_F(HeadlessWindowTest, AWindowHiddenWhileItPreparesPaintsWhenItIsShownAgain)
{
    m_window->setVisible(true);
    m_client.onPrepare = [this] { m_window->setVisible(false); };
    EXPECT_EQ(m_backend.flushFrames(), 0);
    m_client.onPrepare = nullptr;
    m_client.takeCalls();
    m_window->setVisible(true);
    EXPECT_EQ(m_backend.flushFrames(), 1);
    EXPECT_THAT(m_client.takeCalls(), ElementsAre("prepare", "paint"));
}

TEST_F(HeadlessWindowTest, AnotherScreensScaleCallsForAFrame)
{
    settle();
    window().setBackingScale(2);
    EXPECT_EQ(m_window->backingScale(), 2);
    EXPECT_EQ(m_backend.flushFrames(), 1);
}

TEST_F(HeadlessWindowTest, OutlivesItsBackend)
{
    auto backend = std::make_unique<HeadlessBackend>();
    const auto window = backend->makeWindow(m_client, {10, 10});
    backend.reset();
    window->setContentSize({20, 20});
    EXPECT_EQ(dynamic_cast<HeadlessWindow&>(*window).contentSize(), (CGSize{20, 20}));
}

// --- Place, style, order

TEST_F(HeadlessWindowTest, IsWhereTheProgramPutsItOrTheUserDragsIt)
{
    EXPECT_EQ(m_window->placement(), (WindowPlacement{{0, 0}, {.top = 22}}));
    m_window->setOrigin({10.4, -20.6});
    EXPECT_EQ(m_window->placement().origin, (CGPoint{10, -21}));
    m_window->setOrigin({1e12, -1e12});
    EXPECT_EQ(m_window->placement().origin, (CGPoint{32767, -32767}));
    EXPECT_THAT(m_client.states, IsEmpty());
    window().userMove({5, 6});
    window().userMove({5, 6});
    EXPECT_EQ(m_window->placement().origin, (CGPoint{5, 6}));
    EXPECT_THAT(m_client.states, ElementsAre("placement"));
    EXPECT_EQ(raised([this] {
                  m_window->setOrigin({std::nan(""), 0});
              }),
              "NSInvalidArgumentException: WindowBackend.setOrigin: origin.x must be finite, got nan");
}

TEST_F(HeadlessWindowTest, ItsFrameFollowsFromItsStyleUnlessTheDesktopChoosesAnother)
{
    m_window->setStyle({.isTitled = false});
    EXPECT_EQ(m_window->placement().margins, EdgeInsets());
    window().setMargins({.top = 30, .left = 1, .bottom = 1, .right = 1});
    EXPECT_EQ(m_window->placement().margins, (EdgeInsets{30, 1, 1, 1}));
    EXPECT_THAT(m_client.states, ElementsAre("placement"));
}

TEST_F(HeadlessWindowTest, AUserCannotGoAboveTheMaximumNorResizeWhatIsNotResizable)
{
    m_window->setMaximumContentSize({150, 80});
    window().userResize({500, 500});
    EXPECT_EQ(window().contentSize(), (CGSize{150, 80}));
    m_window->setContentSize({200, 80}); // the program may
    EXPECT_EQ(window().contentSize(), (CGSize{200, 80}));
    m_window->setStyle({.isResizable = false});
    window().userResize({50, 50});
    EXPECT_EQ(window().contentSize(), (CGSize{200, 80}));
}

TEST_F(HeadlessWindowTest, TheVisibleWindowsHaveAnOrder)
{
    RecordingClient otherClient;
    const auto other = m_backend.makeWindow(otherClient, {10, 10});
    HeadlessWindow& second = *m_backend.windowOf(otherClient);
    EXPECT_THAT(m_backend.visibleWindows(), IsEmpty());
    other->setVisible(true);
    m_window->setVisible(true);
    EXPECT_THAT(m_backend.visibleWindows(), ElementsAre(&window(), &second));
    m_window->setVisible(true);
    other->order(WindowOrder::front);
    EXPECT_THAT(m_backend.visibleWindows(), ElementsAre(&second, &window()));
    other->order(WindowOrder::back);
    EXPECT_THAT(m_backend.visibleWindows(), ElementsAre(&window(), &second));
    other->setMinimized(true);
    EXPECT_THAT(m_backend.visibleWindows(), ElementsAre(&window()));
}

TEST_F(HeadlessWindowTest, OneVisibleWindowHasTheKeys)
{
    RecordingClient otherClient;
    auto other = m_backend.makeWindow(otherClient, {10, 10});
    m_window->activate(); // not visible
    EXPECT_FALSE(window().isActive());
    m_window->setVisible(true);
    other->setVisible(true);
    m_window->activate();
    m_window->activate();
    EXPECT_THAT(m_client.states, ElementsAre("active"));
    m_backend.windowOf(otherClient)->userActivate();
    EXPECT_THAT(m_client.states, ElementsAre("active", "inactive"));
    EXPECT_THAT(otherClient.states, ElementsAre("active"));
    other->setVisible(false);
    EXPECT_THAT(otherClient.states, ElementsAre("active", "inactive"));
}

TEST_F(HeadlessWindowTest, TheClientMayEndTheWindowThatIsAboutToGetTheKeys)
{
    RecordingClient otherClient;
    auto other = m_backend.makeWindow(otherClient, {10, 10});
    m_window->setVisible(true);
    other->setVisible(true);
    m_window->activate();
    m_client.onState = [&] { other.reset(); };
    other->activate();
    EXPECT_THAT(otherClient.states, IsEmpty());
}

TEST_F(HeadlessWindowTest, TheUserMinimizesAndTheProgramDoes)
{
    m_window->setVisible(true);
    window().userMinimize(true);
    window().userMinimize(true);
    EXPECT_TRUE(window().isMinimized());
    EXPECT_THAT(m_client.states, ElementsAre("minimized"));
    m_window->setMinimized(false); // the program knows
    EXPECT_FALSE(window().isMinimized());
    EXPECT_THAT(m_client.states, ElementsAre("minimized"));
}

TEST_F(HeadlessWindowTest, AnotherScreensScaleIsTold)
{
    window().setBackingScale(2);
    EXPECT_THAT(m_client.states, ElementsAre("scale"));
}

} // namespace
} // namespace RVCore::HeadlessWindowTests
