#pragma once

#include <RVCore.h>

namespace Contacts {

// The program's pictures, drawn in points so that they are sharp at every scale, light on dark and dark on light.
enum class Icon { add, remove, save, preferences, help };

std::shared_ptr<RVCore::NSImage> makeIcon(Icon icon);

// Under the name by which the colour button looks for its arrow.
void registerColorButtonArrow();

} // namespace Contacts
