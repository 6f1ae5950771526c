#pragma once

#include <CoreGraphics/Bitmap.h>

#include <functional>
#include <string>
#include <vector>

namespace RVCore {

// A picture to filter, and what it shows.
struct TestPicture {
    std::string name;
    Bitmap bitmap;
};

// Noise (opaque, of any alpha, black and white), an edge, a bright pixel, stripes.
std::vector<TestPicture> makeTestPictures(int width, int height);
Bitmap makePicture(int width, int height, const std::function<std::uint32_t(int x, int y)>& pixel);
Bitmap copied(const Bitmap& bitmap);
bool isSame(const Bitmap& left, const Bitmap& right);

// One of the four bytes of a pixel, 0 for blue to 3 for alpha.
inline int channel(std::uint32_t pixel, int index)
{
    return static_cast<int>(pixel >> (8 * index) & 255);
}

// Whether no colour is above its alpha.
bool isPremultiplied(const Bitmap& bitmap);

// A Gaussian's density at the whole numbers from 0 to six deviations, normalised: the middle weight first.
std::vector<double> gaussianWeights(double sigma);
// The picture convolved with it, four channels a pixel; beyond the edges the outermost pixels go on.
std::vector<double> convolved(const Bitmap& picture, double sigma);
// The largest difference of a channel.
double largestDifference(const Bitmap& picture, const std::vector<double>& expected);

} // namespace RVCore
