#pragma once

#include <CoreGraphics/Bitmap.h>
#include <CoreImage/FilterScratch.h>
#include <CoreImage/Forward.h>
#include <CoreImage/RowKernels.h>

#include <array>

namespace RVCore {

// How a blur of a certain standard deviation is done: halve the picture `levels` times, convolve, and double it as
// often.
//
//     picture ──joined──▶ 1/2 ──joined──▶ 1/4 ──convolved──▶ 1/4 ──spread──▶ 1/2 ──spread──▶ picture
//
// Halving and doubling weigh pixels by 1 3 3 1, which makes the whole way down (and the whole way up) a quadratic
// B-spline of the coarse pixel's width. Its variance is the same wherever a pixel lies on the coarse grid, so the
// small Gaussian in the middle can supply exactly what is missing: σ² = 4^levels · s² + 2 · (4^levels - 1) / 4.
struct GaussianPlan {
    static constexpr int largestRadius = 11;
    // From 1.8 · 2^15 pixels on; larger deviations are cut off there. A picture has at most 32,767 pixels a side and
    // is nearly even long before.
    static constexpr int mostLevels = 15;

    // For a standard deviation in pixels, at least 0 and not NaN.
    explicit GaussianPlan(double sigma);

    // Whether no pixel would change: the deviation is so small that the neighbours' weights are 0.
    bool isNeutral() const { return radius == 0; }
    // How many pixels away a pixel can have an influence.
    int reach() const;

    int levels = 0;
    int radius = 0; // of the convolution, in pixels of the last level
    // In 65,536ths, the middle one's first; together with the ones on the other side they are 65,536.
    std::array<std::uint16_t, largestRadius + 1> weights{};
};

// Blurs the source into the result, which is as large (the caller sees to that) and may be the source; beyond the
// edges the outermost pixels go on for ever. Off the Gaussian (its density at the pixels' centres, normalised) by
// less than 2/255 whatever the picture shows, for standard deviations up to what a plan cuts off. A colour never
// comes out above its alpha, an even area is left as it is.
//
// The coarse grid begins at the picture's corner. A part that is cut out with the plan's reach on each side comes out
// as in the whole, to the bit, when its corner lies at a multiple of 2^levels; elsewhere it may differ by a little.
//
// With workers, pictures for which it pays are blurred in bands of rows, one for each share; what comes out is the
// same to the bit. Without any, the calling thread does it all.
void gaussianBlur(const Bitmap& source, Bitmap& result, const GaussianPlan& plan, FilterScratch& scratch,
                  const RowKernels& kernels = rowKernels(), FilterWorkers* workers = nullptr);
inline void gaussianBlur(Bitmap& picture, const GaussianPlan& plan, FilterScratch& scratch,
                         const RowKernels& kernels = rowKernels(), FilterWorkers* workers = nullptr)
{
    gaussianBlur(picture, picture, plan, scratch, kernels, workers);
}

} // namespace RVCore
