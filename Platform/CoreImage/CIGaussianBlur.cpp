#include <CoreImage/CIGaussianBlur.h>
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
    requireFinite("CIGaussianBlur.setInputRadius:", "inputRadius", radius);
    if (radius < 0)
        raiseInvalidArgument("CIGaussianBlur.setInputRadius:",
                             "inputRadius must not be negative, got " + numberText(radius));
    store(m_radius, radius);
}

void CIGaussianBlur::applyTo(Bitmap& image, CGFloat scale, FilterScratch& scratch) const
{
    gaussianBlur(image, GaussianPlan(m_radius * scale), scratch);
}

CGFloat CIGaussianBlur::reachAt(CGFloat scale) const
{
    return GaussianPlan(m_radius * scale).reach();
}

} // namespace RVCore
