#pragma once

#include <Backend/Clipboard.h>
#include <Foundation/Utf8.h>

namespace RVCore {

// A clipboard that belongs to one backend only.
class HeadlessClipboard : public Clipboard {
public:
    std::string text() const override { return m_text; }
    void setText(const std::string& text) override { m_text = wellFormedText(text); }

private:
    std::string m_text;
};

} // namespace RVCore
