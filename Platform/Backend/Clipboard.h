#pragma once

#include <string>

namespace RVCore {

// The text that programs exchange by cutting, copying and pasting.
class Clipboard {
public:
    virtual ~Clipboard() = default;
    // UTF-8; empty when the clipboard holds no text.
    virtual std::string text() const = 0;
    // Bytes that are not UTF-8 become U+FFFD.
    virtual void setText(const std::string& text) = 0;
};

} // namespace RVCore
