#pragma once

#include <CoreGraphics/Forward.h>
#include <CoreGraphics/PixelRect.h>

namespace RVCore {

// A bitmap that stands for a part of a larger area, whose pixels count from the area's top left corner.
struct PlacedBitmap {
    const Bitmap& bitmap;
    int x = 0; // of its first column in the area
    int y = 0; // of its first row
};

// The same to paint into.
struct MutablePlacedBitmap {
    Bitmap& bitmap;
    int x = 0;
    int y = 0;
};

// How a source's pixel s with the weight w changes the target's pixel t.
enum class PixelBlend {
    over, // w·s + (1 - w·alpha of s)·t ("over" of T. Porter and T. Duff, "Compositing Digital Images", 1984)
    mix,  // w·s + (1 - w)·t
};

// These take the pixels inside `rect` of the area, as far as source, target and mask have them.

// Makes the pixels transparent.
void clearPixels(const MutablePlacedBitmap& target, const PixelRect& rect);
// Puts the source's pixels in place of the target's.
void copyPixels(const PlacedBitmap& source, const MutablePlacedBitmap& target, const PixelRect& rect);
// Blends the source in with this opacity, from 0 to 1, which is taken to the nearest 255th. With a mask the weight of
// each pixel is the opacity times the mask's alpha there. Each channel is off by less than 2/255.
void blendPixels(const PlacedBitmap& source, double opacity, const PlacedBitmap* mask, PixelBlend blend,
                 const MutablePlacedBitmap& target, const PixelRect& rect);

} // namespace RVCore
