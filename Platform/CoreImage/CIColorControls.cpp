#include <CoreGraphics/Bitmap.h>
#include <CoreImage/CIColorControls.h>
#include <CoreImage/FilterWorkers.h>
#include <CoreImage/RowKernels.h>
#include <Foundation/NSException.h>

#include <algorithm>

namespace RVCore {

namespace {

float limited(CGFloat input)
{
    constexpr CGFloat largest = 1000;
    return static_cast<float>(std::clamp(input, -largest, largest));
}

} // namespace

Class& CIColorControls::staticClass()
{
    static Class& theClass =
        defineClass<CIColorControls>("CIColorControls", CIFilter::staticClass(), [](auto& publish) {
            publish.property("inputSaturation", &CIColorControls::inputSaturation,
                             &CIColorControls::setInputSaturation);
            publish.property("inputBrightness", &CIColorControls::inputBrightness,
                             &CIColorControls::setInputBrightness);
            publish.property("inputContrast", &CIColorControls::inputContrast, &CIColorControls::setInputContrast);
        });
    return theClass;
}

void CIColorControls::setInputSaturation(CGFloat saturation)
{
    requireFinite("CIColorControls.setInputSaturation:", "inputSaturation", saturation);
    store(m_saturation, saturation);
}

void CIColorControls::setInputBrightness(CGFloat brightness)
{
    requireFinite("CIColorControls.setInputBrightness:", "inputBrightness", brightness);
    store(m_brightness, brightness);
}

void CIColorControls::setInputContrast(CGFloat contrast)
{
    requireFinite("CIColorControls.setInputContrast:", "inputContrast", contrast);
    store(m_contrast, contrast);
}

void CIColorControls::setDefaults()
{
    setInputSaturation(1);
    setInputBrightness(0);
    setInputContrast(1);
}

std::span<const std::string_view> CIColorControls::inputKeys() const
{
    static constexpr std::string_view keys[] = {"inputSaturation", "inputBrightness", "inputContrast"};
    return keys;
}

void CIColorControls::applyInputs(const FilterInputs& inputs, const Bitmap& source, Bitmap& result, CGFloat,
                                  FilterScratch&) const
{
    // All three steps are linear in c and 1, so they are one; multiplied by alpha they are linear in colour and
    // alpha.
    const float saturation = limited(inputs[0]);
    const float brightness = limited(inputs[1]);
    const float contrast = limited(inputs[2]);
    const ColorMixture mixture{.color = contrast * saturation,
                               .luma = contrast * (1 - saturation),
                               .alpha = contrast * (brightness - 0.5F) + 0.5F};
    FilterWorkers::shared().runBands(source.width(), source.height(), [&](int first, int end) {
        for (int y = first; y < end; y++)
            rowKernels().mixColors(source.row(y).data(), result.row(y).data(), source.row(y).size(), mixture);
    });
}

} // namespace RVCore
