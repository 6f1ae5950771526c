#include <CoreImage/FilterStep.h>

#include <QuartzCore/CompositionGroup.h>

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
    copyPixels(content.placed(), {filteredContent, content.place.x, content.place.y}, content.place);
    apply(steps, filteredContent, scale, scratch);
}

void CompositionGroup::filterBackground(std::span<const FilterStep> steps, CGFloat scale, FilterScratch& scratch,
                                        Bitmap& part)
{
    const PixelRect& place = background.place;
    const PixelTarget shown{filteredBackground, place.x, place.y};
    if (isBackgroundFilterNew) {
        filteredBackground.resize(place.width, place.height);
        copyPixels(background.placed(), shown, place);
        apply(steps, filteredBackground, scale, scratch);
    } else {
        const int reach = reachOf(steps, scale);
        DamageRegion changed = background.damage.grownBy(reach);
        changed.clip(place);
        for (const PixelRect& rect : changed.rects()) {
            // The edges of the part go on for ever where they are the picture's, and do not matter elsewhere.
            const PixelRect seen = rect.insetBy(-reach, -reach).intersection(place);
            part.resize(seen.width, seen.height);
            copyPixels(background.placed(), {part, seen.x, seen.y}, seen);
            apply(steps, part, scale, scratch);
            copyPixels({part, seen.x, seen.y}, shown, rect);
        }
    }
    isBackgroundFilterNew = false;
    background.damage.clear();
}

} // namespace RVCore
