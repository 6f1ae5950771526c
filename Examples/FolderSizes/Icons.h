#pragma once

#include <RVCore.h>

namespace FolderSizes {

// The toolbar's pictures, drawn in points so that they are sharp at every scale, light on dark and dark on light.
enum class Icon { enclosingFolder, readAgain };

std::shared_ptr<RVCore::NSImage> makeIcon(Icon icon);

} // namespace FolderSizes
