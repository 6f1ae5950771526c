#pragma once

#include <AppKit/Forward.h>
#include <CoreGraphics/CGGeometry.h>
#include <Foundation/NSObject.h>

#include <cstdint>

namespace RVCore {

// What a tracking area tells its owner, and when. At least one of the first three and exactly one of the four
// `active` ones is given.
enum class NSTrackingAreaOptions : std::uint32_t {
    none = 0,
    mouseEnteredAndExited = 0x01,
    mouseMoved = 0x02,
    cursorUpdate = 0x04,
    activeWhenFirstResponder = 0x10,
    activeInKeyWindow = 0x20,
    activeInActiveApp = 0x40,
    activeAlways = 0x80,
    inVisibleRect = 0x200,         // the view's visible part, whatever the rectangle says
    enabledDuringMouseDrag = 0x400 // otherwise nothing is told while a button is down
};
constexpr NSTrackingAreaOptions operator|(NSTrackingAreaOptions left, NSTrackingAreaOptions right)
{
    return static_cast<NSTrackingAreaOptions>(static_cast<std::uint32_t>(left) | static_cast<std::uint32_t>(right));
}
constexpr bool contains(NSTrackingAreaOptions options, NSTrackingAreaOptions option)
{
    return (static_cast<std::uint32_t>(options) & static_cast<std::uint32_t>(option)) ==
           static_cast<std::uint32_t>(option);
}

// A part of a view that tells its owner when the pointer enters it, moves in it and leaves it, by the messages
// mouseEntered:, mouseMoved:, mouseExited: and cursorUpdate:. It counts only where the view can be seen.
class NSTrackingArea : public NSObject {
    RVCORE_CLASS(NSTrackingArea)

public:
    using NSObject::init;
    // The rectangle is in the coordinates of the view that the area is added to. Options that are not known or say
    // too little or too much raise NSInvalidArgumentException.
    void init(const CGRect& rect, NSTrackingAreaOptions options, NSResponder& owner);

    const CGRect& rect() const { return m_rect; }
    NSTrackingAreaOptions options() const { return m_options; }
    std::shared_ptr<NSResponder> owner() const { return m_owner.lock(); } // null once it has died

private:
    CGRect m_rect;
    NSTrackingAreaOptions m_options = NSTrackingAreaOptions::none;
    std::weak_ptr<NSResponder> m_owner;
};

} // namespace RVCore
