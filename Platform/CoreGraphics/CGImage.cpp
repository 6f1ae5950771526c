#include <CoreGraphics/Bitmap.h>
#include <CoreGraphics/CGImage.h>
#include <Foundation/NSException.h>

namespace RVCore {

CGImage::CGImage(int width, int height, std::vector<std::uint8_t> pixels)
    : m_width(width), m_height(height), m_pixels(std::move(pixels))
{
    constexpr int largest = Bitmap::largestSide;
    if (width < 1 || height < 1 || width > largest || height > largest)
        raiseInvalidArgument("CGImage", "sides are from 1 to 32767 pixels, got " + std::to_string(width) + " × " +
                                            std::to_string(height));
    const std::size_t expected = bytesPerRow() * static_cast<std::size_t>(height);
    if (m_pixels.size() != expected)
        raiseInvalidArgument("CGImage", std::to_string(width) + " × " + std::to_string(height) + " pixels are " +
                                            std::to_string(expected) + " bytes, got " +
                                            std::to_string(m_pixels.size()));
}

} // namespace RVCore
