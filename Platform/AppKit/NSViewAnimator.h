#pragma once

#include <AppKit/Forward.h>
#include <CoreGraphics/CGGeometry.h>
#include <Foundation/NSObject.h>

#include <string_view>

namespace RVCore {

// Stands for a view while its properties are set in a moving way: `view->animator()->setAlphaValue(0)`. The view has
// the value at once; what is seen goes there from where it stands, over the duration and along the curve of the
// current NSAnimationContext, whose group ends no sooner. A view that is not layer-backed becomes so. What raises
// changes nothing.
class NSViewAnimator : public NSObject {
    RVCORE_CLASS(NSViewAnimator)

public:
    using NSObject::init;
    void init(const std::shared_ptr<NSView>& view);

    // Of the view itself.
    CGFloat alphaValue() const;
    CGRect frame() const;

    void setAlphaValue(CGFloat alpha);
    void setFrame(const CGRect& frame);
    void setFrameOrigin(CGPoint origin);
    void setFrameSize(CGSize size);
    // Any property of the view, "alphaValue", or of its filters, "backgroundFilters.blur.inputRadius". What cannot
    // move is there at once. A path that leads nowhere raises NSUnknownKeyException.
    void setValue(const Value& value, std::string_view keyPath);

private:
    NSView& view() const;
    template <class Change> void animate(const Change& change);

    std::shared_ptr<NSView> m_view;
};

} // namespace RVCore
