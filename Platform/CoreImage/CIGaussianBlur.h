#pragma once

#include <CoreImage/CIFilter.h>

namespace RVCore {

// Blurs a picture: every pixel becomes the mean of its surroundings, weighed by a Gaussian.
class CIGaussianBlur : public CIFilter {
    RVCORE_CLASS(CIGaussianBlur)

public:
    static constexpr CGFloat defaultRadius = 10;

    // The Gaussian's standard deviation in points; 0 leaves pictures as they are. A radius that is negative or not
    // finite raises NSInvalidArgumentException. One of more than 58,982 pixels, nearly twice the side of the largest
    // picture, does what that one does; none takes longer than a small one.
    CGFloat inputRadius() const { return m_radius; }
    void setInputRadius(CGFloat radius);

    void setDefaults() override { setInputRadius(defaultRadius); }
    std::span<const std::string_view> inputKeys() const override;
    FilterInputs inputs() const override { return {m_radius}; }
    using CIFilter::isNeutral;
    bool isNeutral(const FilterInputs& inputs) const override { return inputs[0] <= 0; }

protected:
    void applyInputs(const FilterInputs& inputs, const Bitmap& source, Bitmap& result, CGFloat scale,
                     FilterScratch& scratch) const override;
    CGFloat reachOfInputs(const FilterInputs& inputs, CGFloat scale) const override;
    int gridOfInputs(const FilterInputs& inputs, CGFloat scale) const override;

private:
    CGFloat m_radius = defaultRadius;
};

} // namespace RVCore
