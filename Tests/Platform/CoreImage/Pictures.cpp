#include "Pictures.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace RVCore {

Bitmap makePicture(int width, int height, const std::function<std::uint32_t(int x, int y)>& pixel)
{
    Bitmap bitmap(width, height);
    for (int y = 0; y < height; y++)
        for (int x = 0; x < width; x++)
            bitmap.row(y)[static_cast<std::size_t>(x)] = pixel(x, y);
    return bitmap;
}

std::vector<TestPicture> makeTestPictures(int width, int height)
{
    constexpr std::uint32_t white = 0xffffffff;
    constexpr std::uint32_t black = 0xff000000;
    std::mt19937 random(7);
    const auto below = [&](std::uint32_t limit) { return static_cast<std::uint32_t>(random()) % (limit + 1); };
    const auto ofAnyAlpha = [&](int, int) {
        const std::uint32_t alpha = below(255);
        return alpha << 24 | below(alpha) << 16 | below(alpha) << 8 | below(alpha);
    };
    std::vector<TestPicture> pictures;
    pictures.push_back(
        {"opaque noise", makePicture(width, height, [&](int, int) { return black | below(0xffffff); })});
    pictures.push_back({"noise of any alpha", makePicture(width, height, ofAnyAlpha)});
    pictures.push_back({"white dots", makePicture(width, height, [&](int, int) { return below(1) ? white : 0; })});
    pictures.push_back(
        {"edge", makePicture(width, height, [&](int x, int) { return x < width / 2 - 3 ? black : white; })});
    pictures.push_back({"bright pixel", makePicture(width, height, [&](int x, int y) {
                            return x == width / 3 && y == height / 2 ? white : 0;
                        })});
    pictures.push_back(
        {"stripes", makePicture(width, height, [](int x, int y) { return (x + y) / 3 % 2 ? white : black; })});
    return pictures;
}

Bitmap copied(const Bitmap& bitmap)
{
    Bitmap result(bitmap.width(), bitmap.height());
    copyPixels(bitmap, result);
    return result;
}

bool isSame(const Bitmap& left, const Bitmap& right)
{
    if (left.bounds() != right.bounds())
        return false;
    for (int y = 0; y < left.height(); y++)
        if (!std::ranges::equal(left.row(y), right.row(y)))
            return false;
    return true;
}

bool isPremultiplied(const Bitmap& bitmap)
{
    for (int y = 0; y < bitmap.height(); y++)
        for (const std::uint32_t pixel : bitmap.row(y))
            if (std::max({channel(pixel, 0), channel(pixel, 1), channel(pixel, 2)}) > channel(pixel, 3))
                return false;
    return true;
}

std::vector<double> gaussianWeights(double sigma)
{
    const int radius = static_cast<int>(std::ceil(6 * sigma));
    std::vector<double> weights;
    double sum = 0;
    for (int tap = 0; tap <= radius; tap++) {
        weights.push_back(std::exp(-tap * tap / (2 * sigma * sigma)));
        sum += weights.back() * (tap == 0 ? 1 : 2);
    }
    for (double& weight : weights)
        weight /= sum;
    return weights;
}

namespace {

// The weighted sums of every `step`-th value, from the first on, as the others stand beside each other.
void convolveLine(const std::vector<double>& weights, const double* in, double* out, int count, int step)
{
    const int radius = static_cast<int>(weights.size()) - 1;
    for (int at = 0; at < count; at++) {
        double sum = weights[0] * in[at * step];
        for (int tap = 1; tap <= radius; tap++)
            sum += weights[static_cast<std::size_t>(tap)] *
                   (in[std::max(at - tap, 0) * step] + in[std::min(at + tap, count - 1) * step]);
        out[at * step] = sum;
    }
}

} // namespace

std::vector<double> convolved(const Bitmap& picture, double sigma)
{
    const auto weights = gaussianWeights(sigma);
    const int rowStep = picture.width() * 4;
    std::vector<double> values;
    for (int y = 0; y < picture.height(); y++)
        for (const std::uint32_t pixel : picture.row(y))
            for (int index = 0; index < 4; index++)
                values.push_back(channel(pixel, index));
    std::vector<double> across(values.size());
    for (int y = 0; y < picture.height(); y++)
        for (int index = 0; index < 4; index++)
            convolveLine(weights, &values[static_cast<std::size_t>(y * rowStep + index)],
                         &across[static_cast<std::size_t>(y * rowStep + index)], picture.width(), 4);
    for (int x = 0; x < rowStep; x++)
        convolveLine(weights, &across[static_cast<std::size_t>(x)], &values[static_cast<std::size_t>(x)],
                     picture.height(), rowStep);
    return values;
}

double largestDifference(const Bitmap& picture, const std::vector<double>& expected)
{
    double largest = 0;
    std::size_t next = 0;
    for (int y = 0; y < picture.height(); y++)
        for (const std::uint32_t pixel : picture.row(y))
            for (int index = 0; index < 4; index++)
                largest = std::max(largest, std::abs(channel(pixel, index) - expected.at(next++)));
    return largest;
}

} // namespace RVCore
