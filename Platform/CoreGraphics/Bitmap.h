#pragma once

#include <CoreGraphics/AlignedWords.h>
#include <CoreGraphics/CGGeometry.h>
#include <CoreGraphics/CGImage.h>
#include <CoreGraphics/PixelRect.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace RVCore {

// Pixel memory to draw and compose in: rows from the top, each of `width` words 0xAARRGGBB in the machine's byte
// order, the colours multiplied by the alpha. A row starts at a multiple of 64 bytes; what lies between the end of
// one and the start of the next belongs to the bitmap, may be written, and means nothing. A moved-from bitmap is
// empty.
class Bitmap {
public:
    static constexpr int largestSide = 32767;
    static constexpr int mostPixels = 1 << 28; // a gigabyte

    // Empty: no pixels.
    Bitmap() = default;
    // Transparent pixels. Raises NSInvalidArgumentException unless both sides are from 0 to 32,767, with no more than
    // 268,435,456 pixels.
    Bitmap(int width, int height);
    Bitmap(Bitmap&& other) noexcept;
    Bitmap& operator=(Bitmap&& other) noexcept;

    int width() const { return m_width; }
    int height() const { return m_height; }
    bool isEmpty() const { return m_width == 0 || m_height == 0; }
    // (0, 0) width × height
    PixelRect bounds() const { return {0, 0, m_width, m_height}; }
    std::size_t bytesPerRow() const { return m_wordsPerRow * sizeof(std::uint32_t); }

    // The pixels of one row; a row that the bitmap does not have stops the program.
    std::span<std::uint32_t> row(int y) { return {start(y), static_cast<std::size_t>(m_width)}; }
    std::span<const std::uint32_t> row(int y) const { return {start(y), static_cast<std::size_t>(m_width)}; }

    // Makes every pixel transparent.
    void clear();
    // Takes another size, after which the pixels are whatever the memory held. Allocates only when the memory it has
    // is not enough, and gives none back. Raises as the constructor does, and has the old size then; where there is
    // no memory it is empty.
    void resize(int width, int height);

private:
    std::uint32_t* start(int y) const
    {
        if (y < 0 || y >= m_height)
            stopForRow(y);
        return m_words.data() + static_cast<std::size_t>(y) * m_wordsPerRow;
    }
    [[noreturn]] void stopForRow(int y) const;

    int m_width = 0;
    int m_height = 0;
    std::size_t m_wordsPerRow = 0;
    AlignedWords<std::uint32_t> m_words;
};

// The pixels of a bitmap that shows these points, from (0, 0); a part of a pixel at the edge counts as one, and what
// is negative as nothing. Nothing where the scale is not above 0, or where there are more pixels than bitmaps have.
std::optional<PixelRect> pictureBounds(CGSize points, CGFloat scale);

// Gives the target, which is as large (any other stops the program) and may be the source, the source's pixels.
void copyPixels(const Bitmap& source, Bitmap& target);

// A picture of the pixels as they are now. Raises NSInvalidArgumentException for an empty bitmap.
CGImageRef makeImage(const Bitmap& bitmap);

} // namespace RVCore
