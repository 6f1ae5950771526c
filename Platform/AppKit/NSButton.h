#pragma once

#include <AppKit/ButtonLayout.h>
#include <AppKit/NSControl.h>
#include <AppKit/NSEvent.h>
#include <CoreGraphics/TextDescription.h>

namespace RVCore {

class NSFont;
class NSImage;

// How a button shows that it is being pressed, and whether a click changes its state.
enum class NSButtonType : int {
    momentaryLight = 0,  // lights up
    pushOnPushOff = 1,   // stays down while it is on
    toggle = 2,          // shows the alternate title and image while it is on
    switchButton = 3,    // a check box
    radio = 4,           // one of several, see NSButton
    momentaryChange = 5, // shows the alternate title and image while it is pressed
    onOff = 6,           // stays lit while it is on
    momentaryPushIn = 7, // goes down
};

enum class NSBezelStyle : int {
    rounded = 1,       // the desktop's push button, with its smallest width
    regularSquare = 2, // the same, only as wide as its content asks
    toolbar = 11,      // flat until the pointer is over it, as in a toolbar
};

enum class NSControlStateValue : int { mixed = -1, off = 0, on = 1 };

// A push button, check box, radio button or picture to click on; how it looks is the desktop's style, how large it is
// comes from that and from its title and image. The action is sent when the mouse button is released inside, or on
// Space or Return while it has the keyboard focus, or on its key equivalent; the state has changed by then.
//
// Radio buttons in one superview with one action (or none) exclude each other: at most one is on. Arrow keys move
// among them and choose.
//
// Setters ignore what is set already. Values that an enumeration does not have raise NSInvalidArgumentException.
// Target, images and closures are not archived, all else is.
class NSButton : public NSControl {
    RVCORE_CLASS(NSButton)

public:
    using NSControl::init;
    void init(const CGRect& frame) override;
    void init(NSCoder& coder) override;
    void encode(NSCoder& coder) const override;

    NSButtonType buttonType() const { return m_type; } // default momentaryPushIn
    // A check box or radio button has its sign for a bezel: these types also set no border and the content at the
    // left. What the type has no use for (a mixed state, being on) stays.
    virtual void setButtonType(NSButtonType type);
    bool isBordered() const { return m_isBordered; } // default yes
    virtual void setBordered(bool bordered);
    NSBezelStyle bezelStyle() const { return m_bezelStyle; } // default rounded; of bordered push buttons
    virtual void setBezelStyle(NSBezelStyle style);

    // One line, an ellipsis where there is no room. Default empty.
    const std::string& title() const { return m_title; }
    virtual void setTitle(const std::string& title);
    const std::string& alternateTitle() const { return m_alternateTitle; } // default empty: as the title
    virtual void setAlternateTitle(const std::string& title);
    std::shared_ptr<NSFont> font() const; // default: the system font, 13 points
    virtual void setFont(const std::shared_ptr<NSFont>& font);
    const std::shared_ptr<NSImage>& image() const { return m_image; } // default null
    // An image given to a button without room for one (noImage) is put left of the title, or alone without a title.
    virtual void setImage(const std::shared_ptr<NSImage>& image);
    const std::shared_ptr<NSImage>& alternateImage() const { return m_alternateImage; } // default null: as the image
    virtual void setAlternateImage(const std::shared_ptr<NSImage>& image);
    NSCellImagePosition imagePosition() const { return m_imagePosition; } // default noImage
    virtual void setImagePosition(NSCellImagePosition position);
    NSImageScaling imageScaling() const { return m_imageScaling; } // default proportionallyDown
    virtual void setImageScaling(NSImageScaling scaling);

    NSControlStateValue state() const { return m_state; } // default off
    // Mixed where that is not allowed counts as on. Sends no action.
    virtual void setState(NSControlStateValue state);
    bool allowsMixedState() const { return m_allowsMixedState; } // default no
    virtual void setAllowsMixedState(bool allows);               // without it, mixed becomes on
    // The state after a click: off after on; after off, mixed where that is allowed, otherwise on; on after mixed.
    // Of a radio button always on.
    NSControlStateValue nextState() const;

    // The character whose key clicks the button, wherever the keyboard focus is, empty (the default) for none. An
    // upper-case letter takes Shift. Return makes it the window's default button, and shows so.
    const std::string& keyEquivalent() const { return m_keyEquivalent; }
    virtual void setKeyEquivalent(const std::string& key);
    NSEventModifierFlags keyEquivalentModifierMask() const { return m_keyEquivalentMask; } // default none
    virtual void setKeyEquivalentModifierMask(NSEventModifierFlags mask);

    // Whether it looks pressed.
    bool isHighlighted() const { return m_isHighlighted; }
    virtual void setHighlighted(bool highlighted);
    // Changes the state and sends the action, as a click does; nothing while it is not enabled.
    void performClick();
    void setEnabled(bool enabled) override;

    AccessibleRole accessibilityRole() const override;
    std::string accessibilityLabel() const override; // the title unless another one was set
    AccessibleState accessibilityState() const override;
    bool accessibilityPerformPress() override;

    CGSize intrinsicContentSize() const override;
    void draw(Canvas& canvas, const CGRect& dirtyRect) override;
    void mouseDown(NSEvent& event) override;
    void mouseDragged(NSEvent& event) override;
    void mouseUp(NSEvent& event) override;
    void mouseEntered(NSEvent& event) override;
    void mouseExited(NSEvent& event) override;
    void mouseCaptureLost() override;
    void keyDown(NSEvent& event) override;
    bool performKeyEquivalent(NSEvent& event) override;

protected:
    // Or at the left edge. Default: centred in push buttons.
    virtual bool isContentCentered() const { return isPushButton(); }

private:
    bool isPushButton() const;
    ControlKind controlKind() const;
    bool hasLook() const { return m_isBordered || !isPushButton(); }
    bool changesState() const;
    bool showsAlternate() const;
    const std::string& shownTitle() const;
    const std::shared_ptr<NSImage>& shownImage() const;
    TextDescription titleDescription() const;
    ButtonContent content() const;
    ControlDescription look() const;
    void contentChanged();
    void updateHoverArea();
    void setHovered(bool hovered);
    bool isInside(const NSEvent& event);
    bool isDefaultButton() const;
    bool matchesKeyEquivalent(const NSEvent& event) const;
    std::vector<std::shared_ptr<NSButton>> radioGroup() const;
    void chooseNeighbor(int step);
    void drawLook(Canvas& canvas, const ControlDescription& description);
    void drawContent(Canvas& canvas, const ControlDescription& description, const ButtonLayout& layout);
    void drawFocusRing(Canvas& canvas, const ControlDescription& description, const ButtonLayout& layout);

    std::string m_title;
    std::string m_alternateTitle;
    std::string m_keyEquivalent;
    FontDescription m_font;
    std::shared_ptr<NSImage> m_image;
    std::shared_ptr<NSImage> m_alternateImage;
    std::shared_ptr<NSTrackingArea> m_hoverArea; // null where the look does not change under the pointer
    NSButtonType m_type = NSButtonType::momentaryPushIn;
    NSBezelStyle m_bezelStyle = NSBezelStyle::rounded;
    NSCellImagePosition m_imagePosition = NSCellImagePosition::noImage;
    NSImageScaling m_imageScaling = NSImageScaling::proportionallyDown;
    NSControlStateValue m_state = NSControlStateValue::off;
    NSEventModifierFlags m_keyEquivalentMask = NSEventModifierFlags::none;
    bool m_isBordered = true;
    bool m_allowsMixedState = false;
    bool m_isHighlighted = false;
    bool m_isHovered = false;
    bool m_isTracking = false; // from the press to the release
};

} // namespace RVCore
