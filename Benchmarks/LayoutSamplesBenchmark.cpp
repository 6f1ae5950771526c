#include "Benchmarks.h"

#include <Foundation/Stop.h>
#include <RVCore.h>

#include <cmath>

namespace RVCore {

namespace {

using Orientation = RVGroupView::Orientation;

// A view tree of a certain kind in a host; `size` says how much of it.
using MakeContent = std::shared_ptr<NSView> (*)(std::size_t size);

std::size_t viewCount(const NSView& view)
{
    std::size_t count = 1;
    for (const auto& subview : view.subviews())
        count += viewCount(*subview);
    return count;
}

std::shared_ptr<NSView> makeNested(std::size_t size, int depth)
{
    if (depth == 0)
        return make<RVSpacerView>(CGSize{10, 10});
    RVGroupView::Views members;
    for (std::size_t i = 0; i < size; ++i)
        members.push_back(makeNested(size, depth - 1));
    return makeGroupView(
        members, {.orientation = depth % 2 == 0 ? Orientation::vertical : Orientation::horizontal, .spacing = 4});
}

// Groups of groups of groups, `size` members each.
std::shared_ptr<NSView> makeNestedGroups(std::size_t size)
{
    return makeNested(size, 3);
}

// Rows of a label and a field; all labels are as wide as the widest.
std::shared_ptr<NSView> makeForm(std::size_t size)
{
    RVGroupView::Views rows;
    RVGroupView::Views labels;
    for (std::size_t i = 0; i < size; ++i) {
        labels.push_back(make<RVSpacerView>(CGSize{40.0 + static_cast<double>(i * 37 % 60), 16}));
        rows.push_back(makeGroupView({labels.back(), make<RVSpacerView>(CGSize{100, 20})}, {.spacing = 8}));
    }
    auto form = makeGroupView(
        rows, {.orientation = Orientation::vertical, .spacing = 6, .alignment = RVGroupView::Edge::fillParent()});
    for (std::size_t i = 1; i < size; ++i)
        make<NSLayoutConstraint>(*labels[i], NSLayoutAttribute::width, NSLayoutRelation::equal, labels[0].get(),
                                 NSLayoutAttribute::width, 1.0, 0.0)
            ->setActive(true);
    return form;
}

// Labels that wrap, one below the other: their heights follow from the width.
std::shared_ptr<NSView> makeLabelColumn(std::size_t size)
{
    RVGroupView::Views labels;
    for (std::size_t i = 0; i < size; ++i) {
        auto label = makeLabel("A text that takes one line in a wide window and several in a narrow one, as "
                               "descriptions below a control do.");
        label->setLineBreakMode(NSLineBreakMode::wordWrapping);
        label->setContentCompressionResistancePriority(RVLayoutPriorityDefaultLow,
                                                       NSLayoutConstraintOrientation::horizontal);
        labels.push_back(label);
    }
    return makeGroupView(
        labels, {.orientation = Orientation::vertical, .spacing = 6, .alignment = RVGroupView::Edge::fillParent()});
}

// What is measured: how the content is made, two sizes of which `many` makes several times as many views as `few`,
// and the widths between which it is resized.
struct SampleKind {
    std::string name;
    MakeContent makeContent = nullptr;
    std::size_t few = 0;
    std::size_t many = 0;
    CGFloat narrow = 0;
    CGFloat wide = 0;
    bool heightFollowsWidth = false;
};

class Sample {
public:
    Sample(const SampleKind& kind, std::size_t size)
        : m_kind(kind), m_host(make<NSView>(CGRect(0, 0, kind.wide, 100))), m_content(kind.makeContent(size))
    {
        m_host->addSubview(m_content);
        autoPinEdgeToSuperviewEdge(*m_content, LayoutEdge::left);
        autoPinEdgeToSuperviewEdge(*m_content, LayoutEdge::top);
        autoPinEdgeToSuperviewEdge(*m_content, LayoutEdge::right);
        resize(kind.wide);
    }

    void resize(CGFloat width)
    {
        m_host->setFrameSize({width, 100});
        m_host->layoutSubtreeIfNeeded();
    }

    double nanosecondsOfResize()
    {
        check();
        CGFloat width = m_kind.wide;
        const double taken = nanoseconds(
            16, [] {}, [&] { resize(width = width == m_kind.wide ? m_kind.narrow : m_kind.wide); });
        check();
        return taken;
    }

    std::size_t views() const { return viewCount(*m_host); }

private:
    // A figure counts only for a layout that came out right.
    void check()
    {
        resize(m_kind.narrow);
        const CGSize narrow = m_content->frame().size;
        resize(m_kind.wide);
        const CGSize wide = m_content->frame().size;
        if (narrow.width != m_kind.narrow || wide.width != m_kind.wide)
            fatalError(m_kind.name + " is not as wide as its host");
        if ((narrow.height > wide.height) != m_kind.heightFollowsWidth)
            fatalError("the height of " + m_kind.name + " does not go with its width");
    }

    const SampleKind& m_kind;
    std::shared_ptr<NSView> m_host;
    std::shared_ptr<NSView> m_content;
};

void reportSample(const SampleKind& kind)
{
    std::unique_ptr<Sample> many;
    const double build = nanoseconds(
        5, [&] { many.reset(); }, [&] { many = std::make_unique<Sample>(kind, kind.many); });
    const double resize = many->nanosecondsOfResize();
    Sample few(kind, kind.few);
    const double ratio = static_cast<double>(many->views()) / static_cast<double>(few.views());
    const std::string prefix = "sample." + kind.name + ".";
    report(prefix + "views", static_cast<double>(many->views()));
    report(prefix + "build_ms", build / 1e6);
    report(prefix + "resize_ms", resize / 1e6);
    report(prefix + "resize_growth", std::log(resize / few.nanosecondsOfResize()) / std::log(ratio));
}

} // namespace

void benchmarkLayoutSamples()
{
    reportSample({.name = "nested_groups",
                  .makeContent = &makeNestedGroups,
                  .few = 5,
                  .many = 10,
                  .narrow = 2000,
                  .wide = 2300});
    reportSample({.name = "form", .makeContent = &makeForm, .few = 25, .many = 200, .narrow = 300, .wide = 600});
    reportSample({.name = "label_column",
                  .makeContent = &makeLabelColumn,
                  .few = 25,
                  .many = 200,
                  .narrow = 300,
                  .wide = 600,
                  .heightFollowsWidth = true});
}

} // namespace RVCore
