#pragma once

#include <RVCore.h>

#include <memory>
#include <string>

namespace RVCore {

// A view with an intrinsic size, which notes what it is asked and told.
class SizedView : public NSView {
    RVCORE_CLASS(SizedView)

public:
    using NSView::init;
    void init(CGSize size)
    {
        NSView::init();
        m_size = size;
    }
    // Changes the size without telling anybody.
    void changeSizeSilently(CGSize size) { m_size = size; }

    CGSize intrinsicContentSize() const override
    {
        ++sizeQuestions;
        return m_size;
    }
    void layout() override
    {
        ++layouts;
        NSView::layout();
    }

    mutable int sizeQuestions = 0;
    int layouts = 0;

private:
    CGSize m_size{-1, -1};
};

// A group that counts what happens to it. Every rebuild of its constraints asks for a constraint update once.
class CountingGroupView : public RVGroupView {
    RVCORE_CLASS(CountingGroupView)

public:
    using RVGroupView::init;
    void setNeedsUpdateConstraints(bool needsUpdate) override
    {
        rebuilds += needsUpdate ? 1 : 0;
        RVGroupView::setNeedsUpdateConstraints(needsUpdate);
    }
    void invalidateIntrinsicContentSize() override
    {
        ++invalidations;
        RVGroupView::invalidateIntrinsicContentSize();
    }
    void layout() override
    {
        ++layouts;
        RVGroupView::layout();
    }
    void updateConstraints() override
    {
        ++constraintUpdates;
        RVGroupView::updateConstraints();
    }
    void resetCounts() { rebuilds = invalidations = layouts = constraintUpdates = 0; }

    int rebuilds = 0;
    int invalidations = 0;
    int layouts = 0;
    int constraintUpdates = 0;
};

inline std::shared_ptr<SizedView> sized(CGFloat width, CGFloat height, const std::string& name = "")
{
    auto view = make<SizedView>(CGSize{width, height});
    view->setIdentifier(name);
    return view;
}

// A flipped view of the size with the group filling it: what a layout test needs around a group.
inline std::shared_ptr<NSView> hostOf(const std::shared_ptr<NSView>& group, CGSize size)
{
    auto host = make<RVBaseView>(CGRect({0, 0}, size));
    host->setIdentifier("host");
    host->addSubview(group);
    autoPinEdgesToSuperviewEdges(*group);
    return host;
}

// The frames of the views, a line each: "a (4, 40) 30 × 20".
inline std::string frames(const RVGroupView::Views& views)
{
    std::string text;
    for (const auto& view : views)
        text += view->identifier() + " " + describe(view->frame()) + "\n";
    return text;
}

// The group's spacers, hidden ones included, in the order of its subviews.
inline std::vector<std::shared_ptr<RVSpacerView>> spacersOf(const RVGroupView& group)
{
    std::vector<std::shared_ptr<RVSpacerView>> result;
    for (const auto& subview : group.subviews()) {
        if (&subview->classObject() == &RVSpacerView::staticClass())
            result.push_back(std::static_pointer_cast<RVSpacerView>(subview));
    }
    return result;
}

// Names the spacers s0, s1, …
inline void nameSpacers(const RVGroupView& group)
{
    int number = 0;
    for (const auto& spacer : spacersOf(group))
        spacer->setIdentifier(std::string("s").append(std::to_string(number++)));
}

} // namespace RVCore
