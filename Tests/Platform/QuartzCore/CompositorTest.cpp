#include "PixelCanvas.h"

#include <CoreImage/CIColorControls.h>
#include <CoreImage/CIGaussianBlur.h>
#include <Foundation/NSException.h>

#include <QuartzCore/Compositor.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <random>

namespace RVCore::CompositorTests {
namespace {

using Kind = CompositionItem::Kind;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr CGColor white{1, 1, 1, 1};
constexpr CGColor red{1, 0, 0, 1};
constexpr CGColor blue{0, 0, 1, 1};
constexpr std::uint32_t redPixel = 0xFFFF0000;
constexpr std::uint32_t bluePixel = 0xFF0000FF;
constexpr std::uint32_t whitePixel = 0xFFFFFFFF;

// Somebody who draws: fills all of itself with a colour.
class Painter : public NSObject {
    RVCORE_CLASS(Painter)
public:
    CGColor color = red;
    CGSize size{10, 10};
    std::uint64_t revision = nextRevision();
    int drawCount = 0;
    bool raises = false;

    void setColor(const CGColor& newColor)
    {
        color = newColor;
        revision = nextRevision();
    }
    static std::uint64_t nextRevision()
    {
        static std::uint64_t last = 0;
        return ++last;
    }
};

Class& Painter::staticClass()
{
    static Class& theClass = defineClass<Painter>("Painter", NSObject::staticClass(), [](auto&) {});
    return theClass;
}

Compositor makeCompositor()
{
    return Compositor([](Bitmap& bitmap, int x, int y,
                         CGFloat scale) { return std::make_unique<PixelCanvas>(bitmap, x, y, scale); },
                      [](NSObject& owner, Canvas& canvas) {
                          auto& painter = static_cast<Painter&>(owner);
                          ++painter.drawCount;
                          if (painter.raises)
                              raiseInvalidArgument("Painter.draw", "no paint");
                          canvas.fill({{{}, painter.size}, 0}, painter.color);
                      });
}

// A scene over which tests put things: 40 × 30 points, white.
class CompositorTest : public testing::Test {
protected:
    void addFill(const CGRect& rect, const CGColor& color, CGFloat radius = 0)
    {
        auto& item = next->add(Kind::fill, host, CGAffineTransform::translation(rect.minX(), rect.minY()), rect.size);
        item.color = color;
        item.cornerRadius = radius;
    }
    void addContent(const std::shared_ptr<Painter>& painter, CGPoint origin)
    {
        next->add(Kind::content, painter, CGAffineTransform::translation(origin.x, origin.y), painter->size)
            .revision = painter->revision;
    }
    void beginGroup(const CGRect& rect, CGFloat opacity, bool clips = false, CGFloat radius = 0)
    {
        next->beginGroup(host, {.placement = CGAffineTransform::translation(rect.minX(), rect.minY()),
                                .size = rect.size,
                                .cornerRadius = radius,
                                .clips = clips,
                                .opacity = opacity});
    }
    void beginFilteredGroup(const CGRect& rect, const std::vector<FilterStep>& behind, CGFloat opacity = 1)
    {
        next->beginGroup(host, {.placement = CGAffineTransform::translation(rect.minX(), rect.minY()),
                                .size = rect.size,
                                .opacity = opacity});
        for (const FilterStep& step : behind)
            next->addBackgroundFilter(step);
    }
    // Starts a frame with the white ground.
    void begin()
    {
        next = &compositor.begin();
        addFill({0, 0, 40, 30}, white);
    }
    const DamageRegion& compose(CGFloat scale = 1) { return compositor.compose({40, 30}, scale); }
    std::uint32_t pixel(int x, int y) const { return compositor.pixels().row(y)[static_cast<std::size_t>(x)]; }

    Compositor compositor = makeCompositor();
    std::shared_ptr<NSObject> host = make<NSObject>();
    Composition* next = nullptr;
};

FilterStep blurOf(CGFloat radius)
{
    return {make<CIGaussianBlur>(), {radius}};
}

TEST_F(CompositorTest, TheFirstFrameIsAllNewAndTheSameFrameAgainIsNotPainted)
{
    const auto painter = make<Painter>();
    for (int frame = 0; frame < 2; ++frame) {
        begin();
        addContent(painter, {5, 6});
        const DamageRegion& changed = compose();
        if (frame == 0)
            EXPECT_THAT(changed.rects(), ElementsAre(PixelRect{0, 0, 40, 30}));
        else
            EXPECT_THAT(changed.rects(), IsEmpty());
    }
    EXPECT_EQ(painter->drawCount, 1);
    EXPECT_EQ(pixel(4, 6), whitePixel);
    EXPECT_EQ(pixel(5, 6), redPixel);
    EXPECT_EQ(pixel(14, 15), redPixel);
    EXPECT_EQ(pixel(15, 15), whitePixel);
}

TEST_F(CompositorTest, WhatMovedIsPaintedWhereItWasAndWhereItIs)
{
    const auto painter = make<Painter>();
    begin();
    addContent(painter, {0, 0});
    compose();
    begin();
    addContent(painter, {20, 12});
    EXPECT_THAT(compose().rects(), ElementsAre(PixelRect{0, 0, 10, 10}, PixelRect{20, 12, 10, 10}));
    EXPECT_EQ(pixel(0, 0), whitePixel);
    EXPECT_EQ(pixel(20, 12), redPixel);
}

TEST_F(CompositorTest, OnlyWhoChangedDraws)
{
    const auto first = make<Painter>();
    const auto second = make<Painter>();
    for (int frame = 0; frame < 2; ++frame) {
        begin();
        addContent(first, {0, 0});
        addContent(second, {20, 0});
        compose();
        second->setColor(blue);
    }
    EXPECT_EQ(first->drawCount, 1);
    EXPECT_EQ(second->drawCount, 2);
    EXPECT_EQ(pixel(20, 0), bluePixel);
}

TEST_F(CompositorTest, WhatIsTakenOutAndPutInIsPainted)
{
    const auto first = make<Painter>();
    const auto second = make<Painter>();
    second->color = blue;
    begin();
    addContent(first, {0, 0});
    addContent(second, {20, 0});
    compose();
    begin();
    addContent(second, {20, 0});
    EXPECT_THAT(compose().rects(), ElementsAre(PixelRect{0, 0, 10, 10}));
    EXPECT_EQ(pixel(0, 0), whitePixel);
    begin();
    addContent(first, {0, 0});
    addContent(second, {20, 0});
    EXPECT_THAT(compose().rects(), ElementsAre(PixelRect{0, 0, 10, 10}));
    EXPECT_EQ(pixel(0, 0), redPixel);
}

TEST_F(CompositorTest, AnotherScaleAndAnotherAreaPaintEverything)
{
    begin();
    addFill({1, 1, 2, 2}, red);
    compose();
    begin();
    addFill({1, 1, 2, 2}, red);
    EXPECT_THAT(compose(2).rects(), ElementsAre(PixelRect{0, 0, 80, 60}));
    EXPECT_EQ(pixel(1, 2), whitePixel);
    EXPECT_EQ(pixel(2, 2), redPixel);
    EXPECT_EQ(pixel(5, 5), redPixel);
    EXPECT_EQ(pixel(6, 5), whitePixel);
    begin();
    EXPECT_THAT(compositor.compose({20, 10}, 2).rects(), ElementsAre(PixelRect{0, 0, 40, 20}));
}

TEST_F(CompositorTest, AGroupIsBlendedInAsOnePicture)
{
    begin();
    beginGroup({0, 0, 40, 30}, 0.5);
    addFill({0, 0, 10, 10}, red);
    addFill({5, 0, 10, 10}, blue);
    next->endGroup();
    compose();
    EXPECT_EQ(pixel(2, 2), 0xFFFF7F7Fu); // half red over white
    EXPECT_EQ(pixel(7, 2), 0xFF7F7FFFu); // blue alone, not mixed with the red below it
    EXPECT_EQ(pixel(20, 2), whitePixel);
}

TEST_F(CompositorTest, WhileOnlyTheOpacityMovesNobodyDraws)
{
    const auto inside = make<Painter>();
    const auto outside = make<Painter>();
    for (const CGFloat opacity : {0.25, 0.5, 0.75}) {
        begin();
        addContent(outside, {20, 20});
        beginGroup({0, 0, 20, 20}, opacity);
        addContent(inside, {0, 0});
        next->endGroup();
        compose();
    }
    EXPECT_EQ(inside->drawCount, 1);
    EXPECT_EQ(outside->drawCount, 1);
    EXPECT_EQ(pixel(2, 2), 0xFFFF4040u);
}

TEST_F(CompositorTest, WhatIsBehindAGroupThatFadesIsDrawnWhenThatBeginsAndThenKept)
{
    const auto behind = make<Painter>();
    const auto compose = [&](CGFloat opacity) {
        begin();
        addContent(behind, {5, 5});
        beginGroup({0, 0, 4, 4}, opacity);
        addFill({0, 0, 10, 10}, blue); // beyond the outline, which does not clip
        next->endGroup();
        this->compose();
        return std::exchange(behind->drawCount, 0);
    };
    EXPECT_EQ(compose(1), 1);
    EXPECT_EQ(compose(0.75), 1);
    EXPECT_EQ(compose(0.5), 0);
    EXPECT_EQ(pixel(7, 7), 0xFF7F0080u);
    EXPECT_EQ(compose(0), 0);
    EXPECT_EQ(pixel(7, 7), redPixel);
    EXPECT_EQ(pixel(2, 2), whitePixel);
    behind->setColor(white);
    EXPECT_EQ(compose(0.25), 1) << "it changed";
    EXPECT_EQ(pixel(7, 7), 0xFFBFBFFFu);
}

TEST_F(CompositorTest, WhatIsBehindSomethingNewInFrontIsTakenFromTheFrameBefore)
{
    const auto behind = make<Painter>();
    const auto filter = make<CIGaussianBlur>();
    const auto compose = [&](std::optional<CGFloat> radius) {
        begin();
        addContent(behind, {5, 5});
        if (radius) {
            beginFilteredGroup({0, 0, 40, 30}, {{filter, {*radius}}});
            addFill({30, 20, 5, 5}, blue);
            next->endGroup();
        }
        this->compose();
        return std::exchange(behind->drawCount, 0);
    };
    EXPECT_EQ(compose(std::nullopt), 1);
    EXPECT_EQ(compose(0), 0);
    EXPECT_EQ(compose(2), 0);
    const std::uint32_t blurred = pixel(4, 10);
    EXPECT_NE(blurred, whitePixel);
    EXPECT_NE(blurred, redPixel);
    EXPECT_EQ(pixel(32, 22), bluePixel);
    EXPECT_EQ(compose(0), 0);
    EXPECT_EQ(pixel(4, 10), whitePixel);
    compositor.invalidate();
    EXPECT_EQ(compose(2), 1);
    EXPECT_EQ(pixel(4, 10), blurred) << "as when everything is painted";
}

TEST_F(CompositorTest, WhatDrawsNothingNeedsNoCanvas)
{
    int canvases = 0;
    Compositor counting(
        [&](Bitmap& bitmap, int x, int y, CGFloat scale) {
            ++canvases;
            return std::make_unique<PixelCanvas>(bitmap, x, y, scale);
        },
        [](NSObject&, Canvas& canvas) { const CanvasState state(canvas); });
    counting.begin().add(Kind::content, host, {}, {10, 10}).revision = Painter::nextRevision();
    counting.compose({40, 30}, 1);
    EXPECT_EQ(canvases, 0);
}

TEST_F(CompositorTest, AGroupIsCutAlongItsOutline)
{
    begin();
    beginGroup({10, 10, 10, 10}, 1, true);
    addFill({0, 0, 40, 30}, red);
    next->endGroup();
    compose();
    EXPECT_EQ(pixel(9, 15), whitePixel);
    EXPECT_EQ(pixel(10, 10), redPixel);
    EXPECT_EQ(pixel(19, 19), redPixel);
    EXPECT_EQ(pixel(20, 15), whitePixel);
}

TEST_F(CompositorTest, ATranslucentGroupInARoundedOneIsCutAlongItsCorners)
{
    begin();
    beginGroup({0, 0, 20, 20}, 1, true, 10);
    beginGroup({0, 0, 20, 20}, 0.5);
    addFill({0, 0, 20, 20}, red);
    next->endGroup();
    next->endGroup();
    compose();
    EXPECT_EQ(pixel(0, 0), whitePixel);
    EXPECT_EQ(pixel(10, 10), 0xFFFF7F7Fu);
    EXPECT_EQ(pixel(19, 0), whitePixel);
}

TEST_F(CompositorTest, ABackgroundFilterBlursWhatIsBehindAndNothingElse)
{
    begin();
    addFill({0, 0, 20, 30}, red);
    beginFilteredGroup({10, 0, 20, 30}, {blurOf(2)});
    next->endGroup();
    compose();
    EXPECT_EQ(pixel(9, 15), redPixel);    // not behind the group
    EXPECT_EQ(pixel(30, 15), whitePixel); // nor this
    const std::uint32_t middle = pixel(20, 15);
    EXPECT_NE(middle, redPixel);
    EXPECT_NE(middle, whitePixel);
    // The picture behind goes on at its edges: no rim of anything else.
    EXPECT_EQ(pixel(10, 0), redPixel);
    EXPECT_EQ(pixel(10, 15), redPixel);
    EXPECT_EQ(pixel(29, 29), whitePixel);
}

TEST_F(CompositorTest, WhatIsInAFilteredGroupIsNotBlurred)
{
    begin();
    beginFilteredGroup({0, 0, 40, 30}, {blurOf(8)});
    addFill({10, 10, 4, 4}, blue);
    next->endGroup();
    compose();
    EXPECT_EQ(pixel(9, 10), whitePixel);
    EXPECT_EQ(pixel(10, 10), bluePixel);
}

TEST_F(CompositorTest, NeutralFiltersDoNothing)
{
    begin();
    addFill({0, 0, 20, 30}, red);
    beginFilteredGroup({0, 0, 40, 30}, {{make<CIColorControls>(), {1, 0, 1}}, blurOf(0)});
    next->endGroup();
    compose();
    EXPECT_EQ(pixel(19, 15), redPixel);
    EXPECT_EQ(pixel(20, 15), whitePixel);
}

TEST_F(CompositorTest, WhileOnlyBackgroundFiltersMoveNobodyBehindDraws)
{
    const auto behind = make<Painter>();
    const auto inFront = make<Painter>();
    const auto filter = make<CIGaussianBlur>();
    for (const CGFloat radius : {1, 2, 3}) {
        begin();
        addContent(behind, {15, 10});
        beginFilteredGroup({0, 0, 40, 30}, {{filter, {radius}}});
        addContent(inFront, {0, 0});
        next->endGroup();
        compose();
    }
    EXPECT_EQ(behind->drawCount, 1);
    EXPECT_EQ(inFront->drawCount, 3); // painted over what the filter made
}

TEST_F(CompositorTest, WhenOnlySomethingInFrontOfABackgroundFilterChangesOnlyItIsPainted)
{
    const auto behind = make<Painter>();
    const auto spinner = make<Painter>();
    spinner->size = {4, 4};
    const FilterStep blur = blurOf(8);
    for (int frame = 0; frame < 3; ++frame) {
        begin();
        addContent(behind, {15, 10});
        beginFilteredGroup({0, 0, 40, 30}, {blur});
        addFill({10, 8, 20, 14}, white);
        addContent(spinner, {18, 13});
        next->endGroup();
        const auto changed = compose().rects();
        EXPECT_THAT(changed, ElementsAre(frame == 0 ? PixelRect{0, 0, 40, 30} : PixelRect{18, 13, 4, 4}));
        EXPECT_EQ(pixel(19, 14), frame == 1 ? bluePixel : redPixel);
        spinner->setColor(frame == 0 ? blue : red);
    }
    EXPECT_EQ(behind->drawCount, 1);
    EXPECT_EQ(spinner->drawCount, 3);
}

TEST_F(CompositorTest, WhatLiesNowhereIsNotPainted)
{
    constexpr CGFloat nan = std::numeric_limits<CGFloat>::quiet_NaN();
    begin();
    compose();
    begin();
    addFill({nan, 2, 3, 3}, red);
    addFill({2, 2, nan, 3}, red);
    beginGroup({2, nan, 3, 3}, 0.5, true);
    addFill({0, 0, 40, 30}, red);
    next->endGroup();
    EXPECT_THAT(compose().rects(), IsEmpty());
}

TEST_F(CompositorTest, AnImageThatIsAbsentIsNotPainted)
{
    begin();
    next->add(Kind::image, host, {}, {10, 10});
    compose();
    EXPECT_EQ(pixel(2, 2), whitePixel);
}

TEST_F(CompositorTest, GroupsWithoutASensibleOpacityOrRadiusAreRefused)
{
    begin();
    EXPECT_THROW(beginGroup({0, 0, 40, 30}, std::numeric_limits<CGFloat>::infinity()), NSException);
    EXPECT_THROW(beginGroup({0, 0, 40, 30}, 1, true, -1), NSException);
    beginGroup({0, 0, 40, 30}, 7);
    EXPECT_EQ(next->items().back().opacity, 1);
}

TEST_F(CompositorTest, AGroupsOwnFiltersChangeItsPictureOnly)
{
    begin();
    addFill({0, 0, 5, 30}, red);
    const FilterStep brighter{make<CIColorControls>(), {1, 1, 1}};
    next->beginGroup(host, {.placement = {}, .size = {40, 30}});
    next->addFilter(brighter);
    addFill({20, 0, 5, 5}, blue);
    next->endGroup();
    compose();
    EXPECT_EQ(pixel(0, 0), redPixel);
    EXPECT_EQ(pixel(20, 0), whitePixel); // blue made as bright as can be
    EXPECT_EQ(pixel(30, 20), whitePixel);
}

TEST_F(CompositorTest, WhatDrawingRaisesPassesThroughAndTheNextFrameIsWhole)
{
    const auto painter = make<Painter>();
    begin();
    addContent(painter, {0, 0});
    compose();
    painter->raises = true;
    painter->setColor(blue);
    begin();
    addContent(painter, {0, 0});
    EXPECT_THROW(compose(), NSException);
    painter->raises = false;
    begin();
    addContent(painter, {0, 0});
    EXPECT_THAT(compose().rects(), ElementsAre(PixelRect{0, 0, 40, 30}));
    EXPECT_EQ(pixel(0, 0), bluePixel);
}

TEST_F(CompositorTest, OwnersMayDieAfterTheFrame)
{
    auto painter = make<Painter>();
    const std::weak_ptr<Painter> watched = painter;
    begin();
    addContent(painter, {0, 0});
    painter.reset();
    EXPECT_FALSE(watched.expired());
    compose();
    EXPECT_TRUE(watched.expired());
}

TEST_F(CompositorTest, AreasThatAreNoPictureAreRefused)
{
    begin();
    EXPECT_THROW(compositor.compose({40, 30}, 0), NSException);
    EXPECT_THROW(compositor.compose({40, 30}, std::numeric_limits<double>::quiet_NaN()), NSException);
    EXPECT_THROW(compositor.compose({40000, 30}, 1), NSException);
    EXPECT_NO_THROW(compositor.compose({0, 0}, 1));
    EXPECT_TRUE(compositor.pixels().isEmpty());
}

TEST_F(CompositorTest, AFrameThatWasRefusedLeavesNothingBehind)
{
    begin();
    beginGroup({0, 0, 40, 30}, 0.5);
    addFill({0, 0, 10, 10}, red);
    next->endGroup();
    compose();
    auto owner = make<Painter>();
    const std::weak_ptr<Painter> watched = owner;
    begin();
    addContent(owner, {0, 0});
    owner = nullptr;
    EXPECT_THROW(compositor.compose({40000, 30}, 1), NSException);
    EXPECT_TRUE(watched.expired());
    begin();
    beginGroup({0, 0, 40, 30}, 0.5);
    addFill({0, 0, 10, 10}, blue);
    next->endGroup();
    EXPECT_THAT(compose().rects(), ElementsAre(PixelRect{0, 0, 40, 30}));
    EXPECT_EQ(pixel(2, 2), 0xFF7F7FFFu);
}

TEST_F(CompositorTest, PrintsItself)
{
    begin();
    beginFilteredGroup({0, 0, 40, 30}, {blurOf(8)}, 0.5);
    addFill({1, 2, 3, 4}, red, 2);
    next->endGroup();
    EXPECT_EQ(next->describe(), "fill (0, 0) 40 × 30 rgba(1, 1, 1, 1)\n"
                                "group (0, 0) 40 × 30 opacity 0.5 behind CIGaussianBlur inputRadius 8\n"
                                "  fill (1, 2) 3 × 4 radius 2 rgba(1, 0, 0, 1)\n"
                                "end\n");
}

// --- Painting what changed ends where painting everything ends

// A random picture that changes at random: contents, images, borders, groups in groups, turned ones, clips,
// opacities, filters, and in front of all a wide background filter with something small on it.
class RandomScene {
public:
    explicit RandomScene(unsigned seed) : m_random(seed)
    {
        for (int i = 0; i < 8; ++i)
            m_nodes.push_back(randomNode());
    }

    void change()
    {
        const std::size_t index = below(m_nodes.size());
        switch (below(9)) {
        case 0:
            m_nodes[index].painter->setColor(randomColor());
            break;
        case 1:
            m_nodes[index].origin = randomPoint();
            break;
        case 2:
            m_nodes[index].opacity = randomOpacity();
            break;
        case 3:
            m_nodes[index].filters = randomFilters();
            break;
        case 4:
            m_nodes[index].filtersBehind = randomFilters();
            break;
        case 5:
            m_spinner->setColor(randomColor());
            break;
        case 6:
            if (below(4) == 0)
                m_filtersBehindAll = wideFilters();
            break;
        case 7:
            if (m_nodes.size() > 3)
                m_nodes.erase(m_nodes.begin() + static_cast<std::ptrdiff_t>(index));
            break;
        default:
            if (m_nodes.size() < 12)
                m_nodes.insert(m_nodes.begin() + static_cast<std::ptrdiff_t>(index), randomNode());
        }
    }

    void compose(Compositor& compositor, CGFloat scale) const
    {
        Composition& next = compositor.begin();
        auto& ground = next.add(Kind::fill, m_host, {}, area);
        ground.color = white;
        std::size_t open = 0;
        for (const Node& node : m_nodes) {
            const auto placement = CGAffineTransform::rotation(node.angle)
                                       .concatenating(CGAffineTransform::translation(node.origin.x, node.origin.y));
            next.beginGroup(node.painter, {.placement = placement,
                                           .size = {18, 14},
                                           .cornerRadius = node.clips ? 4.0 : 0.0,
                                           .clips = node.clips,
                                           .opacity = node.opacity});
            for (const FilterStep& step : node.filters)
                next.addFilter(step);
            for (const FilterStep& step : node.filtersBehind)
                next.addBackgroundFilter(step);
            addContent(next, node.painter, placement);
            if (node.isFramed) {
                next.add(Kind::image, node.painter, placement, {6, 6}).image = m_image;
                auto& border = next.add(Kind::border, node.painter, placement, {18, 14});
                border.color = blue;
                border.borderWidth = 1.5;
                border.cornerRadius = 3;
            }
            if (node.staysOpen)
                ++open;
            else
                next.endGroup();
        }
        for (; open > 0; --open)
            next.endGroup();
        next.beginGroup(m_host, {.placement = CGAffineTransform::translation(3, 5), .size = {area.width - 9, 60}});
        for (const FilterStep& step : m_filtersBehindAll)
            next.addBackgroundFilter(step);
        addContent(next, m_spinner, CGAffineTransform::translation(30, 20));
        next.endGroup();
        compositor.compose(area, scale);
    }

private:
    static constexpr CGSize area{170, 70};

    struct Node {
        std::shared_ptr<Painter> painter;
        CGPoint origin;
        CGFloat angle;
        CGFloat opacity;
        std::vector<FilterStep> filters;
        std::vector<FilterStep> filtersBehind;
        bool clips;
        bool isFramed;
        bool staysOpen; // what follows is in it
    };

    static void addContent(Composition& next, const std::shared_ptr<Painter>& painter,
                           const CGAffineTransform& placement)
    {
        next.add(Kind::content, painter, placement, painter->size).revision = painter->revision;
    }
    static CGImageRef makeTestImage()
    {
        std::vector<std::uint8_t> pixels;
        for (int i = 0; i < 9; ++i)
            pixels.insert(pixels.end(), {static_cast<std::uint8_t>(28 * i), 90, 200, 255});
        return std::make_shared<const CGImage>(3, 3, pixels);
    }

    std::size_t below(std::size_t end) { return m_random() % end; }
    CGFloat randomOpacity() { return below(2) == 0 ? 1 : static_cast<CGFloat>(1 + below(9)) / 10; }
    FilterStep randomColors() { return {m_colors, {static_cast<CGFloat>(below(3)), 0, 1}}; }
    std::vector<FilterStep> randomFilters()
    {
        std::vector<FilterStep> filters;
        if (below(5) == 0)
            filters.push_back(randomColors());
        if (below(4) == 0)
            filters.push_back({m_blur, {static_cast<CGFloat>(1 + below(4))}});
        return filters;
    }
    std::vector<FilterStep> wideFilters()
    {
        return {randomColors(), {m_blur, {8 + static_cast<CGFloat>(below(17)) / 2}}};
    }
    CGPoint randomPoint()
    {
        return {static_cast<CGFloat>(below(320)) / 2 - 5, static_cast<CGFloat>(below(130)) / 2 - 5};
    }
    CGColor randomColor()
    {
        const auto part = [&] { return static_cast<double>(below(256)) / 255; };
        return {part(), part(), part(), below(2) == 0 ? 1 : 0.5};
    }
    Node randomNode()
    {
        const auto painter = make<Painter>();
        painter->setColor(randomColor());
        painter->size = {static_cast<CGFloat>(1 + below(20)), static_cast<CGFloat>(1 + below(16))};
        const CGFloat angle = below(4) == 0 ? static_cast<CGFloat>(below(7)) : 0;
        return {painter,         randomPoint(), angle,         randomOpacity(), randomFilters(),
                randomFilters(), below(3) == 0, below(3) == 0, below(4) == 0};
    }

    std::mt19937 m_random;
    std::shared_ptr<NSObject> m_host = make<NSObject>();
    std::shared_ptr<CIGaussianBlur> m_blur = make<CIGaussianBlur>();
    std::shared_ptr<CIColorControls> m_colors = make<CIColorControls>();
    std::shared_ptr<Painter> m_spinner = make<Painter>();
    CGImageRef m_image = makeTestImage();
    std::vector<FilterStep> m_filtersBehindAll = wideFilters();
    std::vector<Node> m_nodes;
};

// The largest difference of a channel in two pictures.
int largestDifference(const Bitmap& a, const Bitmap& b)
{
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (std::size_t x = 0; x < a.row(y).size(); ++x) {
            for (const int shift : {0, 8, 16, 24}) {
                const auto channel = [&](const Bitmap& bitmap) {
                    return static_cast<int>((bitmap.row(y)[x] >> shift) & 0xFF);
                };
                largest = std::max(largest, std::abs(channel(a) - channel(b)));
            }
        }
    }
    return largest;
}

TEST(CompositorLaw, PaintingWhatChangedEndsWherePaintingEverythingDoes)
{
    for (const CGFloat scale : {1.0, 1.5, 2.0}) {
        for (unsigned seed = 1; seed <= (scale == 1 ? 4 : 1); ++seed) {
            RandomScene scene(seed);
            Compositor kept = makeCompositor();
            for (int step = 0; step < 25; ++step) {
                scene.change();
                scene.compose(kept, scale);
                Compositor fresh = makeCompositor();
                scene.compose(fresh, scale);
                ASSERT_EQ(largestDifference(kept.pixels(), fresh.pixels()), 0)
                    << "seed " << seed << ", step " << step << ", scale " << scale << "\n"
                    << fresh.composition().describe();
            }
        }
    }
}

} // namespace
} // namespace RVCore::CompositorTests
