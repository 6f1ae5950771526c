#include <AppKit/LayoutWords.h>
#include <AppKit/NSView.h>
#include <AppKit/ViewDiagramPlan.h>
#include <AppKit/ViewExplanation.h>
#include <Backend/Backend.h>
#include <CoreGraphics/Canvas.h>

#include <QuartzCore/CALayer.h>

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

namespace RVCore {

namespace {

constexpr CGFloat farthestOverflow = 200;
constexpr CGFloat textSize = 9;
constexpr CGFloat labelPadding = 2;
constexpr CGFloat tickLength = 5;
constexpr CGFloat smallestLength = 0.5; // below it there is nothing to see

// What a view draws: whether anything, and where text stands, so that labels can keep clear of it.
class DrawingProbe : public Canvas {
public:
    explicit DrawingProbe(NSView& view) { view.draw(*this, view.bounds()); }

    bool hasDrawn = false;
    std::vector<CGRect> texts; // as if drawn without a transform

    void save() override {}
    void restore() override {}
    void concatenate(const CGAffineTransform&) override {}
    void clip(const RoundedRect&) override {}
    void fill(const RoundedRect&, const CGColor&) override { hasDrawn = true; }
    void strokeInside(const RoundedRect&, CGFloat, const CGColor&) override { hasDrawn = true; }
    void drawText(const TextDescription& text, const CGRect& rect) override
    {
        hasDrawn = true;
        CGSize size = Backend::shared().measureText(text, text.wraps() ? rect.size.width : 0).size;
        size.width = std::min(size.width, rect.size.width);
        const bool isRight = text.alignment == NSTextAlignment::right;
        const CGFloat slack = rect.size.width - size.width;
        const CGFloat start = isRight ? slack : text.alignment == NSTextAlignment::center ? slack / 2 : 0;
        texts.emplace_back(rect.minX() + start, rect.minY(), size.width, rect.size.height);
    }
    void drawImage(const CGImage&, const CGRect&) override { hasDrawn = true; }
    void drawMask(const CGImage&, const CGRect&, const CGColor&) override { hasDrawn = true; }
    void drawControl(const ControlDescription&, const CGRect&) override { hasDrawn = true; }
    void beginTransparencyLayer(CGFloat) override {}
    void endTransparencyLayer() override {}
};

// The part of a rectangle along one axis.
struct Span {
    CGFloat start;
    CGFloat end;

    static Span of(const CGRect& rect, bool isVertical)
    {
        return isVertical ? Span{rect.minY(), rect.maxY()} : Span{rect.minX(), rect.maxX()};
    }
    CGFloat length() const { return end - start; }
};

CGRect rectOf(Span along, Span across, bool isVertical)
{
    return isVertical ? CGRect(across.start, along.start, across.length(), along.length())
                      : CGRect(along.start, across.start, along.length(), across.length());
}

class Planner {
public:
    explicit Planner(NSView& root) : m_root(root)
    {
        for (const auto& view : ambiguousViews(root))
            m_open.insert(view.get());
        add(root);
        plan.extent = extent();
    }

    ViewDiagramPlan plan;

private:
    using Kind = ViewDiagramPlan::Kind;

    CGRect extent() const
    {
        const CGRect root({}, m_root.frame().size);
        CGRect result = root;
        for (const ViewDiagramPlan::Area& area : plan.areas)
            result = result.unionWith(area.rect);
        return result.intersection(root.insetBy(-farthestOverflow, -farthestOverflow));
    }

    CGRect rectOfView(const NSView& view) const { return rectOnCanvas(view, view.bounds()); }

    CGRect rectOnCanvas(const NSView& view, const CGRect& part) const
    {
        const CGRect rect = view.convertRectTo(part, &m_root);
        const CGRect outer = m_root.bounds();
        return {rect.minX() - outer.minX(),
                m_root.isFlipped() ? rect.minY() - outer.minY() : outer.maxY() - rect.maxY(), rect.size.width,
                rect.size.height};
    }

    // Asks every view once.
    const DrawingProbe& drawingOf(NSView& view) { return m_drawings.try_emplace(&view, view).first->second; }

    bool showsNothing(NSView& view)
    {
        const CALayer* layer = view.layer().get();
        if (!view.subviews().empty() || (layer && (layer->backgroundColor() || layer->borderWidth() > 0)))
            return false;
        return !drawingOf(view).hasDrawn;
    }

    // One that shows nothing and has no place is none of the layout's, such as the gap of a hidden member.
    bool isShown(NSView& view)
    {
        return !view.isHidden() && view.alphaValue() > 0 && !(m_open.contains(&view) && showsNothing(view));
    }

    void add(NSView& view)
    {
        const CGRect rect = rectOfView(view);
        std::vector<NSView*> subviews;
        for (const auto& subview : view.subviews()) {
            if (isShown(*subview))
                subviews.push_back(subview.get());
        }
        if (m_open.contains(&view))
            addOpen(rect);
        else if (showsNothing(view))
            addArea(rect, Kind::gap);
        else
            addArea(rect, subviews.empty() ? Kind::frame : Kind::container);
        if (subviews.empty() && !m_open.contains(&view) && !showsNothing(view))
            addSize(view, rect);
        addPadding(rect, subviews);
        for (const bool isVertical : {false, true})
            addGaps(subviews, isVertical);
        for (NSView* subview : subviews)
            add(*subview);
    }

    void addArea(const CGRect& rect, Kind kind)
    {
        if (rect.size.width >= smallestLength && rect.size.height >= smallestLength)
            plan.areas.push_back({rect, kind});
    }

    void addOpen(CGRect rect)
    {
        if (rect.isEmpty()) // still to be seen
            rect = CGRect(rect.midX() - diagramMarkWidth * 2, rect.midY() - diagramMarkWidth * 2,
                          diagramMarkWidth * 4, diagramMarkWidth * 4);
        plan.areas.push_back({rect, Kind::open});
    }

    // In the middle or at either end, where the view's own text leaves room.
    void addSize(NSView& view, const CGRect& rect)
    {
        for (const CGRect& text : drawingOf(view).texts)
            m_texts.push_back(rectOnCanvas(view, text));
        const std::string text = pointsText(rect.size.width) + " × " + pointsText(rect.size.height);
        const CGFloat end = std::min(rect.size.width, labelSizeOf(text).width + 2 * labelPadding);
        const CGRect places[] = {rect,
                                 {rect.maxX() - end, rect.minY(), end, rect.size.height},
                                 {rect.minX(), rect.minY(), end, rect.size.height}};
        for (const CGRect& place : places) {
            if (addLabel(text, place, Kind::frame))
                return;
        }
    }

    // The strips above and below the subviews go all the way, the ones beside them fill what is left.
    void addPadding(const CGRect& rect, const std::vector<NSView*>& subviews)
    {
        CGRect content;
        for (const NSView* subview : subviews)
            content = content.unionWith(rectOfView(*subview));
        content = content.intersection(rect);
        if (content.isEmpty())
            return;
        const Span across{content.minY(), content.maxY()};
        for (const Span strip : {Span{rect.minY(), content.minY()}, Span{content.maxY(), rect.maxY()}})
            addStrip(rectOf(strip, Span::of(rect, false), true), strip.length());
        for (const Span strip : {Span{rect.minX(), content.minX()}, Span{content.maxX(), rect.maxX()}})
            addStrip(rectOf(strip, across, false), strip.length());
    }

    void addStrip(const CGRect& rect, CGFloat length)
    {
        addArea(rect, Kind::padding);
        if (length >= smallestLength)
            addLabel(pointsText(length), rect, Kind::padding);
    }

    // Between neighbours, if the subviews stand one after the other along this axis; a view that shows nothing is a
    // gap that somebody made.
    void addGaps(std::vector<NSView*> subviews, bool isVertical)
    {
        const auto span = [&](const NSView* view) { return Span::of(rectOfView(*view), isVertical); };
        std::stable_sort(subviews.begin(), subviews.end(),
                         [&](const NSView* a, const NSView* b) { return span(a).start < span(b).start; });
        for (std::size_t i = 1; i < subviews.size(); ++i) {
            if (span(subviews[i]).start < span(subviews[i - 1]).end - smallestLength)
                return;
        }
        for (std::size_t i = 0; i < subviews.size(); ++i) {
            const CGRect rect = rectOfView(*subviews[i]);
            if (subviews.size() > 1 && showsNothing(*subviews[i]))
                addLength(rect, isVertical);
            if (i == 0)
                continue;
            const CGRect before = rectOfView(*subviews[i - 1]);
            const Span first = Span::of(before, !isVertical), second = Span::of(rect, !isVertical);
            const Span across{std::max(first.start, second.start), std::min(first.end, second.end)};
            const CGRect gap = rectOf({span(subviews[i - 1]).end, span(subviews[i]).start},
                                      across.length() > 0 ? across : first, isVertical);
            addArea(gap, Kind::gap);
            addLength(gap, isVertical);
        }
    }

    // The line of a length with a tick at both ends, and the number beside it.
    void addLength(const CGRect& rect, bool isVertical)
    {
        const Span along = Span::of(rect, isVertical);
        if (along.length() <= tickLength)
            return; // the area alone is clearer
        const CGFloat middle = isVertical ? rect.midX() : rect.midY();
        const auto around = [middle](CGFloat length) { return Span{middle - length / 2, middle + length / 2}; };
        plan.lines.push_back(rectOf(along, around(diagramLineWidth), isVertical));
        for (const CGFloat end : {along.start, along.end - diagramLineWidth})
            plan.lines.push_back(rectOf({end, end + diagramLineWidth}, around(tickLength), isVertical));
        // To the right of a vertical line, above a horizontal one.
        const std::string text = pointsText(along.length());
        const CGSize size = labelSizeOf(text);
        const CGFloat near = middle + (isVertical ? tickLength / 2 : -size.height);
        addLabel(text,
                 rectOf(along, {near, near + (isVertical ? size.width + 2 * labelPadding : size.height)}, isVertical),
                 Kind::gap);
    }

    static CGSize labelSizeOf(const std::string& text)
    {
        return Backend::shared().measureText(diagramText(text), 0).size;
    }

    // In the middle of the room; returns whether there is enough of it.
    bool addLabel(const std::string& text, const CGRect& room, Kind kind)
    {
        const CGSize size = labelSizeOf(text);
        const CGRect rect(room.midX() - size.width / 2, room.midY() - size.height / 2, size.width, size.height);
        if (size.width > room.size.width || size.height > room.size.height)
            return false;
        const auto isCovered = [&](const CGRect& other) {
            return !other.insetBy(-labelPadding, 0).intersection(rect).isEmpty();
        };
        if (std::any_of(m_texts.begin(), m_texts.end(), isCovered) ||
            std::any_of(plan.labels.begin(), plan.labels.end(),
                        [&](const ViewDiagramPlan::Label& other) { return isCovered(other.rect); }))
            return false;
        plan.labels.push_back({text, rect, kind});
        return true;
    }

    const NSView& m_root;
    std::unordered_set<const NSView*> m_open;
    std::unordered_map<const NSView*, DrawingProbe> m_drawings;
    std::vector<CGRect> m_texts; // of the views themselves
};

} // namespace

ViewDiagramPlan makeViewDiagramPlan(NSView& root)
{
    return Planner(root).plan;
}

TextDescription diagramText(const std::string& text, const CGColor& color)
{
    return {.text = text, .font = {.size = textSize}, .color = color};
}

} // namespace RVCore
