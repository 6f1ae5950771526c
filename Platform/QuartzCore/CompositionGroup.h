#pragma once

#include <CoreGraphics/Bitmap.h>
#include <CoreGraphics/CGAffineTransform.h>
#include <CoreImage/FilterScratch.h>
#include <CoreImage/Forward.h>

#include <QuartzCore/DamageRegion.h>
#include <QuartzCore/PixelBlend.h>

#include <span>
#include <vector>

namespace RVCore {

// A part of the area that is painted apart and kept from frame to frame, with what of it has to be painted again.
struct Surface {
    Bitmap bitmap;
    PixelRect place;     // in the area
    DamageRegion damage; // in the area's pixels

    PlacedBitmap placed() const { return {bitmap, place.x, place.y}; }
    MutablePlacedBitmap target() { return {bitmap, place.x, place.y}; }
    // Takes another place; unless it is the old one, everything has to be painted again.
    void setPlace(const PixelRect& newPlace);
    void damageAll();
};

// An outline that cuts what is painted, in points of the area.
struct ClipOutline {
    CGAffineTransform placement;
    CGSize size;
    CGFloat radius = 0;

    bool operator==(const ClipOutline&) const = default;
};

// What is left to be seen of a picture that outlines cut.
struct OutlineMask {
    PixelRect visible;                 // at most this
    std::vector<ClipOutline> outlines; // and inside these, which are no rectangles of pixels
    Bitmap bitmap;                     // how much of each pixel in `visible`, as its alpha; for these outlines:
    std::vector<ClipOutline> painted;
    PixelRect paintedPlace;
};

// What a compositor keeps of a group between frames.
struct CompositionGroup {
    bool isUsed = true; // in the present frame

    // What the group contains, where that cannot be painted straight into what is around it.
    bool hasSurface = false;
    Surface content;
    Bitmap filteredContent; // where it has filters
    bool isContentFilterNew = false;
    OutlineMask contentMask;

    // What was painted behind the group, while its opacity or its filters may ask for it again, and how these show
    // it.
    bool keepsBackground = false;
    bool filtersBackground = false;
    Surface background; // its damage: where what is behind differs from it
    Bitmap filteredBackground;
    DamageRegion backgroundReach; // what of the filtered one changes with that, or with the filters
    OutlineMask backgroundMask;

    // Give the memory back.
    void releaseContent();
    void releaseBackground();

    // Brings `filteredContent` up to date with `content`.
    void filterContent(std::span<const FilterStep> steps, CGFloat scale, FilterScratch& scratch);
    // Brings `filteredBackground` up to date. `part` is memory to work in.
    void filterBackground(std::span<const FilterStep> steps, CGFloat scale, FilterScratch& scratch, Bitmap& part);
};

} // namespace RVCore
