#include "PixelCanvas.h"

#include <CoreGraphics/PixelGrid.h>

#include <algorithm>
#include <cmath>
#include <optional>

namespace RVCore {

namespace {

bool isInside(const RoundedRect& shape, CGPoint point)
{
    const CGRect& rect = shape.rect;
    if (!rect.contains(point))
        return false;
    const CGFloat radius = std::min({shape.radius, rect.size.width / 2, rect.size.height / 2});
    const CGFloat dx = std::max({rect.minX() + radius - point.x, point.x - (rect.maxX() - radius), 0.0});
    const CGFloat dy = std::max({rect.minY() + radius - point.y, point.y - (rect.maxY() - radius), 0.0});
    return dx * dx + dy * dy <= radius * radius;
}

std::uint32_t over(const CGColor& color, std::uint32_t below)
{
    const auto channel = [&](double value, int shift) {
        const double under = (below >> shift) & 0xFF;
        return static_cast<std::uint32_t>(std::lround(value * color.alpha * 255 + under * (1 - color.alpha)))
               << shift;
    };
    return channel(1, 24) | channel(color.red, 16) | channel(color.green, 8) | channel(color.blue, 0);
}

// Straight edges at the nearest pixel's, as every canvas has them.
RoundedRect alignedToDevice(const CGAffineTransform& toDevice, const RoundedRect& shape)
{
    if (toDevice.b != 0 || toDevice.c != 0)
        return shape;
    const CGRect device = toDevice.apply(shape.rect);
    const CGFloat left = nearestPixel(device.minX());
    const CGFloat top = nearestPixel(device.minY());
    const CGRect aligned(left, top, nearestPixel(device.maxX()) - left, nearestPixel(device.maxY()) - top);
    return {toDevice.inverted().apply(aligned), shape.radius};
}

} // namespace

PixelCanvas::PixelCanvas(Bitmap& bitmap, int x, int y, CGFloat scale) : m_bitmap(bitmap)
{
    m_states.push_back(
        {CGAffineTransform::scale(scale, scale).concatenating(CGAffineTransform::translation(-x, -y)), {}});
}

void PixelCanvas::concatenate(const CGAffineTransform& transform)
{
    m_states.back().toDevice = transform.concatenating(m_states.back().toDevice);
}

void PixelCanvas::clip(const RoundedRect& shape)
{
    const CGAffineTransform& toDevice = m_states.back().toDevice;
    m_states.back().clips.push_back({toDevice.inverted(), alignedToDevice(toDevice, shape)});
}

// Asks for the colour at points of the shape, which may have none.
template <class ColorAt> void PixelCanvas::paint(const RoundedRect& shape, ColorAt colorAt)
{
    const State& state = m_states.back();
    const CGAffineTransform fromDevice = state.toDevice.inverted();
    const CGRect device = state.toDevice.apply(shape.rect);
    const auto part = [](CGFloat from, CGFloat to, int end) {
        return std::pair(static_cast<int>(std::clamp(std::floor(from), 0.0, static_cast<CGFloat>(end))),
                         static_cast<int>(std::clamp(std::ceil(to), 0.0, static_cast<CGFloat>(end))));
    };
    const auto [left, right] = part(device.minX(), device.maxX(), m_bitmap.width());
    const auto [top, bottom] = part(device.minY(), device.maxY(), m_bitmap.height());
    for (int y = top; y < bottom; ++y) {
        for (int x = left; x < right; ++x) {
            const CGPoint centre{x + 0.5, y + 0.5};
            const bool isVisible = std::ranges::all_of(
                state.clips, [&](const Clip& clip) { return isInside(clip.shape, clip.fromDevice.apply(centre)); });
            const CGPoint point = fromDevice.apply(centre);
            if (!isVisible || !isInside(shape, point))
                continue;
            auto& pixel = m_bitmap.row(y)[static_cast<std::size_t>(x)];
            if (const std::optional<CGColor> color = colorAt(point))
                pixel = over(*color, pixel);
        }
    }
}

void PixelCanvas::fill(const RoundedRect& shape, const CGColor& color)
{
    paint(alignedToDevice(m_states.back().toDevice, shape), [&](CGPoint) { return std::optional(color); });
}

void PixelCanvas::strokeInside(const RoundedRect& shape, CGFloat width, const CGColor& color)
{
    const RoundedRect outer = alignedToDevice(m_states.back().toDevice, shape);
    const RoundedRect inner{outer.rect.insetBy(width, width), std::max(outer.radius - width, 0.0)};
    paint(outer, [&](CGPoint point) { return isInside(inner, point) ? std::nullopt : std::optional(color); });
}

// The nearest pixel of the image, which is opaque.
void PixelCanvas::drawImage(const CGImage& image, const CGRect& rect)
{
    const CGRect aligned = alignedToDevice(m_states.back().toDevice, {rect, 0}).rect;
    const auto part = [](CGFloat at, CGFloat from, CGFloat size, int count) {
        return static_cast<std::size_t>(std::clamp(static_cast<int>((at - from) / size * count), 0, count - 1));
    };
    paint({aligned, 0}, [&](CGPoint point) {
        const std::uint8_t* const pixel =
            image.pixels().data() +
            part(point.y, aligned.minY(), aligned.size.height, image.height()) * image.bytesPerRow() +
            4 * part(point.x, aligned.minX(), aligned.size.width, image.width());
        return std::optional(CGColor{pixel[0] / 255.0, pixel[1] / 255.0, pixel[2] / 255.0, 1});
    });
}

} // namespace RVCore
