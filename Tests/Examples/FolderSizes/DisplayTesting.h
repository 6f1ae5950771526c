#pragma once

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QThread>

#include <functional>
#include <optional>
#include <utility>

// The program in a window on an X server of its own, with a real pointer and keyboard (see Tests/VirtualDisplay).

namespace FolderSizes {

inline constexpr int patience = 20000; // milliseconds until a test gives up waiting for the desktop

inline QString answerOf(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished(patience);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

inline bool waitUntil(const std::function<bool()>& condition)
{
    QElapsedTimer timer;
    timer.start();
    while (!condition()) {
        if (timer.elapsed() > patience)
            return false;
        QThread::msleep(20);
    }
    return true;
}

// The window that shows this folder, as the X server knows it; empty when none comes.
inline QString windowOf(const QString& folder)
{
    const QString title = "^" + folder + " – FolderSizes$";
    return answerOf("xdotool", {"search", "--sync", "--onlyvisible", "--name", title}).section('\n', 0, 0);
}

inline QImage pictureOf(const QString& window)
{
    return QGuiApplication::primaryScreen()->grabWindow(window.toULongLong()).toImage();
}

// How far the line below the headings reaches in what the window shows now: the first and last column of pixels.
inline std::optional<std::pair<int, int>> lineExtent(const QString& window)
{
    const QRgb lineColor = qRgb(179, 181, 186);
    const QImage picture = pictureOf(window);
    for (int y = 0; y < picture.height(); ++y) {
        int first = 0;
        while (first < picture.width() && picture.pixel(first, y) != lineColor)
            ++first;
        int last = first;
        while (last + 1 < picture.width() && picture.pixel(last + 1, y) == lineColor)
            ++last;
        if (last - first > picture.width() / 2)
            return std::pair(first, last);
    }
    return std::nullopt;
}

} // namespace FolderSizes
