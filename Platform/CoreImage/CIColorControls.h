#pragma once

#include <CoreImage/CIFilter.h>

namespace RVCore {

// Changes the colours of each pixel; alpha stays. With colours c from 0 to 1 that are not multiplied by alpha, and Y
// for what they weigh in brightness (0.2126 red + 0.7152 green + 0.0722 blue, the luma of ITU-R BT.709), in this
// order:
//
//     saturation   Y + saturation · (c - Y)       0 leaves greys, 1 the colours, more makes them stronger
//     brightness   c + brightness                 0 leaves them, 1 makes all white, -1 all black
//     contrast     ½ + contrast · (c - ½)         0 makes all a middle grey, 1 leaves them
//
// and what comes out below 0 or above 1 is cut off at the end. An input that is not finite raises
// NSInvalidArgumentException; one beyond ±1,000 does what ±1,000 does.
class CIColorControls : public CIFilter {
    RVCORE_CLASS(CIColorControls)

public:
    CGFloat inputSaturation() const { return m_saturation; } // default 1
    void setInputSaturation(CGFloat saturation);
    CGFloat inputBrightness() const { return m_brightness; } // default 0
    void setInputBrightness(CGFloat brightness);
    CGFloat inputContrast() const { return m_contrast; } // default 1
    void setInputContrast(CGFloat contrast);

    void setDefaults() override;
    std::span<const std::string_view> inputKeys() const override;
    FilterInputs inputs() const override { return {m_saturation, m_brightness, m_contrast}; }
    using CIFilter::isNeutral;
    bool isNeutral(const FilterInputs& inputs) const override { return inputs == FilterInputs{1, 0, 1}; }

protected:
    void applyInputs(const FilterInputs& inputs, const Bitmap& source, Bitmap& result, CGFloat scale,
                     FilterScratch& scratch) const override;
    CGFloat reachOfInputs(const FilterInputs&, CGFloat) const override { return 0; }

private:
    CGFloat m_saturation = 1;
    CGFloat m_brightness = 0;
    CGFloat m_contrast = 1;
};

} // namespace RVCore
