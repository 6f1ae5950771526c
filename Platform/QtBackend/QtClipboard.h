#pragma once

#include <Backend/Clipboard.h>

namespace RVCore {

// The desktop's clipboard.
class QtClipboard : public Clipboard {
public:
    std::string text() const override;
    void setText(const std::string& text) override;
};

} // namespace RVCore
