#include <CoreImage/CIGaussianBlur.h>
#include <CoreImage/FilterWorkers.h>
#include <CoreImage/GaussianBlur.h>
#include <Foundation/NSException.h>

namespace RVCore {

Class& CIGaussianBlur::staticClass()
{
    static Class& theClass =
        defineClass<CIGaussianBlur>("CIGaussianBlur", CIFilter::staticClass(), [](auto& publish) {
            publish.property("inputRadius", &CIGaussianBlur::inputRadius, &CIGaussianBlur::setInputRadius);
        });
    return theClass;
}

void CIGaussianBlur::setInputRadius(CGFloat radius)
{
    requireNotNegative("CIGaussianBlur.setInputRadius:", "inputRadius", radius);
    store(m_radius, radius);
}

std::span<const std::string_view> CIGaussianBlur::inputKeys() const
{
    static constexpr std::string_view keys[] = {"inputRadius"};
    return keys;
}

void CIGaussianBlur::applyInputs(const FilterInputs& inputs, const Bitmap& source, Bitmap& result, CGFloat scale,
                                 FilterScratch& scratch) const
{
    gaussianBlur(source, result, GaussianPlan(inputs[0] * scale), scratch, rowKernels(), &FilterWorkers::shared());
}

CGFloat CIGaussianBlur::reachOfInputs(const FilterInputs& inputs, CGFloat scale) const
{
    return GaussianPlan(inputs[0] * scale).reach();
}

int CIGaussianBlur::gridOfInputs(const FilterInputs& inputs, CGFloat scale) const
{
    return 1 << GaussianPlan(inputs[0] * scale).levels;
}

} // namespace RVCore
