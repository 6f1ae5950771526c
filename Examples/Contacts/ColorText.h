#pragma once

#include <CoreGraphics/CGColor.h>

#include <string>

namespace Contacts {

// Between "#rrggbb" and a colour. The text must be of this form; the colour's opacity is left out.
RVCore::CGColor colorFromText(const std::string& text);
std::string textFromColor(const RVCore::CGColor& color);

} // namespace Contacts
