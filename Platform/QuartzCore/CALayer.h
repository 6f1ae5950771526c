#pragma once

#include <CoreGraphics/CGAffineTransform.h>
#include <CoreGraphics/CGColor.h>
#include <Foundation/NSObject.h>

#include <QuartzCore/Forward.h>

#include <functional>
#include <optional>

namespace RVCore {

// A rectangle that is placed, transformed and painted as a whole: the look behind a layer-backed view.
//
//      position ─────┐        The anchor point of the layer's bounds, (0, 0) to (1, 1), lies at `position`
//   ┌────────────────┼──┐     in the superlayer's coordinates; the affine transform acts about it.
//   │       (½, ½) → ●  │     A view's backing layer is anchored at its centre, and the view keeps position
//   └───────────────────┘     and bounds in step with its frame.
//
// Lengths are in points. A value that is not finite raises NSInvalidArgumentException and changes nothing.
class CALayer : public NSObject {
    RVCORE_CLASS(CALayer)

public:
    CGPoint position() const { return m_position; }
    virtual void setPosition(CGPoint position);
    CGRect bounds() const { return m_bounds; }
    void setBounds(const CGRect& bounds);
    CGPoint anchorPoint() const { return m_anchorPoint; } // default (0.5, 0.5)
    void setAnchorPoint(CGPoint anchorPoint);
    CGAffineTransform affineTransform() const { return m_affineTransform; }
    virtual void setAffineTransform(const CGAffineTransform& transform);
    // Layers of a larger value are painted above their siblings; equal ones in order.
    CGFloat zPosition() const { return m_zPosition; }
    void setZPosition(CGFloat zPosition);

    std::optional<CGColor> backgroundColor() const { return m_backgroundColor; }
    void setBackgroundColor(std::optional<CGColor> color);
    CGFloat cornerRadius() const { return m_cornerRadius; } // at least 0
    void setCornerRadius(CGFloat radius);
    CGFloat borderWidth() const { return m_borderWidth; } // inside the bounds; at least 0, 0 for none
    void setBorderWidth(CGFloat width);
    std::optional<CGColor> borderColor() const { return m_borderColor; } // black when absent
    void setBorderColor(std::optional<CGColor> color);
    // Whether what lies inside is cut along the (rounded) bounds. Default no.
    bool masksToBounds() const { return m_masksToBounds; }
    void setMasksToBounds(bool masks);

    // Called after every change that is visible.
    void setChangeHandler(std::function<void()> handler) { m_changed = std::move(handler); }

private:
    // Stores a new value and tells the handler; an equal one does nothing.
    template <class T> void store(T& field, const T& value)
    {
        if (field == value)
            return;
        field = value;
        if (m_changed)
            m_changed();
    }

    CGPoint m_position;
    CGRect m_bounds;
    CGPoint m_anchorPoint{0.5, 0.5};
    CGAffineTransform m_affineTransform;
    CGFloat m_zPosition = 0;
    CGFloat m_cornerRadius = 0;
    CGFloat m_borderWidth = 0;
    std::optional<CGColor> m_backgroundColor;
    std::optional<CGColor> m_borderColor;
    bool m_masksToBounds = false;
    std::function<void()> m_changed;
};

} // namespace RVCore
