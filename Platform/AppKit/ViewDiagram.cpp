#include <AppKit/NSView.h>
#include <AppKit/ViewDiagram.h>
#include <AppKit/ViewDiagramPlan.h>
#include <AppKit/ViewSnapshot.h>
#include <Backend/Backend.h>

#include <algorithm>
#include <array>
#include <span>

namespace RVCore {

namespace {

constexpr CGFloat margin = 16;
constexpr CGFloat legendSpacing = 16;
constexpr CGFloat swatchSize = 10;
constexpr CGFloat picturePaleness = 0.35;

constexpr CGColor ground{1, 1, 1, 1};
constexpr CGColor textGround{1, 1, 1, 0.85};

struct Style {
    const char* meaning;
    CGColor line;
    CGColor tint;
    CGFloat width = diagramLineWidth;
};

// By kind.
constexpr std::array<Style, 5> styles{{
    {"frame and size", {0.16, 0.36, 0.65, 1}, {0.16, 0.36, 0.65, 0.07}},
    {"padding", {0.13, 0.45, 0.27, 1}, {0.20, 0.60, 0.36, 0.16}},
    {"gap or empty view", {0.72, 0.36, 0.05, 1}, {0.95, 0.56, 0.16, 0.18}},
    {"not settled by constraints", {0.78, 0.10, 0.28, 1}, {0.78, 0.10, 0.28, 0.08}, diagramMarkWidth},
    {"", {0.16, 0.36, 0.65, 0.4}, {}}, // of a view with subviews: no tint, not in the legend
}};
constexpr std::size_t legendCount = 4;

const Style& styleOf(ViewDiagramPlan::Kind kind)
{
    return styles.at(static_cast<std::size_t>(kind));
}

void paint(const ViewDiagramPlan& plan, Canvas& canvas)
{
    using Kind = ViewDiagramPlan::Kind;
    for (const ViewDiagramPlan::Area& area : plan.areas) {
        if (area.kind != Kind::container)
            canvas.fill({area.rect, 0}, styleOf(area.kind).tint);
    }
    for (const ViewDiagramPlan::Area& area : plan.areas) {
        if (area.kind != Kind::padding && area.kind != Kind::gap)
            canvas.strokeInside({area.rect, 0}, styleOf(area.kind).width, styleOf(area.kind).line);
    }
    for (const CGRect& line : plan.lines)
        canvas.fill({line, 0}, styleOf(Kind::gap).line);
    for (const ViewDiagramPlan::Label& label : plan.labels) {
        canvas.fill({label.rect.insetBy(0, 1), 2}, textGround);
        canvas.drawText(diagramText(label.text, styleOf(label.kind).line), label.rect);
    }
}

// What the colours mean, in as many lines as it takes.
class Legend {
public:
    explicit Legend(CGFloat width)
    {
        CGPoint corner;
        for (const Style& style : std::span(styles).first<legendCount>()) {
            const CGSize text = Backend::shared().measureText(diagramText(style.meaning), 0).size;
            const CGFloat length = swatchSize + swatchSize / 2 + text.width;
            if (corner.x > 0 && corner.x + length > width)
                corner = {0, m_size.height + swatchSize / 2};
            m_corners.push_back(corner);
            m_size = {std::max(m_size.width, corner.x + length), corner.y + std::max(text.height, swatchSize)};
            corner.x += length + legendSpacing;
        }
    }

    CGSize size() const { return m_size; }

    void paint(Canvas& canvas) const
    {
        for (std::size_t kind = 0; kind < legendCount; ++kind) {
            const Style& style = styles[kind];
            const CGRect swatch(m_corners[kind], {swatchSize, swatchSize});
            canvas.fill({swatch, 0}, style.tint);
            canvas.strokeInside({swatch, 0}, style.width, style.line);
            const TextDescription text = diagramText(style.meaning, style.line);
            const CGSize size = Backend::shared().measureText(text, 0).size;
            canvas.drawText(text, {{swatch.maxX() + swatchSize / 2, swatch.midY() - size.height / 2}, size});
        }
    }

private:
    std::vector<CGPoint> m_corners;
    CGSize m_size;
};

CGSize sizeOf(const ViewDiagramPlan& plan, const Legend& legend)
{
    const CGSize size = plan.extent.size;
    return {std::max(size.width, legend.size().width) + 2 * margin, size.height + legend.size().height + 3 * margin};
}

} // namespace

CGSize viewDiagramSize(NSView& view)
{
    const ViewDiagramPlan plan = makeViewDiagramPlan(view);
    return sizeOf(plan, Legend(plan.extent.size.width));
}

void paintViewDiagram(NSView& view, Canvas& canvas)
{
    const ViewDiagramPlan plan = makeViewDiagramPlan(view);
    const CGRect extent = plan.extent;
    const Legend legend(extent.size.width);
    const CanvasState state(canvas);
    canvas.fill({{{}, sizeOf(plan, legend)}, 0}, ground);
    canvas.concatenate(CGAffineTransform::translation(margin - extent.minX(), margin - extent.minY()));
    {
        const CanvasState clipped(canvas);
        canvas.clip({extent, 0});
        canvas.beginTransparencyLayer(picturePaleness);
        paintViewTree(view, canvas);
        canvas.endTransparencyLayer();
        paint(plan, canvas);
    }
    canvas.concatenate(CGAffineTransform::translation(extent.minX(), extent.maxY() + margin));
    legend.paint(canvas);
}

void writeViewDiagram(NSView& view, const std::string& path, CGFloat scale)
{
    view.layoutSubtreeIfNeeded();
    Backend::shared().writePicture(path, viewDiagramSize(view), scale,
                                   [&](Canvas& canvas) { paintViewDiagram(view, canvas); });
}

} // namespace RVCore
