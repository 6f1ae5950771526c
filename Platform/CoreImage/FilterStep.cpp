#include <CoreImage/FilterStep.h>

#include <algorithm>
#include <cmath>

namespace RVCore {

std::string describe(const FilterStep& step)
{
    std::string text = step.filter->classObject().name();
    const auto keys = step.filter->inputKeys();
    for (std::size_t i = 0; i < keys.size(); ++i)
        text += " " + std::string(keys[i]) + " " + numberText(step.inputs[i]);
    return text;
}

int reachOf(std::span<const FilterStep> steps, CGFloat scale)
{
    constexpr CGFloat furthest = 1 << 20; // beyond any picture
    CGFloat reach = 0;
    for (const FilterStep& step : steps)
        reach += std::ceil(step.filter->reach(step.inputs, scale));
    return static_cast<int>(std::min(reach, furthest));
}

int gridOf(std::span<const FilterStep> steps, CGFloat scale)
{
    int grid = 1; // powers of two: the largest is a multiple of the others
    for (const FilterStep& step : steps)
        grid = std::max(grid, step.filter->grid(step.inputs, scale));
    return grid;
}

bool areNeutral(std::span<const FilterStep> steps)
{
    return std::ranges::all_of(steps, &FilterStep::isNeutral);
}

void apply(std::span<const FilterStep> steps, const Bitmap& source, Bitmap& result, CGFloat scale,
           FilterScratch& scratch)
{
    const Bitmap* from = &source;
    for (const FilterStep& step : steps) {
        step.filter->apply(step.inputs, *from, result, scale, scratch);
        from = &result;
    }
}

} // namespace RVCore
