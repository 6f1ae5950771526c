#include <CoreImage/FilterStep.h>

#include <QuartzCore/CompositionGroup.h>

#include <algorithm>

namespace RVCore {

void Surface::setPlace(const PixelRect& newPlace)
{
    if (newPlace == place && bitmap.width() == place.width && bitmap.height() == place.height)
        return;
    place = newPlace;
    bitmap.resize(place.width, place.height);
    damageAll();
}

void Surface::damageAll()
{
    damage.clear();
    damage.add(place);
}

void CompositionGroup::releaseContent()
{
    content = {};
    filteredContent = {};
    contentMask = {};
}

void CompositionGroup::releaseBackground()
{
    background = {};
    filteredBackground = {};
    backgroundMask = {};
}

void CompositionGroup::filterContent(std::span<const FilterStep> steps, CGFloat scale, FilterScratch& scratch)
{
    filteredContent.resize(content.place.width, content.place.height);
    apply(steps, content.bitmap, filteredContent, scale, scratch);
}

void CompositionGroup::filterBackground(std::span<const FilterStep> steps, CGFloat scale, FilterScratch& scratch,
                                        Bitmap& part)
{
    const PixelRect& place = background.place;
    const MutablePlacedBitmap shown{filteredBackground, place.x, place.y};
    if (std::ranges::count(backgroundReach.rects(), place) > 0) {
        filteredBackground.resize(place.width, place.height);
        apply(steps, background.bitmap, filteredBackground, scale, scratch);
    } else {
        const int reach = reachOf(steps, scale);
        const int grid = gridOf(steps, scale);
        for (const PixelRect& rect : backgroundReach.rects()) {
            // The edges of the part go on for ever where they are the picture's, and do not matter elsewhere.
            PixelRect seen = rect.insetBy(-reach, -reach).intersection(place);
            const int left = (seen.x - place.x) % grid;
            const int top = (seen.y - place.y) % grid;
            seen = {seen.x - left, seen.y - top, seen.width + left, seen.height + top};
            part.resize(seen.width, seen.height);
            copyPixels(background.placed(), {part, seen.x, seen.y}, seen);
            apply(steps, part, part, scale, scratch);
            copyPixels({part, seen.x, seen.y}, shown, rect);
        }
    }
    background.damage.clear();
}

} // namespace RVCore
