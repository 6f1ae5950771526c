#pragma once

#include <cstddef>
#include <cstdint>

namespace RVCore {

// What a colour is made of: itself, its luma and its alpha, times these.
struct ColorMixture {
    float color = 1;
    float luma = 0;
    float alpha = 0;
};

// The inner loops of the filters. They work on one row at a time. A row is a run of channels, four to a pixel: bytes
// as in a Bitmap, or words that hold a byte times 64 (0 to 16,320), which leaves two bits for sums and six for
// fractions.
//
// `count` is in channels, a multiple of 4. A kernel may read and write up to the next multiple of `slack` channels
// behind the last one, so rows have that much room; the rows of a Bitmap have it for bytes, up to a multiple of 64.
// Whatever the instructions, the results are the same to the bit.
struct RowKernels {
    static constexpr std::size_t slack = 64;

    // Words from bytes, and back, rounded.
    void (*widen)(const std::uint8_t* in, std::uint16_t* out, std::size_t count);
    void (*narrow)(const std::uint16_t* in, std::uint8_t* out, std::size_t count);

    // A symmetric weighted sum of 2 · radius + 1 runs, of which rows[radius] is the middle one; weights are
    // 65,536ths, the first is the middle one's. The runs are rows for the vertical direction, and one row begun at
    // successive pixels for the horizontal one.
    void (*convolve)(const std::uint16_t* const* rows, const std::uint16_t* weights, int radius, std::uint16_t* out,
                     std::size_t count);

    // (a + 3b + 3c + d) / 8 of four rows.
    void (*joinByteRows)(const std::uint8_t* const* rows, std::uint16_t* out, std::size_t count);
    void (*joinRows)(const std::uint16_t* const* rows, std::uint16_t* out, std::size_t count);
    // The same of the pixels 2k - 1 to 2k + 2 for each of the `count` / 4 pixels k that come out; `in` is at pixel 0.
    void (*joinColumns)(const std::uint16_t* in, std::uint16_t* out, std::size_t count);

    // (3 · near + far) / 4 of two rows.
    void (*mixRows)(const std::uint16_t* near, const std::uint16_t* far, std::uint16_t* out, std::size_t count);
    // The pixels 2k and 2k + 1 for each of the `count` / 4 pixels k that go in: the same mixture of pixel k
    // with the one before and the one behind it.
    void (*spreadColumns)(const std::uint16_t* in, std::uint16_t* out, std::size_t count);
    void (*spreadColumnsToBytes)(const std::uint16_t* in, std::uint8_t* out, std::size_t count);

    // The colours of pixels 0xAARRGGBB, rounded, none below 0 or above its alpha; here `count` is in pixels, and no
    // other one is touched. `out` may be `in`.
    void (*mixColors)(const std::uint32_t* in, std::uint32_t* out, std::size_t count, const ColorMixture& mixture);
};

// In plain C++, for every processor; what the others must equal.
const RowKernels& portableRowKernels();
// For processors with AVX2; null where the program runs on another one or was built by a compiler that has none.
const RowKernels* avx2RowKernels();
// The quickest that the processor can run.
const RowKernels& rowKernels();

} // namespace RVCore
