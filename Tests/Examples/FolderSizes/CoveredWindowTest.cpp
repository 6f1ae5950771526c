#include "DisplayTesting.h"

#include <Examples/TemporaryFolder.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>

namespace FolderSizes::CoveredWindowTests {
namespace {

constexpr double fadeDuration = 0.3;    // seconds
constexpr double longestGap = 0.05;     // seconds between two frames of a fade; told, not tested
constexpr int coverDuration = 1000;     // milliseconds that a cover stays at least, before it fades
constexpr std::size_t fewestFrames = 5; // of a fade

// A line of the frame log.
struct Frame {
    double begin = 0;    // seconds
    double duration = 0; // milliseconds
    std::string title;   // of the window
};

// The program with the list of a real folder, higher than its window.
class Program {
public:
    explicit Program(const QString& folder) : m_log(m_folder.path() / "frames")
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("RVCORE_FRAME_LOG", QString::fromStdString(m_log));
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::ForwardedChannels);
        m_process.start(FOLDER_SIZES, {"--appearance", "light", folder});
        m_window = windowOf(folder);
        use({"windowsize", "--sync", m_window, "760", "400", "windowactivate", "--sync", m_window});
    }
    ~Program()
    {
        m_process.terminate();
        m_process.waitForFinished(patience);
    }

    const QString& window() const { return m_window; }
    QString title() const { return answerOf("xdotool", {"getwindowname", m_window}); }
    QImage picture() const { return pictureOf(m_window); }
    static void use(const QStringList& arguments) { answerOf("xdotool", arguments); }

    std::vector<Frame> frames() const
    {
        std::vector<Frame> result;
        std::ifstream file(m_log);
        for (std::string line; std::getline(file, line);) {
            Frame frame;
            std::istringstream words(line);
            words >> frame.begin >> frame.duration >> std::ws;
            std::getline(words, frame.title);
            result.push_back(frame);
        }
        return result;
    }

    // Until the list can be read and nothing has been painted for a while: a cover has a wheel that turns.
    bool waitUntilQuiet() const
    {
        std::size_t count = 0;
        QElapsedTimer sinceFrame;
        return waitUntil([&] {
            const std::size_t now = frames().size();
            if (now != count || !sinceFrame.isValid())
                sinceFrame.start();
            count = now;
            return count > 0 && sinceFrame.elapsed() > 500 && lineExtent(m_window);
        });
    }

private:
    Examples::TemporaryFolder m_folder;
    std::filesystem::path m_log;
    QProcess m_process;
    QString m_window;
};

// The frames of the fade with which a window came to rest, which are the last ones.
void checkFade(const std::string& what, const std::vector<Frame>& frames,
               const std::function<bool(const Frame& frame)>& isInFade)
{
    const auto begin = std::find_if_not(frames.rbegin(), frames.rend(), isInFade).base();
    double worstGap = 0;
    double worstDuration = 0;
    for (auto frame = begin; frame != frames.end(); ++frame) {
        worstDuration = std::max(worstDuration, frame->duration);
        if (frame != begin)
            worstGap = std::max(worstGap, frame->begin - std::prev(frame)->begin);
    }
    const auto count = static_cast<std::size_t>(frames.end() - begin);
    std::printf("%s: %zu frames of the fade, the worst gap %.1f ms%s, the longest frame %.1f ms\n", what.c_str(),
                count, worstGap * 1000, worstGap > longestGap ? " (too long)" : "", worstDuration);
    EXPECT_GE(count, fewestFrames);
}

TEST(FolderSizesWindow, NothingBeneathTheCoverIsReachedWithPointerAndKeyboard)
{
    int argumentCount = 1;
    char name[] = "CoveredWindowTest";
    char* arguments[] = {name, nullptr};
    const QGuiApplication application(argumentCount, arguments);

    const QStringList moveToRow{"mousemove", "--window", "", "200", "220"};
    // Where a machine is too slow to do all this before the cover goes, it says nothing of the cover.
    bool wasInTime = false;
    for (int tries = 0; tries < 5 && !wasInTime; ++tries) {
        const Program program("/usr");
        ASSERT_FALSE(program.window().isEmpty());
        QStringList move = moveToRow;
        move[2] = program.window();
        program.use(move);
        ASSERT_TRUE(program.waitUntilQuiet());
        const QImage before = program.picture();

        QElapsedTimer timer;
        timer.start();
        program.use({"key",    "F5",    "click",  "--repeat", "2",     "--delay", "20",      "1",     "click",
                     "5",      "click", "5",      "click",    "5",     "key",     "--delay", "5",     "Down",
                     "Return", "End",   "Return", "Next",     "space", "F5",      "ctrl+r",  "alt+Up"});
        wasInTime = timer.elapsed() < coverDuration - 200;
        ASSERT_TRUE(program.waitUntilQuiet());
        if (!wasInTime)
            continue;
        EXPECT_EQ(program.title(), "/usr – FolderSizes");
        EXPECT_EQ(program.picture(), before) << "nothing was opened, chosen or scrolled";
        const auto again = program.frames();
        checkFade("read again", again,
                  [&](const Frame& frame) { return frame.begin >= again.back().begin - fadeDuration; });

        // The same uncovered: the wheel scrolls, and two clicks open what is there.
        program.use({"click", "5", "click", "5", "click", "5"});
        EXPECT_TRUE(waitUntil([&] { return program.picture() != before; }));
        program.use({"click", "--repeat", "2", "--delay", "20", "1"});
        EXPECT_TRUE(waitUntil([&] { return program.title() != "/usr – FolderSizes"; }));
        EXPECT_TRUE(program.title().startsWith("/usr/")) << program.title().toStdString();
        ASSERT_TRUE(program.waitUntilQuiet());
        // The title changes as the fade begins.
        const std::string title = program.title().toStdString();
        checkFade("another folder", program.frames(), [&](const Frame& frame) { return frame.title == title; });
    }
    EXPECT_TRUE(wasInTime) << "the machine is too slow for this";
}

} // namespace
} // namespace FolderSizes::CoveredWindowTests
