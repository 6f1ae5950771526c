#pragma once

#include <CoreGraphics/TextDescription.h>
#include <Foundation/NSObject.h>

namespace RVCore {

// A font as an object; immutable.
class NSFont : public NSObject {
    RVCORE_CLASS(NSFont)

public:
    using NSObject::init;
    // Raises NSInvalidArgumentException unless the size is finite and above 0.
    void init(const FontDescription& font);
    void init(NSCoder& coder) override;
    void encode(NSCoder& coder) const override;

    const FontDescription& fontDescription() const { return m_font; }
    CGFloat pointSize() const { return m_font.size; }

    bool isEqual(const NSObject& other) const override;
    std::size_t hash() const override;

private:
    FontDescription m_font;
};

// The desktop's user-interface font; sizes in points, greater than 0, others raise NSInvalidArgumentException.
std::shared_ptr<NSFont> systemFontOfSize(CGFloat size);
std::shared_ptr<NSFont> boldSystemFontOfSize(CGFloat size);
// The same with digits of one width, for columns of figures.
std::shared_ptr<NSFont> monospacedDigitSystemFontOfSize(CGFloat size);

} // namespace RVCore
