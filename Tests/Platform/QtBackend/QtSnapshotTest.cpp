#include <AppKit/NSBitmapImageRep.h>
#include <AppKit/NSView.h>
#include <CoreGraphics/Canvas.h>
#include <Platform/QtBackend/Offscreen.h>

#include <QuartzCore/CALayer.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace RVCore::QtSnapshotTests {
namespace {

using testing::ElementsAre;

// Red on its left half, on a green ground; above that, a blue subview in its upper right corner.
class HalvesView : public NSView {
public:
    using NSView::init;
    void draw(Canvas& canvas, const CGRect&) override { canvas.fill({{0, 0, 2, 4}, 0}, {1, 0, 0, 1}); }
};

std::shared_ptr<NSView> halves()
{
    auto view = make<HalvesView>(CGRect(10, 20, 4, 4));
    view->setWantsLayer(true);
    view->layer()->setBackgroundColor(CGColor{0, 1, 0, 1});
    const auto corner = make<NSView>(CGRect(3, 3, 1, 1));
    corner->setWantsLayer(true);
    corner->layer()->setBackgroundColor(CGColor{0, 0, 1, 1});
    view->addSubview(corner);
    return view;
}

// A letter for each pixel, row by row.
std::vector<std::string> lettersOf(const NSBitmapImageRep& representation)
{
    const CGImageRef image = representation.image();
    std::vector<std::string> rows;
    for (int y = 0; y < image->height(); ++y) {
        std::string row;
        for (int x = 0; x < image->width(); ++x) {
            const auto* pixel =
                &image
                     ->pixels()[static_cast<std::size_t>(y) * image->bytesPerRow() + static_cast<std::size_t>(x) * 4];
            row += pixel[3] == 0 ? '.' : pixel[0] == 255 ? 'r' : pixel[1] == 255 ? 'g' : pixel[2] == 255 ? 'b' : '?';
        }
        rows.push_back(row);
    }
    return rows;
}

std::vector<std::string> picture(NSView& view, const CGRect& rect)
{
    const auto representation = view.bitmapImageRepForCachingDisplay(rect);
    view.cacheDisplay(rect, *representation);
    return lettersOf(*representation);
}

TEST(QtSnapshot, IsOfTheViewWithWhatIsInIt)
{
    const auto view = halves();
    EXPECT_THAT(picture(*view, view->bounds()), ElementsAre("rrgb", "rrgg", "rrgg", "rrgg"));
}

TEST(QtSnapshot, OfAPartIsInTheViewsOwnCoordinates)
{
    const auto view = halves();
    EXPECT_THAT(picture(*view, {1, 2, 3, 2}), ElementsAre("rgb", "rgg")); // y runs upward
    EXPECT_THAT(picture(*view, {3, 3, 2, 2}), ElementsAre("..", "b."));   // beyond the bounds there is nothing
}

TEST(QtSnapshot, HasThePixelsOfItsScale)
{
    const auto view = halves();
    const auto representation = make<NSBitmapImageRep>(CGSize{1, 1}, 2.0);
    view->cacheDisplay({1.5, 3, 1, 1}, *representation);
    EXPECT_THAT(lettersOf(*representation), ElementsAre("rg", "rg"));
}

} // namespace
} // namespace RVCore::QtSnapshotTests
