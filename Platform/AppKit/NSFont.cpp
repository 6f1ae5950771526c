#include <AppKit/NSFont.h>
#include <Foundation/NSCoder.h>
#include <Foundation/NSException.h>

namespace RVCore {

namespace {

void requireFontSize(std::string_view operation, CGFloat size)
{
    requireFinite(operation, "size", size);
    if (size <= 0)
        raiseInvalidArgument(operation, "size must be above 0, got " + numberText(size));
}

std::shared_ptr<NSFont> makeSystemFont(std::string_view operation, CGFloat size, bool bold, bool monospacedDigits)
{
    requireFontSize(operation, size);
    return make<NSFont>(FontDescription{{}, size, bold, monospacedDigits});
}

} // namespace

Class& NSFont::staticClass()
{
    static Class& theClass = defineClass<NSFont>("NSFont", NSObject::staticClass(), [](auto& publish) {
        publish.readOnlyProperty("pointSize", &NSFont::pointSize);
        publish.classMethod("systemFontOfSize:", [](const Class&, CGFloat size) { return systemFontOfSize(size); });
        publish.classMethod("boldSystemFontOfSize:",
                            [](const Class&, CGFloat size) { return boldSystemFontOfSize(size); });
        publish.classMethod("monospacedDigitSystemFontOfSize:",
                            [](const Class&, CGFloat size) { return monospacedDigitSystemFontOfSize(size); });
    });
    return theClass;
}

void NSFont::init(const FontDescription& font)
{
    requireFontSize("NSFont.init", font.size);
    m_font = font;
}

void NSFont::init(NSCoder& coder)
{
    init(FontDescription{coder.decode<std::string>("family"), coder.decode<CGFloat>("size"),
                         coder.decode<bool>("bold"), coder.decode<bool>("monospacedDigits")});
}

void NSFont::encode(NSCoder& coder) const
{
    coder.encode("family", m_font.family);
    coder.encode("size", m_font.size);
    coder.encode("bold", m_font.bold);
    coder.encode("monospacedDigits", m_font.monospacedDigits);
}

bool NSFont::isEqual(const NSObject& other) const
{
    const auto* font = dynamic_cast<const NSFont*>(&other);
    return font && font->m_font == m_font;
}

std::size_t NSFont::hash() const
{
    return std::hash<std::string>()(m_font.family) * 31 + std::hash<double>()(m_font.size);
}

std::shared_ptr<NSFont> systemFontOfSize(CGFloat size)
{
    return makeSystemFont("systemFontOfSize", size, false, false);
}

std::shared_ptr<NSFont> boldSystemFontOfSize(CGFloat size)
{
    return makeSystemFont("boldSystemFontOfSize", size, true, false);
}

std::shared_ptr<NSFont> monospacedDigitSystemFontOfSize(CGFloat size)
{
    return makeSystemFont("monospacedDigitSystemFontOfSize", size, false, true);
}

} // namespace RVCore
