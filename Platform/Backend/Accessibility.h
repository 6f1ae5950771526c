#pragma once

#include <CoreGraphics/CGGeometry.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace RVCore {

// What something in a window is to somebody who cannot see it.
enum class AccessibleRole : std::uint8_t {
    none, // nothing: what is in it takes its place
    group,
    staticText,
    textField,
    button,
    checkBox,
    radioButton,
    image,
    progressIndicator,
    toolbar,
    popover
};

struct AccessibleState {
    bool isEnabled = true;
    bool isFocusable = false;
    bool isFocused = false;
    bool isCheckable = false;
    bool isChecked = false;
    bool isMixed = false;
    bool isEditable = false; // its text, by the user
    bool isPressable = false;

    bool operator==(const AccessibleState&) const = default;
};

enum class AccessibleChange : std::uint8_t { focus, name, value, state, children };

// One thing in a window as assistive technology sees it. It may outlive what it stands for, and then says nothing.
class AccessibleElement {
public:
    virtual ~AccessibleElement() = default;

    // Whether what it stands for is still in the window.
    virtual bool isValid() const = 0;
    // The address of what it stands for, by which two elements for one thing are known.
    virtual const void* identity() const = 0;
    virtual AccessibleRole role() const = 0;
    virtual std::string name() const = 0;
    virtual std::string value() const = 0; // a text; empty for none
    virtual AccessibleState state() const = 0;
    // In the window's content, points from its top left corner.
    virtual CGRect frame() const = 0;
    // Null for those that are directly in the window.
    virtual std::shared_ptr<AccessibleElement> parent() const = 0;
    virtual std::vector<std::shared_ptr<AccessibleElement>> children() const = 0;

    // As the user would; each returns whether it could be done.
    virtual bool press() = 0;
    virtual bool focus() = 0;
    virtual bool setValue(const std::string& text) = 0;
};

} // namespace RVCore
