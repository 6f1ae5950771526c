#include <Backend/Backend.h>
#include <Platform/Backend/RecordingClient.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

namespace RVCore::QtFrameLogTests {
namespace {

// The log is looked for once in a program's life, so each program below paints its frames in a process of its own.
class QtFrameLogTest : public testing::Test {
protected:
    QtFrameLogTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }

    [[noreturn]] static void paintThreeFrames()
    {
        RecordingClient client;
        const auto window = Backend::shared().makeWindow(client, {100, 50});
        window->setTitle("Größe – list");
        int count = 0;
        client.onPaint = [&] {
            if (++count < 3)
                window->requestFrame();
            else
                Backend::shared().callLater([] { Backend::shared().stop(); });
        };
        window->setVisible(true);
        Backend::shared().run();
        _exit(0);
    }
};

TEST_F(QtFrameLogTest, EveryFrameIsALineOfItsTimeItsDurationAndItsWindow)
{
    if (!std::getenv("RVCORE_FRAME_LOG")) { // which the process with the frames inherits
        std::string folder = (std::filesystem::temp_directory_path() / "rvcore-XXXXXX").string();
        ASSERT_TRUE(mkdtemp(folder.data()));
        setenv("RVCORE_FRAME_LOG", (folder + "/frames").c_str(), 1);
    }
    const std::filesystem::path path = std::getenv("RVCORE_FRAME_LOG");
    EXPECT_EXIT(paintThreeFrames(), testing::ExitedWithCode(0), "");
    unsetenv("RVCORE_FRAME_LOG");
    std::ifstream file(path);
    double before = 0;
    int count = 0;
    for (std::string line; std::getline(file, line); ++count) {
        std::istringstream words(line);
        double begin = -1;
        double duration = -1;
        std::string title;
        words >> begin >> duration >> std::ws;
        std::getline(words, title);
        EXPECT_GT(begin, before) << line;
        EXPECT_GE(duration, 0) << line;
        EXPECT_EQ(title, "Größe – list") << line;
        before = begin;
    }
    EXPECT_EQ(count, 3);
    std::filesystem::remove_all(path.parent_path());
}

TEST_F(QtFrameLogTest, AFileThatCannotBeWrittenIsNamed)
{
    setenv("RVCORE_FRAME_LOG", "/missing/frames", 1);
    EXPECT_EXIT(paintThreeFrames(), testing::ExitedWithCode(0), "RVCORE_FRAME_LOG: cannot write /missing/frames");
    unsetenv("RVCORE_FRAME_LOG");
}

} // namespace
} // namespace RVCore::QtFrameLogTests
