#include "PixelCanvas.h"

#include <CoreGraphics/PixelGrid.h>

#include <algorithm>
#include <cmath>

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

void PixelCanvas::fill(const RoundedRect& shape, const CGColor& color)
{
    const State& state = m_states.back();
    const CGAffineTransform fromDevice = state.toDevice.inverted();
    const RoundedRect aligned = alignedToDevice(state.toDevice, shape);
    for (int y = 0; y < m_bitmap.height(); ++y) {
        for (int x = 0; x < m_bitmap.width(); ++x) {
            const CGPoint centre{x + 0.5, y + 0.5};
            const bool isVisible = std::ranges::all_of(
                state.clips, [&](const Clip& clip) { return isInside(clip.shape, clip.fromDevice.apply(centre)); });
            if (!isVisible || !isInside(aligned, fromDevice.apply(centre)))
                continue;
            auto& pixel = m_bitmap.row(y)[static_cast<std::size_t>(x)];
            pixel = over(color, pixel);
        }
    }
}

} // namespace RVCore
