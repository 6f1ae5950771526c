#pragma once

#include <ConstraintLibrary/Forward.h>
#include <Views/Forward.h>
#include <Views/RVBaseView.h>

#include <functional>
#include <optional>
#include <unordered_map>

namespace RVCore {

struct ConstraintCreation;

// Stacks its members along one axis, with spacing between them and padding around them:
//
//     ┌───────────────────────────────────────────┐   s   spacers, one more than members; their sizes are the
//     │    ┌───────┐                   ┌─────────┐    │       padding at both ends and the spacing between
//     │ s0 │  m0   │ s1 ┌─────┐ s2 │   m2    │ s3 │   m   members, aligned across the axis with the group or
//     │    └───────┘    │ m1  │    └─────────┘    │       with a view of their own choice
//     └───────────────────────────────────────────┘
//
// It computes no frames: it installs constraints at priorities of 749 and below and lets layout do the rest, so
// any required constraint from outside wins. The element that the resize policy names takes extra length.
//
// Every setter does its work on every assignment, also of an equal value, and before it returns. Setting members
// rebuilds all; alignment, orientation, policy, offsets and visibility rebuild the constraints; spacing and padding
// only resize the spacers, so padding across the axis takes effect with the next rebuild of the constraints, and the
// group's own intrinsic size is looked at again then, or when anybody asks for layout.
//
// Numbers that are not finite or above 1e15 and views that are not there raise NSInvalidArgumentException and change
// nothing. Main thread only.
class RVGroupView : public RVBaseView {
    RVCORE_CLASS(RVGroupView)

public:
    using Views = std::vector<std::shared_ptr<NSView>>;
    template <class Entry>
    using PerView = std::unordered_map<std::shared_ptr<NSView>, Entry, ObjectHash, ObjectEqual>;

    enum class Orientation : std::uint8_t { horizontal, vertical };
    // Which element takes extra length: the last or first visible member, the first or last gap.
    enum class ResizePolicy : std::uint8_t { trailingView, leadingView, leadingEdge, trailingEdge };

    // Where a member goes across the axis, and the view that it is aligned with: the group when absent. A target is
    // held strongly. It must be in the same view tree as the group by the time constraints are built; otherwise that
    // raises NSInvalidArgumentException, and the group has no layout constraints until they are built again.
    class Edge {
    public:
        enum class Case : std::uint8_t { center, leading, trailing, fill };

        static Edge center(std::shared_ptr<NSView> view) { return {Case::center, std::move(view)}; }
        static Edge leading(std::shared_ptr<NSView> view) { return {Case::leading, std::move(view)}; }
        static Edge trailing(std::shared_ptr<NSView> view) { return {Case::trailing, std::move(view)}; }
        static Edge fill(std::shared_ptr<NSView> view) { return {Case::fill, std::move(view)}; }
        static Edge centerParent() { return center(nullptr); }
        static Edge leadingParent() { return leading(nullptr); }
        static Edge trailingParent() { return trailing(nullptr); }
        static Edge fillParent() { return fill(nullptr); }

        Case edgeCase() const { return m_case; }
        const std::shared_ptr<NSView>& view() const { return m_view; }

    private:
        Edge(Case edgeCase, std::shared_ptr<NSView> view) : m_view(std::move(view)), m_case(edgeCase) {}

        std::shared_ptr<NSView> m_view;
        Case m_case;
    };

    // A displacement to the right and downward, whatever the orientation.
    struct Offset {
        CGFloat x = 0;
        CGFloat y = 0;
    };

    struct Arrangement {
        Orientation orientation = Orientation::horizontal;
        CGFloat spacing = 0;
        Edge alignment = Edge::centerParent();
        ResizePolicy resizePolicy = ResizePolicy::trailingView;
    };

    // A group without members in the default arrangement.
    void init() override;
    virtual void init(const Views& views, const Arrangement& arrangement);
    // Not offered; these stop the program.
    void init(const CGRect& frame) override;
    void init(NSCoder& coder) override;

    // The members in order, hidden ones included. A member without an intrinsic size but with a fitting size is
    // replaced by an RVIntrinsicView around it. One without either stays, after a warning on standard output. A
    // member must not be the group or a view around it.
    const Views& views() const { return m_views; }
    void setViews(const Views& views);
    CGFloat spacing() const { return m_spacing; }
    void setSpacing(CGFloat spacing);
    const EdgeInsets& padding() const { return m_padding; }
    void setPadding(const EdgeInsets& padding);
    // Of members without one of their own.
    const Edge& alignment() const { return m_alignment; }
    void setAlignment(const Edge& alignment);
    Orientation orientation() const { return m_orientation; }
    void setOrientation(Orientation orientation);
    Orientation oppositeOrientation() const;
    ResizePolicy resizePolicy() const { return m_resizePolicy; }
    void setResizePolicy(ResizePolicy policy);

    // Replace all alignments, or offsets, of single members by what the block returns. Entries of views that are no
    // members are kept and have no effect.
    void alignViews(const std::function<PerView<Edge>()>& block);
    void offsetViews(const std::function<PerView<Offset>()>& block);

    // Hides a member and closes its gap, or shows it again at full opacity. Hiding a hidden member and showing a
    // visible one do nothing; hiding any other view stops the program.
    void setVisibility(const std::shared_ptr<NSView>& view, bool visible);

    // Not one that is hidden here.
    bool letsPointerFind(const NSView& subview) const override;
    // The members in their order; what else the host has added follows.
    std::vector<NSView*> subviewsInKeyOrder() const override;

    // Looks at the intrinsic size again before the request goes on.
    void setNeedsLayout(bool needsLayout) override;

    // Along the axis, the sum of members, spacing, padding and offsets; across it, the largest member with padding
    // and the sum of the offsets.
    CGSize intrinsicContentSize() const override;

private:
    struct HiddenView {
        std::shared_ptr<NSView> view;
        std::shared_ptr<RVSpacerView> spacer; // left out together with it
    };
    struct DimensionsConstraints {
        std::shared_ptr<NSLayoutConstraint> width;
        std::shared_ptr<NSLayoutConstraint> height;
    };
    using Spacers = std::vector<std::shared_ptr<RVSpacerView>>;
    struct Elements; // what takes part in layout

    template <class Entry> void replaceEntries(PerView<Entry>& entries, PerView<Entry> replacement);
    void requireViews(std::string_view operation, const Views& views) const;
    void requireTargets(std::string_view operation, const Edge& alignment, const PerView<Edge>& viewsAlignment);

    Views visibleViews() const;
    Elements elements() const;
    const NSView* expandingView(const Elements& elements) const;
    const Edge& alignmentForView(const std::shared_ptr<NSView>& view) const;
    CGFloat offsetForView(const std::shared_ptr<NSView>& view, Orientation orientation) const;
    float huggingPriorityForView(const NSView& view, const NSView* expandingView) const;

    void configureViews(const Elements& oldElements);
    void removeElements(const Elements& oldElements);
    void wrapViews();
    void warnOfViewsWithoutSize() const;
    void createSpacers();
    void configureSpacers();
    void configureSpacers(const Elements& elements);
    void configureConstraints();
    void createLayoutConstraints(const Elements& elements);
    void createLayoutConstraints(const ConstraintCreation& creation, const std::function<void()>& closure);
    void setHuggingPriorities(const Elements& elements);
    void alignElement(NSView& element, const Edge& edge, CGFloat offset);

    CGFloat spacingForView(const NSView& view, const Views& visibleViews) const;
    CGFloat addSpacing(CGFloat metric, Orientation orientation, const Views& visibleViews) const;
    void notifyIntrinsicContentSizeChanged();

    Views m_views;
    CGFloat m_spacing = 0;
    EdgeInsets m_padding;
    Edge m_alignment = Edge::centerParent();
    Orientation m_orientation = Orientation::horizontal;
    ResizePolicy m_resizePolicy = ResizePolicy::trailingView;
    PerView<Edge> m_viewsAlignment;
    PerView<Offset> m_viewsOffsets;
    std::vector<HiddenView> m_hiddenViews; // in the order in which they were hidden
    Spacers m_spacers;                     // spacer i stands before member i, the last one after the last member
    LayoutConstraints m_layoutConstraints;
    LayoutConstraints m_viewsIntrinsicConstraints; // the members' smallest sizes
    std::optional<DimensionsConstraints> m_dimensionsConstraints;
    CGSize m_lastIntrinsicSize{-1, -1};
};

// A group of views, in the default arrangement or in another:
//     makeGroupView({title, message}, {.orientation = RVGroupView::Orientation::vertical, .spacing = 8})
template <std::derived_from<RVGroupView> T = RVGroupView>
std::shared_ptr<T> makeGroupView(const RVGroupView::Views& views, const RVGroupView::Arrangement& arrangement = {})
{
    return make<T>(views, arrangement);
}

} // namespace RVCore
