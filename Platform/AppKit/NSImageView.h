#pragma once

#include <AppKit/NSControl.h>
#include <AppKit/NSImage.h>

namespace RVCore {

// Where a picture lies in its room when it does not fill it.
enum class NSImageAlignment : int {
    center = 0,
    top = 1,
    topLeft = 2,
    topRight = 3,
    left = 4,
    bottom = 5,
    bottomLeft = 6,
    bottomRight = 7,
    right = 8,
};

// Shows a picture; its intrinsic size is the picture's, none while there is none. Takes no keys and no clicks: they
// go on to the superview. The picture itself is not archived.
class NSImageView : public NSControl {
    RVCORE_CLASS(NSImageView)

public:
    using NSControl::init;
    void init(NSCoder& coder) override;
    void encode(NSCoder& coder) const override;

    const std::shared_ptr<NSImage>& image() const { return m_image; } // default null: nothing is shown
    virtual void setImage(const std::shared_ptr<NSImage>& image);
    // Values that the enumerations do not have raise NSInvalidArgumentException.
    NSImageAlignment imageAlignment() const { return m_alignment; } // default center
    virtual void setImageAlignment(NSImageAlignment alignment);
    NSImageScaling imageScaling() const { return m_scaling; } // default proportionallyDown
    virtual void setImageScaling(NSImageScaling scaling);

    CGSize intrinsicContentSize() const override;
    bool acceptsFirstResponder() const override { return false; }
    // A picture says something only where it is given a label.
    AccessibleRole accessibilityRole() const override;
    void draw(Canvas& canvas, const CGRect& dirtyRect) override;

private:
    std::shared_ptr<NSImage> m_image;
    NSImageAlignment m_alignment = NSImageAlignment::center;
    NSImageScaling m_scaling = NSImageScaling::proportionallyDown;
};

} // namespace RVCore
