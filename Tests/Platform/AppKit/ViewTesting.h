#pragma once

#include <AppKit/NSTextField.h>
#include <AppKit/NSView.h>

#include <functional>
#include <string>
#include <vector>

namespace RVCore {

using Attribute = NSLayoutAttribute;
using Relation = NSLayoutRelation;
using Orientation = NSLayoutConstraintOrientation;

class FlippedView : public NSView {
public:
    bool isFlipped() const override { return true; }
};

// Says what it is asked, counts, and does in its overrides what a test wants done.
class ProbeView : public NSView {
public:
    CGSize intrinsicContentSize() const override
    {
        ++intrinsicSizeCount;
        if (onIntrinsicSize)
            onIntrinsicSize();
        return intrinsicSize;
    }
    void layout() override
    {
        NSView::layout();
        ++layoutCount;
        if (log)
            log->push_back("layout " + identifier());
        if (onLayout)
            onLayout();
    }
    void updateConstraints() override
    {
        ++updateCount;
        if (log)
            log->push_back("update " + identifier());
        if (onUpdateConstraints)
            onUpdateConstraints();
    }
    void setNeedsLayout(bool needsLayout) override
    {
        NSView::setNeedsLayout(needsLayout);
        if (onSetNeedsLayout)
            onSetNeedsLayout(needsLayout);
    }
    bool acceptsFirstResponder() const override { return true; }
    void draw(Canvas& canvas, const CGRect& dirtyRect) override
    {
        if (onDraw)
            onDraw(canvas, dirtyRect);
    }

    mutable int intrinsicSizeCount = 0;
    int layoutCount = 0;
    int updateCount = 0;
    int resizeCount = 0;
    int superviewCount = 0;
    CGSize intrinsicSize{NSViewNoIntrinsicMetric, NSViewNoIntrinsicMetric};
    std::vector<std::string>* log = nullptr;
    std::function<void()> onLayout;
    std::function<void()> onUpdateConstraints;
    std::function<void()> onIntrinsicSize;
    std::function<void()> onResize;
    std::function<void(bool)> onSetNeedsLayout;
    std::function<void(Canvas&, const CGRect&)> onDraw;

protected:
    void frameSizeDidChange() override
    {
        ++resizeCount;
        if (onResize)
            onResize();
    }
    void didMoveToSuperview() override { ++superviewCount; }
};

// A subview that constraints place.
template <class T = NSView> std::shared_ptr<T> addTo(NSView& superview, const std::string& name = "")
{
    auto view = make<T>();
    view->setIdentifier(name);
    view->setTranslatesAutoresizingMaskIntoConstraints(false);
    superview.addSubview(view);
    return view;
}

// first.attribute relation multiplier × second.attribute + constant, active.
struct Law {
    double constant = 0;
    double multiplier = 1;
    NSLayoutPriority priority = 1000;
    Relation relation = Relation::equal;
};
inline std::shared_ptr<NSLayoutConstraint> hold(NSView& first, Attribute attribute, NSView& second,
                                                Attribute secondAttribute, const Law& law = {})
{
    auto constraint = make<NSLayoutConstraint>(first, attribute, law.relation, &second, secondAttribute,
                                               law.multiplier, law.constant);
    constraint->setPriority(law.priority);
    constraint->setActive(true);
    return constraint;
}
inline std::shared_ptr<NSLayoutConstraint> hold(NSView& view, Attribute extent, const Law& law)
{
    auto constraint =
        make<NSLayoutConstraint>(view, extent, law.relation, nullptr, Attribute::notAnAttribute, 1, law.constant);
    constraint->setPriority(law.priority);
    constraint->setActive(true);
    return constraint;
}
// Places the view from its superview's top left corner.
inline void place(NSView& view, const CGRect& rect)
{
    hold(view, Attribute::left, *view.superview(), Attribute::left, {.constant = rect.minX()});
    hold(view, Attribute::top, *view.superview(), Attribute::top, {.constant = rect.minY()});
    hold(view, Attribute::width, {.constant = rect.size.width});
    hold(view, Attribute::height, {.constant = rect.size.height});
}

// Text that is shown and nothing else.
inline std::shared_ptr<NSTextField> plainLabel(const std::string& text)
{
    auto label = make<NSTextField>();
    label->setStringValue(text);
    label->setBezeled(false);
    label->setEditable(false);
    label->setSelectable(false);
    label->setDrawsBackground(false);
    return label;
}

// What laying the tree out reports on standard error.
inline std::string reportOf(NSView& root)
{
    testing::internal::CaptureStderr();
    root.layoutSubtreeIfNeeded();
    return testing::internal::GetCapturedStderr();
}

// A superview that is as large as its frame says, flipped so that tests count from the top.
inline std::shared_ptr<FlippedView> makeHost(CGFloat width, CGFloat height)
{
    return make<FlippedView>(CGRect(0, 0, width, height));
}

} // namespace RVCore
