#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace RVCore {

// A picture made of pixels; it does not change.
class CGImage {
public:
    // Rows from the top, each of `width` pixels of four bytes: red, green, blue, alpha, the colours multiplied by the
    // alpha. Raises NSInvalidArgumentException unless both sides are from 1 to 32,767 and the bytes are as many as
    // that takes.
    CGImage(int width, int height, std::vector<std::uint8_t> pixels);

    int width() const { return m_width; }
    int height() const { return m_height; }
    std::size_t bytesPerRow() const { return static_cast<std::size_t>(m_width) * 4; }
    const std::vector<std::uint8_t>& pixels() const { return m_pixels; }

private:
    int m_width;
    int m_height;
    std::vector<std::uint8_t> m_pixels;
};

using CGImageRef = std::shared_ptr<const CGImage>;

} // namespace RVCore
