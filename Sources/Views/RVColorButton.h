#pragma once

#include <AppKit/NSButton.h>
#include <AppKit/NSColor.h>
#include <AppKit/NSImageView.h>

namespace RVCore {

// A rounded swatch of a colour, meant to open a colour picker: what a click does is up to target and action. While
// the pointer is over it, it shows the application's image "colorPicker-arrow", if there is one.
//
//     ┌──────────────────────┐
//     │ colour           ▾   │  40 × 20; the arrow 12 × 12, 3 from the right, centred
//     └──────────────────────┘
//
// The swatch is the background of the button's layer; the button draws nothing itself, but for its focus ring.
class RVColorButton : public NSButton {
    RVCORE_CLASS(RVColorButton)

public:
    using NSButton::init;
    // The only one that works. No colour raises NSInvalidArgumentException.
    virtual void init(const std::shared_ptr<NSColor>& color);
    // Not offered; these stop the program.
    void init(const CGRect& frame) override;
    void init(NSCoder& coder) override;

    // The layer's background; absent for a clear swatch, whose border stays.
    std::shared_ptr<NSColor> color() const;
    virtual void setColor(const std::shared_ptr<NSColor>& color);

    CGSize intrinsicContentSize() const override; // 40 × 20, whatever the title or the image
    void mouseEntered(NSEvent& event) override;
    void mouseExited(NSEvent& event) override;

private:
    static constexpr CGFloat arrowOffset = -3.0;
    static constexpr CGSize arrowSize{12.0, 12.0};
    static constexpr CGSize intrinsicSize{40.0, 20.0};

    void setUpLayer(const CGColor& color);
    void addArrow();
    void trackPointer();
    struct PointerChange {
        void (*inherited)(RVColorButton& button, NSEvent& event); // the handler that runs first
        bool hidesArrow;
    };
    void pointerChanged(NSEvent& event, const PointerChange& change);

    std::shared_ptr<NSImageView> m_arrowView;
};

} // namespace RVCore
