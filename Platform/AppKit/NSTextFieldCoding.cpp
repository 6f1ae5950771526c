#include <AppKit/NSColor.h>
#include <AppKit/NSFont.h>
#include <AppKit/NSTextField.h>
#include <Foundation/NSCoder.h>

namespace RVCore {

void NSTextField::encode(NSCoder& coder) const
{
    NSControl::encode(coder);
    coder.encode("text", m_text.text);
    coder.encode("placeholder", ValueConversion<std::optional<std::string>>::wrap(m_placeholder));
    coder.encode("fontFamily", m_text.font.family);
    coder.encode("fontSize", m_text.font.size);
    coder.encode("bold", m_text.font.bold);
    coder.encode("monospacedDigits", m_text.font.monospacedDigits);
    coder.encode("textColor", ValueConversion<std::optional<CGColor>>::wrap(
                                  m_hasOwnTextColor ? std::optional(m_text.color) : std::nullopt));
    coder.encode("alignment", static_cast<int>(m_text.alignment));
    coder.encode("lineBreakMode", static_cast<int>(m_text.lineBreakMode));
    coder.encode("maximumNumberOfLines", m_text.maximumNumberOfLines);
    coder.encode("preferredMaxLayoutWidth", m_preferredMaxLayoutWidth);
    coder.encode("editable", m_isEditable);
    coder.encode("selectable", m_isSelectable);
    coder.encode("bordered", m_isBordered);
    coder.encode("bezeled", m_isBezeled);
    coder.encode("drawsBackground", m_drawsBackground);
    coder.encode("backgroundColor", m_backgroundColor);
}

void NSTextField::init(NSCoder& coder)
{
    NSControl::init(coder);
    setStringValue(coder.decode<std::string>("text"));
    setPlaceholderString(coder.decode<std::optional<std::string>>("placeholder"));
    const FontDescription font{coder.decode<std::string>("fontFamily"), coder.decode<CGFloat>("fontSize"),
                               coder.decode<bool>("bold"), coder.decode<bool>("monospacedDigits")};
    setFont(make<NSFont>(font));
    if (const auto color = coder.decode<std::optional<CGColor>>("textColor"))
        setTextColor(make<NSColor>(*color));
    setAlignment(coder.decode<NSTextAlignment>("alignment"));
    setLineBreakMode(coder.decode<NSLineBreakMode>("lineBreakMode"));
    setMaximumNumberOfLines(coder.decode<int>("maximumNumberOfLines"));
    setPreferredMaxLayoutWidth(coder.decode<CGFloat>("preferredMaxLayoutWidth"));
    setEditable(coder.decode<bool>("editable"));
    setSelectable(coder.decode<bool>("selectable"));
    setBordered(coder.decode<bool>("bordered"));
    setBezeled(coder.decode<bool>("bezeled"));
    setDrawsBackground(coder.decode<bool>("drawsBackground"));
    setBackgroundColor(make<NSColor>(coder.decode<CGColor>("backgroundColor")));
}

} // namespace RVCore
