#include <Platform/Backend/RecordingClient.h>

#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QtBackend/QtWindow.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>

// These run under Tests/VirtualDisplay/with-virtual-display: an X server, a window manager and a pointer of their
// own.

namespace RVCore::QtDisplayTests {
namespace {

constexpr int patience = 20000; // milliseconds until a test that waits for the desktop gives up

class QtDisplay : public testing::Test {
protected:
    QtDisplay() { m_window->setTitle("Display Test"); }

    QtWindowSurface& surface() { return dynamic_cast<QtWindow&>(*m_window).surface(); }

    // Serves the desktop until the condition holds; it is looked at whenever the client has been called.
    bool runUntil(const std::function<bool()>& condition)
    {
        bool isMet = condition();
        const auto look = [&] {
            if (isMet || !condition())
                return;
            isMet = true;
            Backend::shared().stop();
        };
        m_client.onPaint = m_client.onClose = m_client.onSizeChanged = m_client.onInput = look;
        QTimer end;
        end.setSingleShot(true);
        end.callOnTimeout([] { Backend::shared().stop(); });
        end.start(patience);
        if (!isMet)
            Backend::shared().run();
        m_client.onPaint = m_client.onClose = m_client.onSizeChanged = m_client.onInput = nullptr;
        return isMet;
    }

    // Serves the desktop for as long as it has something to say, and a little longer.
    void runFor(int milliseconds)
    {
        QTimer::singleShot(milliseconds, [] { Backend::shared().stop(); });
        Backend::shared().run();
    }

    void show()
    {
        m_window->setVisible(true);
        ASSERT_TRUE(runUntil([this] { return paintCount() > 0; }));
        // The window manager frames the window and tells where it has put it.
        runFor(300);
        m_client.takeCalls();
    }

    std::size_t paintCount() const
    {
        const std::vector<std::string>& calls = m_client.calls();
        return static_cast<std::size_t>(std::count(calls.begin(), calls.end(), "paint"));
    }

    // A pointer and a keyboard at work on the window: the arguments of xdotool that follow its search.
    void user(const QStringList& arguments)
    {
        QProcess::execute("xdotool", QStringList{"search", "--onlyvisible", "--name", "^Display Test$"} + arguments);
    }
    // Serves the desktop until an input of the kind has come; returns it.
    InputEvent awaitInput(InputKind kind)
    {
        const auto isIt = [&](const InputEvent& event) { return event.kind == kind; };
        EXPECT_TRUE(runUntil([&] { return std::ranges::any_of(m_client.inputs, isIt); }));
        const auto place = std::ranges::find_if(m_client.inputs, isIt);
        return place == m_client.inputs.end() ? InputEvent() : *place;
    }

    RecordingClient m_client;
    std::unique_ptr<WindowBackend> m_window = Backend::shared().makeWindow(m_client, {300, 200});
};

// A drag of the window's corner by another process, which holds the button until it is told to let go.
class Drag {
public:
    Drag(int dx, int dy)
    {
        m_process.start(DRAG_WINDOW_CORNER, {"--hold", "Display Test", QString::number(dx), QString::number(dy)});
    }
    ~Drag() { letGo(); }

    void letGo()
    {
        m_process.write("\n");
        m_process.waitForFinished(patience);
    }

private:
    QProcess m_process;
};

TEST_F(QtDisplay, IsThere)
{
    EXPECT_TRUE(Backend::shared().hasDisplay());
    EXPECT_EQ(QGuiApplication::platformName(), "xcb");
}

TEST_F(QtDisplay, ShowsWhatTheClientPaints)
{
    m_client.setSize({300, 200});
    m_client.color = {0, 0.5, 1, 1};
    show();
    // Read back from the X server.
    const QImage content = surface().screen()->grabWindow(surface().winId()).toImage();
    EXPECT_EQ(content.size(), QSize(300, 200));
    EXPECT_EQ(content.pixel(0, 0), qRgb(0, 128, 255));
    EXPECT_EQ(content.pixel(299, 199), qRgb(0, 128, 255));
}

TEST_F(QtDisplay, LaysOutAndPaintsWhileAUserDragsTheCorner)
{
    show();
    {
        Drag drag(240, 120);
        ASSERT_TRUE(runUntil([this] { return m_client.size().width >= 520 && m_client.size().height >= 300; }))
            << describe(m_client.size());
        runFor(200);
        // The button is still down.
        const std::vector<std::string> calls = m_client.takeCalls();
        const auto isSize = [](const std::string& call) { return call.rfind("size ", 0) == 0; };
        EXPECT_GE(std::count_if(calls.begin(), calls.end(), isSize), 5) << "sizes on the way";
        EXPECT_GE(std::count(calls.begin(), calls.end(), "paint"), 5) << "paints on the way";
        // Layout and paint belong together, and the last size has had its own.
        EXPECT_EQ(calls.back(), "paint");
        for (std::size_t i = 0; i + 1 < calls.size(); ++i) {
            EXPECT_EQ(calls[i] == "prepare", calls[i + 1] == "paint") << i;
        }
    }
    runFor(200);
    EXPECT_NEAR(surface().width(), 540, 4);
    EXPECT_NEAR(surface().height(), 320, 4);
    EXPECT_EQ(m_client.size(), (CGSize{double(surface().width()), double(surface().height())}));
}

TEST_F(QtDisplay, EverySizeOfADragIsPaintedAtOnce)
{
    show();
    Drag drag(240, 120);
    ASSERT_TRUE(runUntil([this] { return m_client.size().width >= 520 && m_client.size().height >= 300; }));
    runFor(200);
    // What came between a size and its paint, beside further sizes that the pointer was too quick for.
    int sizesWithoutPaint = 0, most = 0;
    for (const std::string& call : m_client.takeCalls()) {
        sizesWithoutPaint = call == "paint" ? 0 : sizesWithoutPaint + (call.rfind("size ", 0) == 0 ? 1 : 0);
        most = std::max(most, sizesWithoutPaint);
    }
    EXPECT_LE(most, 2);
}

TEST_F(QtDisplay, AUserCannotDragItBelowItsMinimum)
{
    m_window->setMinimumContentSize({200, 150});
    show();
    {
        Drag drag(-250, -180);
        ASSERT_TRUE(runUntil([this] { return m_client.size() == CGSize{200, 150}; })) << describe(m_client.size());
        runFor(300);
    }
    runFor(100);
    EXPECT_EQ(m_client.size(), (CGSize{200, 150}));
}

TEST_F(QtDisplay, AUsersCloseIsAQuestionToTheClient)
{
    show();
    QProcess::execute("xdotool", {"search", "--onlyvisible", "--name", "^Display Test$", "mousemove", "--window",
                                  "%1", "50", "50", "key", "ctrl+alt+x"});
    ASSERT_TRUE(runUntil([this] {
        const std::vector<std::string>& calls = m_client.calls();
        return std::find(calls.begin(), calls.end(), "close") != calls.end();
    }));
    runFor(100);
    EXPECT_TRUE(surface().isVisible());
}

TEST_F(QtDisplay, APointerMovesPressesAndReleases)
{
    show();
    user({"mousemove", "--window", "%1", "40", "30", "mousedown", "1"});
    const InputEvent press = awaitInput(InputKind::buttonPressed);
    EXPECT_EQ(press.location, (CGPoint{40, 30}));
    EXPECT_EQ(press.button, 0);
    EXPECT_TRUE(std::ranges::any_of(m_client.inputs, [](const InputEvent& event) {
        return event.kind == InputKind::pointerMoved && event.location == CGPoint{40, 30};
    }));
    // While the button is down, the window hears of the pointer wherever it is.
    m_client.inputs.clear();
    user({"mousemove", "--window", "%1", "50", "-60"});
    EXPECT_EQ(awaitInput(InputKind::pointerMoved).location, (CGPoint{50, -60}));
    user({"mouseup", "1"});
    EXPECT_EQ(awaitInput(InputKind::buttonReleased).location, (CGPoint{50, -60}));
}

TEST_F(QtDisplay, AWheelScrolls)
{
    show();
    user({"mousemove", "--window", "%1", "40", "30", "click", "5"});
    const InputEvent scroll = awaitInput(InputKind::scrolled);
    EXPECT_LT(scroll.scroll.y, 0) << "the content moves up";
}

TEST_F(QtDisplay, AKeyboardTypes)
{
    show();
    user({"windowfocus", "--sync", "key", "shift+a"});
    const InputEvent key = awaitInput(InputKind::keyPressed);
    EXPECT_EQ(key.characters, "A");
    EXPECT_EQ(key.modifiers & InputModifier::shift, InputModifier::shift);
    EXPECT_NE(key.keyCode, 0);
    EXPECT_EQ(awaitInput(InputKind::modifiersChanged).modifiers, InputModifier::shift);
    m_client.inputs.clear();
    user({"key", "Left"});
    EXPECT_EQ(awaitInput(InputKind::keyReleased).characters, NSKey::left);
}

TEST_F(QtDisplay, TheProgramsOwnSizeIsWhatTheUserSees)
{
    show();
    m_client.setSize({420, 260});
    m_window->setContentSize({420, 260});
    ASSERT_TRUE(runUntil([this] { return paintCount() > 0; }));
    runFor(200);
    EXPECT_EQ(surface().size(), QSize(420, 260));
    const std::vector<std::string> calls = m_client.takeCalls();
    EXPECT_TRUE(std::none_of(calls.begin(), calls.end(), [](const std::string& call) {
        return call.rfind("size ", 0) == 0;
    })) << testing::PrintToString(calls);
}

TEST_F(QtDisplay, AWindowInWhichNothingMovesUsesNoProcessorTime)
{
    show();
    const std::clock_t before = std::clock();
    runFor(1000);
    const double used = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC;
    EXPECT_LT(used, 0.01) << "seconds of a second";
    EXPECT_THAT(m_client.takeCalls(), testing::IsEmpty());
}

TEST_F(QtDisplay, AnAnimationGetsNoMoreFramesThanTheScreenShows)
{
    show();
    int frames = 0;
    m_client.onPaint = [&] {
        ++frames;
        m_window->requestFrame();
    };
    m_window->requestFrame();
    runFor(1000);
    m_client.onPaint = nullptr;
    const double rate = surface().screen()->refreshRate();
    EXPECT_GT(frames, rate * 0.2) << "fewer on a busy machine";
    EXPECT_LT(frames, rate * 1.2);
}

TEST_F(QtDisplay, TakenOffTheScreenItPaintsNothing)
{
    show();
    m_window->setVisible(false);
    runFor(100);
    m_client.takeCalls();
    m_window->requestFrame();
    runFor(100);
    EXPECT_THAT(m_client.takeCalls(), testing::IsEmpty());
    m_window->setVisible(true);
    EXPECT_TRUE(runUntil([this] { return paintCount() > 0; }));
}

void programThatEndsWithItsWindowOpen()
{
    static RecordingClient client;
    static std::unique_ptr<WindowBackend> window; // ends after everything of Qt's
    window = Backend::shared().makeWindow(client, {100, 50});
    client.onPaint = [] { Backend::shared().stop(); };
    window->setVisible(true);
    Backend::shared().run();
    std::exit(0);
}

TEST(QtDisplayDeathTest, AProgramMayEndWithItsWindowOpen)
{
    testing::FLAGS_gtest_death_test_style = "threadsafe";
    EXPECT_EXIT(programThatEndsWithItsWindowOpen(), testing::ExitedWithCode(0), "");
}

} // namespace
} // namespace RVCore::QtDisplayTests
