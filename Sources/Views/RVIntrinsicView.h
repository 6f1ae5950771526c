#pragma once

#include <Views/RVSpacerView.h>

namespace RVCore {

// Gives a view that has no size of its own a place in a group: a spacer of a fixed size with the view inside it. The
// view is kept within the bounds but not stretched to fill them; when it is larger, it does not fit, and the size
// stays.
class RVIntrinsicView : public RVSpacerView {
    RVCORE_CLASS(RVIntrinsicView)

public:
    using RVSpacerView::init;
    virtual void init(const std::shared_ptr<NSView>& view, CGSize size);
    // Not offered; these stop the program.
    void init(CGSize size) override;
    void init(const CGRect& frame) override;
    void init(NSCoder& coder) override;

    // Never null: assigning null raises NSInvalidArgumentException. Assigning another view only replaces what is
    // returned here; the first one stays inside.
    const std::shared_ptr<NSView>& wrappedView() const { return m_wrappedView; }
    void setWrappedView(const std::shared_ptr<NSView>& view);

private:
    std::shared_ptr<NSView> m_wrappedView;
};

} // namespace RVCore
