#pragma once

#include <CoreImage/RowKernels.h>

namespace RVCore {

// The body of RowKernels::mixColors, which the compiler turns into vectors of whatever width the caller is built for.
[[gnu::always_inline]] inline void mixColorRow(const std::uint32_t* in, std::uint32_t* out, std::size_t count,
                                               const ColorMixture& mixture)
{
    const float ofColor = mixture.color;
    const float ofLuma = mixture.luma;
    const float ofAlpha = mixture.alpha;
    for (std::size_t i = 0; i < count; i++) {
        const std::uint32_t pixel = in[i];
        const auto alpha = static_cast<float>(static_cast<int>(pixel >> 24));
        const auto red = static_cast<float>(static_cast<int>(pixel >> 16 & 255));
        const auto green = static_cast<float>(static_cast<int>(pixel >> 8 & 255));
        const auto blue = static_cast<float>(static_cast<int>(pixel & 255));
        const float rest = ofLuma * (0.2126F * red + 0.7152F * green + 0.0722F * blue) + ofAlpha * alpha;
        const auto cut = [&](float color) {
            const float mixed = ofColor * color + rest;
            const float above = mixed > 0 ? mixed : 0;
            const float raised = (above < alpha ? above : alpha) + 0.5F;
            return static_cast<std::uint32_t>(static_cast<int>(raised));
        };
        out[i] = (pixel & 0xff000000) | cut(red) << 16 | cut(green) << 8 | cut(blue);
    }
}

} // namespace RVCore
