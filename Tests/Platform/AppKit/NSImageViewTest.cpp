#include "ControlTesting.h"

#include <AppKit/NSImageView.h>
#include <Foundation/Message.h>
#include <Foundation/NSCoder.h>
#include <HeadlessBackend/RecordingCanvas.h>
#include <Platform/Foundation/Raised.h>

namespace RVCore::NSImageViewTests {
namespace {

std::shared_ptr<NSImage> image(CGFloat width, CGFloat height)
{
    return make<NSImage>(std::make_shared<const CGImage>(1, 1, std::vector<std::uint8_t>(4, 255)),
                         CGSize{width, height});
}

std::shared_ptr<NSImageView> viewOf(CGFloat width, CGFloat height)
{
    const auto view = make<NSImageView>(CGRect(0, 0, 100, 50));
    view->setImage(image(width, height));
    return view;
}

std::string drawn(NSImageView& view)
{
    RecordingCanvas canvas;
    view.draw(canvas, view.bounds());
    return canvas.text();
}

std::string drawnIn(const std::string& rect)
{
    return "save\n  clip (0, 0) 100 × 50\n  image 1 × 1 pixels in " + rect + "\nrestore\n";
}

TEST(NSImageView, IsAsLargeAsItsImage)
{
    const auto view = viewOf(20, 10);
    EXPECT_EQ(view->intrinsicContentSize(), (CGSize{20, 10}));
    view->setImage(nullptr);
    EXPECT_EQ(view->intrinsicContentSize(), (CGSize{-1, -1}));
    EXPECT_EQ(drawn(*view), "");
}

TEST(NSImageView, PutsTheImageInTheMiddleUnlessToldOtherwise)
{
    const auto view = viewOf(20, 10);
    EXPECT_EQ(drawn(*view), drawnIn("(40, 20) 20 × 10"));
    const char* const places[] = {"(40, 20)", "(40, 0)", "(0, 0)",   "(80, 0)", "(0, 20)",
                                  "(40, 40)", "(0, 40)", "(80, 40)", "(80, 20)"};
    for (int alignment = 0; alignment <= 8; ++alignment) {
        view->setImageAlignment(static_cast<NSImageAlignment>(alignment));
        EXPECT_EQ(drawn(*view), drawnIn(std::string(places[alignment]) + " 20 × 10")) << alignment;
    }
}

TEST(NSImageView, ScalesTheImageAsItIsTold)
{
    const auto view = viewOf(200, 50);
    EXPECT_EQ(drawn(*view), drawnIn("(0, 12.5) 100 × 25"));
    view->setImageScaling(NSImageScaling::none);
    EXPECT_EQ(drawn(*view), drawnIn("(-50, 0) 200 × 50"));
    view->setImageScaling(NSImageScaling::axesIndependently);
    EXPECT_EQ(drawn(*view), drawnIn("(0, 0) 100 × 50"));
    view->setImage(image(10, 10));
    view->setImageScaling(NSImageScaling::proportionallyUpOrDown);
    EXPECT_EQ(drawn(*view), drawnIn("(25, 0) 50 × 50"));
}

TEST(NSImageView, HandsClicksOnAndTakesNoKeys)
{
    class Clicked : public NSView {
    public:
        void mouseDown(NSEvent&) override { ++count; }
        int count = 0;
    };
    const auto host = make<Clicked>(CGRect(0, 0, 100, 50));
    const auto view = viewOf(20, 10);
    host->addSubview(view);
    EXPECT_FALSE(view->acceptsFirstResponder());
    view->mouseDown(*mouseEvent(NSEventType::leftMouseDown, *view, {5, 5}));
    EXPECT_EQ(host->count, 1);
}

TEST(NSImageView, SaysSomethingOnlyWhereItHasALabel)
{
    const auto view = viewOf(20, 10);
    EXPECT_EQ(view->accessibilityRole(), AccessibleRole::none);
    view->setAccessibilityLabel("The way home");
    EXPECT_EQ(view->accessibilityRole(), AccessibleRole::image);
}

TEST(NSImageView, AnUnknownNumberIsRefused)
{
    const auto view = viewOf(20, 10);
    EXPECT_EQ(raised([&] { send(view, "setImageAlignment:", 9); }),
              "NSInvalidArgumentException: NSImageView.setImageAlignment:: takes 0 to 8, got 9");
    EXPECT_EQ(raised([&] { send(view, "setImageScaling:", -1); }),
              "NSInvalidArgumentException: NSImageView.setImageScaling:: takes 0 to 3, got -1");
    EXPECT_EQ(view->imageAlignment(), NSImageAlignment::center);
    EXPECT_EQ(view->imageScaling(), NSImageScaling::proportionallyDown);
}

TEST(NSImageView, EveryPropertyIsReadAndWrittenByName)
{
    const auto view = make<NSImageView>();
    const auto picture = image(1, 1);
    send(view, "setImage:", picture);
    EXPECT_EQ(send(view, "image").as<ObjectRef>(), picture);
    send(view, "setImageAlignment:", 3);
    EXPECT_EQ(send(view, "imageAlignment").as<int>(), 3);
    send(view, "setImageScaling:", 2);
    EXPECT_EQ(send(view, "imageScaling").as<int>(), 2);
}

TEST(NSImageView, ComesBackFromAnArchiveWithoutItsImage)
{
    const auto view = viewOf(20, 10);
    view->setImageAlignment(NSImageAlignment::right);
    view->setImageScaling(NSImageScaling::none);
    const auto copy = std::dynamic_pointer_cast<NSImageView>(unarchivedObject(archivedObject(*view)));
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->image(), nullptr);
    EXPECT_EQ(copy->imageAlignment(), NSImageAlignment::right);
    EXPECT_EQ(copy->imageScaling(), NSImageScaling::none);
}

} // namespace
} // namespace RVCore::NSImageViewTests
