#include <CoreGraphics/Bitmap.h>
#include <CoreImage/FilterWorkers.h>

#include <QuartzCore/PixelBlend.h>

#include <algorithm>
#include <cmath>

namespace RVCore {

namespace {

// Two channels of a pixel at a time, as 0x00XX00YY.
constexpr std::uint32_t evenChannels = 0x00FF00FF;

// Each channel times factor / 255, rounded to the nearest (the exact division by 255 in integers is J. Blinn's,
// "Three Wrongs Make a Right", IEEE Computer Graphics and Applications, 1995).
std::uint32_t scaledChannels(std::uint32_t channels, std::uint32_t factor)
{
    const std::uint32_t product = channels * factor + 0x00800080;
    return ((product + ((product >> 8) & evenChannels)) >> 8) & evenChannels;
}

std::uint32_t scaled(std::uint32_t pixel, std::uint32_t factor)
{
    return scaledChannels(pixel & evenChannels, factor) | (scaledChannels((pixel >> 8) & evenChannels, factor) << 8);
}

template <PixelBlend Blend> std::uint32_t blended(std::uint32_t source, std::uint32_t weight, std::uint32_t target)
{
    source = scaled(source, weight);
    return source + scaled(target, 255 - (Blend == PixelBlend::over ? source >> 24 : weight));
}

struct Rows {
    const std::uint32_t* source;
    const std::uint32_t* mask; // null for none
    std::uint32_t* target;
    std::size_t count;
};

PixelRect placeOf(const Bitmap& bitmap, int x, int y)
{
    return {x, y, bitmap.width(), bitmap.height()};
}

// Calls `work` with the parts of the rows that all of them have.
template <class Work>
void forEachRow(const PlacedBitmap& source, const PlacedBitmap* mask, const MutablePlacedBitmap& target,
                PixelRect rect, Work work)
{
    rect = rect.intersection(placeOf(source.bitmap, source.x, source.y))
               .intersection(placeOf(target.bitmap, target.x, target.y));
    if (mask)
        rect = rect.intersection(placeOf(mask->bitmap, mask->x, mask->y));
    FilterWorkers::shared().runBands(rect.width, rect.height, [&](int first, int end) {
        for (int y = rect.y + first; y < rect.y + end; ++y) {
            const auto from = [&](const PlacedBitmap& placed) {
                return placed.bitmap.row(y - placed.y).data() + (rect.x - placed.x);
            };
            work(Rows{from(source), mask ? from(*mask) : nullptr,
                      target.bitmap.row(y - target.y).data() + (rect.x - target.x),
                      static_cast<std::size_t>(rect.width)});
        }
    });
}

template <PixelBlend Blend> void blendRow(const Rows& rows, std::uint32_t weight)
{
    if (!rows.mask) {
        for (std::size_t i = 0; i < rows.count; ++i)
            rows.target[i] = blended<Blend>(rows.source[i], weight, rows.target[i]);
        return;
    }
    for (std::size_t i = 0; i < rows.count; ++i)
        rows.target[i] = blended<Blend>(rows.source[i], scaled(rows.mask[i], weight) >> 24, rows.target[i]);
}

} // namespace

void clearPixels(const MutablePlacedBitmap& target, const PixelRect& rect)
{
    const PixelRect part = rect.intersection(placeOf(target.bitmap, target.x, target.y));
    for (int y = part.y; y < part.maxY(); ++y)
        std::fill_n(target.bitmap.row(y - target.y).data() + (part.x - target.x), part.width, 0U);
}

void copyPixels(const PlacedBitmap& source, const MutablePlacedBitmap& target, const PixelRect& rect)
{
    forEachRow(source, nullptr, target, rect,
               [](const Rows& rows) { std::copy_n(rows.source, rows.count, rows.target); });
}

void blendPixels(const PlacedBitmap& source, double opacity, const PlacedBitmap* mask, PixelBlend blend,
                 const MutablePlacedBitmap& target, const PixelRect& rect)
{
    const auto weight = static_cast<std::uint32_t>(std::lround(std::clamp(opacity, 0.0, 1.0) * 255));
    if (weight == 0)
        return;
    forEachRow(source, mask, target, rect, [&](const Rows& rows) {
        if (blend == PixelBlend::over)
            blendRow<PixelBlend::over>(rows, weight);
        else
            blendRow<PixelBlend::mix>(rows, weight);
    });
}

} // namespace RVCore
