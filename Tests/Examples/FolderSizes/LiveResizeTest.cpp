#include "DisplayTesting.h"

#include <Examples/TemporaryFolder.h>

#include <gtest/gtest.h>

namespace FolderSizes::LiveResizeTests {
namespace {

constexpr int margin = 16; // of the content, at scale 1

// The width of the window's content, as the X server knows it.
int contentWidth(const QString& window)
{
    for (const QString& line : answerOf("xdotool", {"getwindowgeometry", "--shell", window}).split('\n')) {
        if (line.startsWith("WIDTH="))
            return line.section('=', 1).toInt();
    }
    return 0;
}

TEST(FolderSizesWindow, IsLaidOutWhileAUserDragsItsCorner)
{
    int argumentCount = 1;
    char name[] = "LiveResizeTest";
    char* arguments[] = {name, nullptr};
    const QGuiApplication application(argumentCount, arguments);

    const Examples::TemporaryFolder folder;
    folder.addFile("some file", 1000);
    folder.addFile("another file", 500);
    QProcess program;
    program.setProcessChannelMode(QProcess::ForwardedChannels);
    program.start(FOLDER_SIZES, {QString::fromStdString(folder.path())});
    const QString window = windowOf(QString::fromStdString(folder.path()));
    const QString title = QString::fromStdString(folder.path()) + " – FolderSizes";
    ASSERT_FALSE(window.isEmpty());

    const auto isLaidOut = [&] { return lineExtent(window) == std::pair(margin, contentWidth(window) - margin - 1); };
    ASSERT_TRUE(waitUntil(isLaidOut));
    const int width = contentWidth(window);

    QProcess drag;
    drag.start(DRAG_WINDOW_CORNER, {"--hold", title, "180", "60"});
    ASSERT_TRUE(drag.waitForStarted(patience));
    // The button is still down here: the content follows while the user drags.
    EXPECT_TRUE(waitUntil([&] { return contentWidth(window) >= width + 170; }));
    EXPECT_TRUE(waitUntil(isLaidOut));
    EXPECT_FALSE(drag.waitForFinished(0));
    drag.write("\n");
    EXPECT_TRUE(drag.waitForFinished(patience));
    EXPECT_TRUE(waitUntil(isLaidOut));

    // Narrower than the columns need is not to be had. On a busy machine the window manager may leave out the end of
    // a drag; then the user drags again.
    for (int drags = 0; drags < 3 && contentWidth(window) > 640; ++drags) {
        QProcess shrink;
        shrink.start(DRAG_WINDOW_CORNER, {title, "-900", "0"});
        EXPECT_TRUE(shrink.waitForFinished(patience));
    }
    EXPECT_TRUE(waitUntil([&] { return contentWidth(window) == 640 && isLaidOut(); })) << contentWidth(window);

    // Closing the only window ends the program.
    answerOf("xdotool", {"mousemove", "--window", window, "100", "100", "key", "ctrl+alt+x"});
    EXPECT_TRUE(program.waitForFinished(patience));
    EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(program.exitCode(), 0);
}

} // namespace
} // namespace FolderSizes::LiveResizeTests
