#include <CoreImage/ColorRow.h>

namespace RVCore {

namespace {

using Byte = std::uint8_t;
using Word = std::uint16_t;

constexpr std::size_t channels = 4;

void widen(const Byte* in, Word* out, std::size_t count)
{
    for (std::size_t i = 0; i < count; i++)
        out[i] = static_cast<Word>(in[i] << 6);
}

void narrow(const Word* in, Byte* out, std::size_t count)
{
    for (std::size_t i = 0; i < count; i++)
        out[i] = static_cast<Byte>((in[i] + 32) >> 6);
}

// Of words only, so that the compiler finds the instruction which does this to a whole register.
Word upperHalf(Word value, Word weight)
{
    return static_cast<Word>((static_cast<unsigned>(value) * static_cast<unsigned>(weight)) >> 16);
}

constexpr std::size_t block = RowKernels::slack;

// A function of its own, or the compiler takes two taps at once, and then one word at a time.
[[gnu::noinline]] void addTap(const Word* before, const Word* behind, Word weight, Word* sums)
{
    for (std::size_t i = 0; i < block; i++)
        sums[i] = static_cast<Word>(sums[i] + upperHalf(static_cast<Word>(before[i] + behind[i]), weight));
}

void convolve(const Word* const* rows, const Word* weights, int radius, Word* out, std::size_t count)
{
    const Word* const* const middle = rows + radius;
    // Every product loses half a unit on the average.
    const int lost = (radius + 1) / 2;
    for (std::size_t begin = 0; begin < count; begin += block) {
        Word sums[block];
        for (std::size_t i = 0; i < block; i++)
            sums[i] = static_cast<Word>(lost + upperHalf(middle[0][begin + i], weights[0]));
        for (int tap = 1; tap <= radius; tap++)
            addTap(middle[-tap] + begin, middle[tap] + begin, weights[tap], sums);
        for (std::size_t i = 0; i < block; i++)
            out[begin + i] = sums[i];
    }
}

void joinByteRows(const Byte* const* rows, Word* out, std::size_t count)
{
    for (std::size_t i = 0; i < count; i++)
        out[i] = static_cast<Word>((rows[0][i] + 3 * (rows[1][i] + rows[2][i]) + rows[3][i]) << 3);
}

// Words have room for four times a value, so the outer and the inner pair are halved before they are joined.
Word join(int a, int b, int c, int d)
{
    return static_cast<Word>((((a + d) >> 1) + 3 * ((b + c + 1) >> 1) + 2) >> 2);
}

void joinRows(const Word* const* rows, Word* out, std::size_t count)
{
    for (std::size_t i = 0; i < count; i++)
        out[i] = join(rows[0][i], rows[1][i], rows[2][i], rows[3][i]);
}

void joinColumns(const Word* in, Word* out, std::size_t count)
{
    for (std::size_t pixel = 0; pixel < count; pixel += channels) {
        const Word* const at = in + 2 * pixel;
        for (std::size_t i = 0; i < channels; i++)
            out[pixel + i] = join(*(at + i - channels), at[i], at[i + channels], at[i + 2 * channels]);
    }
}

void mixRows(const Word* near, const Word* far, Word* out, std::size_t count)
{
    for (std::size_t i = 0; i < count; i++)
        out[i] = static_cast<Word>((3 * near[i] + far[i] + 2) >> 2);
}

// The sums of one pixel with its neighbours, four times their value, shifted to what the output holds.
template <int Shift, class Out> void spread(const Word* in, Out* out, std::size_t count)
{
    constexpr int half = 1 << (Shift - 1);
    for (std::size_t pixel = 0; pixel < count; pixel += channels) {
        const Word* const at = in + pixel;
        Out* const pair = out + 2 * pixel;
        for (std::size_t i = 0; i < channels; i++) {
            const int threefold = 3 * at[i] + half;
            pair[i] = static_cast<Out>((threefold + *(at + i - channels)) >> Shift);
            pair[i + channels] = static_cast<Out>((threefold + at[i + channels]) >> Shift);
        }
    }
}

void spreadColumns(const Word* in, Word* out, std::size_t count)
{
    spread<2>(in, out, count);
}

void spreadColumnsToBytes(const Word* in, Byte* out, std::size_t count)
{
    spread<8>(in, out, count);
}

void mixColors(const std::uint32_t* in, std::uint32_t* out, std::size_t count, const ColorMixture& mixture)
{
    mixColorRow(in, out, count, mixture);
}

} // namespace

const RowKernels& portableRowKernels()
{
    static constexpr RowKernels kernels{.widen = &widen,
                                        .narrow = &narrow,
                                        .convolve = &convolve,
                                        .joinByteRows = &joinByteRows,
                                        .joinRows = &joinRows,
                                        .joinColumns = &joinColumns,
                                        .mixRows = &mixRows,
                                        .spreadColumns = &spreadColumns,
                                        .spreadColumnsToBytes = &spreadColumnsToBytes,
                                        .mixColors = &mixColors};
    return kernels;
}

const RowKernels& rowKernels()
{
    static const RowKernels* const wide = avx2RowKernels();
    return wide ? *wide : portableRowKernels();
}

} // namespace RVCore
