#pragma once

#include <CoreGraphics/CGColor.h>
#include <Foundation/NSObject.h>

namespace RVCore {

// A colour as an object; immutable.
class NSColor : public NSObject {
    RVCORE_CLASS(NSColor)

public:
    using NSObject::init;
    // Components from 0 to 1; others raise NSInvalidArgumentException.
    void init(const CGColor& color);

    const CGColor& cgColor() const { return m_color; }

    bool isEqual(const NSObject& other) const override;
    std::size_t hash() const override;
    std::string description() const override; // "<NSColor: rgba(…)>"

private:
    CGColor m_color;
};

// Components from 0 to 1; others raise NSInvalidArgumentException.
std::shared_ptr<NSColor> makeColor(double red, double green, double blue, double alpha = 1);
std::shared_ptr<NSColor> colorWithCGColor(const CGColor& color);

std::shared_ptr<NSColor> whiteColor();
std::shared_ptr<NSColor> grayColor();     // half way between black and white
std::shared_ptr<NSColor> darkGrayColor(); // a third of the way from black to white
std::shared_ptr<NSColor> blackColor();
std::shared_ptr<NSColor> clearColor(); // black of no opacity

} // namespace RVCore
