#pragma once

#include <AppKit/AppKitKey.h>
#include <AppKit/TargetAction.h>
#include <Foundation/NSObject.h>

#include <functional>
#include <optional>
#include <string>

namespace RVCore {

// Items of these identifiers are gaps: one takes the room that the others leave, shared with others of its kind, the
// other is as wide as a picture.
inline constexpr const char* NSToolbarFlexibleSpaceItemIdentifier = "NSToolbarFlexibleSpaceItem";
inline constexpr const char* NSToolbarSpaceItemIdentifier = "NSToolbarSpaceItem";

// One thing in a toolbar to press: a picture, a label, or both side by side. Pressed, it sends its action, the
// selector of a message that takes the item or nothing, to its target; without a target, to the first object that
// answers on the responder chain of the toolbar's window. The target is not held; once it has died, the action goes
// nowhere.
//
// An item is enabled or not as it was last told, by `setEnabled` or by itself in `validate`; the program says when
// that is. Setters ignore what is set already. Main thread only.
class NSToolbarItem : public NSObject {
    RVCORE_CLASS(NSToolbarItem)

public:
    void init() override { init(std::string()); }
    using NSObject::init;
    virtual void init(const std::string& itemIdentifier);

    // The program's own name for it, or that of a gap. Default empty.
    const std::string& itemIdentifier() const { return m_itemIdentifier; }
    bool isFlexibleSpace() const { return m_itemIdentifier == NSToolbarFlexibleSpaceItemIdentifier; }
    bool isSpace() const { return isFlexibleSpace() || m_itemIdentifier == NSToolbarSpaceItemIdentifier; }

    // One line, an ellipsis where it is longer than a toolbar shows. Default empty.
    const std::string& label() const { return m_label; }
    virtual void setLabel(const std::string& label);
    // A larger one is made smaller. Default null.
    const std::shared_ptr<NSImage>& image() const { return m_image; }
    virtual void setImage(const std::shared_ptr<NSImage>& image);

    ObjectRef target() const { return m_message.target(); } // null when there is none, or once it has died
    virtual void setTarget(const ObjectRef& target);
    const std::optional<Selector>& action() const { return m_message.action(); } // default absent
    // One that takes more than the sender raises NSInvalidArgumentException.
    virtual void setAction(const std::optional<Selector>& action);
    // Makes a target of the closure, which the item holds until it gets another target; an empty one leaves the item
    // without target and action.
    void setOnAction(std::function<void()> closure);
    // Sends the action. Returns whether anybody got it; raises NSInvalidArgumentException when there is a target that
    // does not answer it.
    bool sendAction();

    bool isEnabled() const { return m_isEnabled; } // default yes
    virtual void setEnabled(bool enabled);
    // Enables the item if it has an action and somebody answers that: its target, or without one somebody on the
    // responder chain. Otherwise disables it.
    virtual void validate();

    NSToolbar* toolbar() const { return m_toolbar; } // that it is in; null for none

    // For AppKit's own classes.
    void setToolbar(NSToolbar* toolbar, AppKitKey) { m_toolbar = toolbar; }

private:
    ObjectRef receiver() const;
    void changed();

    std::string m_itemIdentifier;
    std::string m_label;
    std::shared_ptr<NSImage> m_image;
    TargetAction m_message;
    NSToolbar* m_toolbar = nullptr;
    bool m_isEnabled = true;
};

} // namespace RVCore
