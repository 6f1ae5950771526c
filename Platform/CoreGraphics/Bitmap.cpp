#include <CoreGraphics/Bitmap.h>
#include <CoreGraphics/PixelGrid.h>
#include <Foundation/NSException.h>
#include <Foundation/Stop.h>

#include <algorithm>
#include <cstring>
#include <utility>

namespace RVCore {

namespace {

bool isPossible(CGFloat width, CGFloat height)
{
    return width <= Bitmap::largestSide && height <= Bitmap::largestSide && width * height <= Bitmap::mostPixels;
}

} // namespace

Bitmap::Bitmap(int width, int height)
{
    resize(width, height);
    clear();
}

Bitmap::Bitmap(Bitmap&& other) noexcept
    : m_width(std::exchange(other.m_width, 0)), m_height(std::exchange(other.m_height, 0)),
      m_wordsPerRow(std::exchange(other.m_wordsPerRow, 0)), m_words(std::move(other.m_words))
{
}

Bitmap& Bitmap::operator=(Bitmap&& other) noexcept
{
    Bitmap taken(std::move(other)); // first, so that a bitmap survives being assigned to itself
    std::swap(m_width, taken.m_width);
    std::swap(m_height, taken.m_height);
    std::swap(m_wordsPerRow, taken.m_wordsPerRow);
    std::swap(m_words, taken.m_words);
    return *this;
}

void Bitmap::clear()
{
    if (!isEmpty())
        std::memset(m_words.data(), 0, bytesPerRow() * static_cast<std::size_t>(m_height));
}

void Bitmap::resize(int width, int height)
{
    if (width < 0 || height < 0 || width > largestSide || height > largestSide)
        raiseInvalidArgument("Bitmap", "sides are from 0 to " + std::to_string(largestSide) + " pixels, got " +
                                           std::to_string(width) + " × " + std::to_string(height));
    if (!isPossible(width, height))
        raiseInvalidArgument("Bitmap", "there are at most " + std::to_string(mostPixels) + " pixels, got " +
                                           std::to_string(width) + " × " + std::to_string(height));
    constexpr std::size_t step = AlignedWords<std::uint32_t>::alignment / sizeof(std::uint32_t);
    const std::size_t wordsPerRow = (static_cast<std::size_t>(width) + step - 1) / step * step;
    m_width = m_height = 0;
    m_words.reserve(wordsPerRow * static_cast<std::size_t>(height));
    m_width = width;
    m_height = height;
    m_wordsPerRow = wordsPerRow;
}

void Bitmap::stopForRow(int y) const
{
    fatalError("Bitmap has " + std::to_string(m_height) + " rows, asked for row " + std::to_string(y));
}

std::optional<PixelRect> pictureBounds(CGSize points, CGFloat scale)
{
    const CGFloat width = std::max(0.0, pixelsAcross(points.width, scale));
    const CGFloat height = std::max(0.0, pixelsAcross(points.height, scale));
    if (!(scale > 0) || !isPossible(width, height))
        return std::nullopt;
    return PixelRect{0, 0, static_cast<int>(width), static_cast<int>(height)};
}

void copyPixels(const Bitmap& source, Bitmap& target)
{
    if (source.width() != target.width() || source.height() != target.height())
        fatalError("a bitmap of " + std::to_string(target.width()) + " × " + std::to_string(target.height()) +
                   " pixels cannot take those of one of " + std::to_string(source.width()) + " × " +
                   std::to_string(source.height()));
    if (&source == &target)
        return;
    for (int y = 0; y < source.height(); y++)
        std::ranges::copy(source.row(y), target.row(y).begin());
}

CGImageRef makeImage(const Bitmap& bitmap)
{
    std::vector<std::uint8_t> pixels;
    pixels.resize(static_cast<std::size_t>(bitmap.width()) * static_cast<std::size_t>(bitmap.height()) * 4);
    std::uint8_t* bytes = pixels.data();
    for (int y = 0; y < bitmap.height(); y++) {
        for (const std::uint32_t pixel : bitmap.row(y)) {
            bytes[0] = static_cast<std::uint8_t>(pixel >> 16);
            bytes[1] = static_cast<std::uint8_t>(pixel >> 8);
            bytes[2] = static_cast<std::uint8_t>(pixel);
            bytes[3] = static_cast<std::uint8_t>(pixel >> 24);
            bytes += 4;
        }
    }
    return std::make_shared<const CGImage>(bitmap.width(), bitmap.height(), std::move(pixels));
}

} // namespace RVCore
