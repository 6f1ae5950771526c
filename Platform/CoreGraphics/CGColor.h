#pragma once

#include <Foundation/Value.h>

namespace RVCore {

// A colour in the device's RGB space; components from 0 to 1, not premultiplied.
struct CGColor {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;

    bool operator==(const CGColor&) const = default;
};

template <> struct ValueBoxTraits<CGColor> {
    static constexpr std::string_view name = "CGColor";
    static std::string describe(const CGColor& color); // "rgba(0.5, 0, 1, 1)"
};

} // namespace RVCore
