#pragma once

#include <CoreImage/CIFilter.h>

#include <string>

namespace RVCore {

// A filter with the inputs that it has at one moment: what can be compared with the one of another moment.
struct FilterStep {
    std::shared_ptr<const CIFilter> filter;
    FilterInputs inputs{};

    bool isNeutral() const { return filter->isNeutral(inputs); }
    bool operator==(const FilterStep&) const = default;
};

// "CIGaussianBlur inputRadius 8"
std::string describe(const FilterStep& step);

// Of steps that are applied one after the other; a scale that is not finite and above 0 raises as CIFilter does.
//
// How many pixels around an area have an influence on it.
int reachOf(std::span<const FilterStep> steps, CGFloat scale);
// At multiples of how many pixels the corner of a part has to lie so that it comes out as in the whole.
int gridOf(std::span<const FilterStep> steps, CGFloat scale);
// Whether none of the steps changes anything.
bool areNeutral(std::span<const FilterStep> steps);
// At least one step, from the source to a result of the same size.
void apply(std::span<const FilterStep> steps, const Bitmap& source, Bitmap& result, CGFloat scale,
           FilterScratch& scratch);

} // namespace RVCore
