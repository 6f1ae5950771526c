#include <Platform/Backend/RecordingClient.h>
#include <Platform/QtBackend/Offscreen.h>

#include <QScreen>
#include <QtBackend/QtWindow.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

namespace RVCore::QtScaleTests {
namespace {

[[maybe_unused]] const bool isScaled = setenv("QT_SCALE_FACTOR", "1.5", 1) == 0;

// Red, with a blue rectangle of 60 × 20 points at the top left.
class CornerClient : public RecordingClient {
public:
    void paint(Canvas& canvas) override
    {
        RecordingClient::paint(canvas);
        canvas.fill({{0, 0, 60, 20}, 0}, {0, 0, 1, 1});
    }
};

TEST(QtScale, AWindowHasItsScreensPixelsToAPoint)
{
    CornerClient client;
    const auto window = Backend::shared().makeWindow(client, {100, 50});
    EXPECT_EQ(window->backingScale(), 1.5);
    client.onPaint = [] { Backend::shared().stop(); };
    window->setVisible(true);
    Backend::shared().run();
    EXPECT_EQ(client.takeCalls().front(), "prepare") << "the size is in points and has not changed";

    QWindow& surface = dynamic_cast<QtWindow&>(*window).surface();
    const QImage picture = surface.screen()->grabWindow(surface.winId()).toImage();
    EXPECT_EQ(picture.pixel(89, 29), qRgb(0, 0, 255));
    EXPECT_EQ(picture.pixel(90, 29), qRgb(255, 0, 0));
    EXPECT_EQ(picture.pixel(89, 30), qRgb(255, 0, 0));
}

TEST(QtScale, MeasuresAreInPointsAllTheSame)
{
    const TextDescription text{.text = "HHHHHHHH", .font = {.family = "DejaVu Sans", .size = 16}};
    const CGSize measured = Backend::shared().measureText(text, 0).size;
    EXPECT_NEAR(measured.width, 97, 3) << "0.752 of 16 for each, at any scale of the screen";
    const QImage picture = paintedPicture({200, 40}, 1, [&](Canvas& canvas) {
        canvas.drawText(text, {0, 0, 200, 40});
    });
    EXPECT_NEAR(inkBounds(picture).width(), measured.width, 4) << "a picture has its own scale";
}

} // namespace
} // namespace RVCore::QtScaleTests
