#include <CoreImage/ColorRow.h>

#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__)

// Only what stands below may use the wider registers: an inline function of a header, compiled so, could be the copy
// that the linker keeps for a program on an older processor.
#pragma GCC push_options
#pragma GCC target("avx2")

namespace RVCore {

namespace {

using Byte = std::uint8_t;
using Word = std::uint16_t;

// A register of 16 words (four pixels), the same as signed words and as 32 bytes, which the instructions' own names
// ask for, and as pixels of 64 or 32 bits, for moving them about. Loads and stores need no alignment.
using Words [[gnu::vector_size(32)]] = Word;
using SignedWords [[gnu::vector_size(32)]] = short;
using SignedBytes [[gnu::vector_size(32)]] = char;
using Bytes16 [[gnu::vector_size(16)]] = Byte;
using WidePixels [[gnu::vector_size(32)]] = long long;
using Pixels [[gnu::vector_size(32)]] = int;
constexpr std::size_t lanes = 16;
constexpr std::size_t pixel = 4; // in words

template <class Vector> [[gnu::always_inline]] inline Vector load(const void* from)
{
    Vector value;
    __builtin_memcpy(&value, from, sizeof value);
    return value;
}

template <class Vector> [[gnu::always_inline]] inline void store(void* to, Vector value)
{
    __builtin_memcpy(to, &value, sizeof value);
}

[[gnu::always_inline]] inline Words everywhere(Word value)
{
    return Words{} + value;
}

[[gnu::always_inline]] inline Words bytes(const Byte* from)
{
    return __builtin_convertvector(load<Bytes16>(from), Words);
}

[[gnu::always_inline]] inline Words upperHalf(Words value, Words weight)
{
    return (Words)__builtin_ia32_pmulhuw256((SignedWords)value, (SignedWords)weight);
}

// The lower bytes of both; the lower halves of the registers come first, then the upper ones.
[[gnu::always_inline]] inline SignedBytes pack(Words left, Words right)
{
    return __builtin_ia32_packuswb256((SignedWords)left, (SignedWords)right);
}

void widen(const Byte* in, Word* out, std::size_t count)
{
    for (std::size_t i = 0; i < count; i += lanes)
        store(out + i, bytes(in + i) << 6);
}

void narrow(const Word* in, Byte* out, std::size_t count)
{
    for (std::size_t i = 0; i < count; i += 2 * lanes) {
        const auto packed =
            (WidePixels)pack((load<Words>(in + i) + 32) >> 6, (load<Words>(in + i + lanes) + 32) >> 6);
        store(out + i, __builtin_shuffle(packed, WidePixels{0, 2, 1, 3}));
    }
}

// Four registers at a time, so that four sums are under way at once.
void convolve(const Word* const* rows, const Word* weights, int radius, Word* out, std::size_t count)
{
    const Word* const* const middle = rows + radius;
    const Words lost = everywhere(static_cast<Word>((radius + 1) / 2));
    for (std::size_t i = 0; i < count; i += 4 * lanes) {
        const Words first = everywhere(weights[0]);
        Words sums[4];
        for (std::size_t part = 0; part < 4; part++)
            sums[part] = lost + upperHalf(load<Words>(middle[0] + i + part * lanes), first);
        for (int tap = 1; tap <= radius; tap++) {
            const Word* const before = middle[-tap] + i;
            const Word* const behind = middle[tap] + i;
            const Words weight = everywhere(weights[tap]);
            for (std::size_t part = 0; part < 4; part++)
                sums[part] +=
                    upperHalf(load<Words>(before + part * lanes) + load<Words>(behind + part * lanes), weight);
        }
        for (std::size_t part = 0; part < 4; part++)
            store(out + i + part * lanes, sums[part]);
    }
}

// The bytes of two rows by turns, of the first or the second two pixels of both halves of the registers.
template <int start> [[gnu::always_inline]] inline SignedBytes byTurns(SignedBytes first, SignedBytes second)
{
    constexpr int s = 8 * start;
    return __builtin_shufflevector(first, second, s, s + 32, s + 1, s + 33, s + 2, s + 34, s + 3, s + 35, s + 4,
                                   s + 36, s + 5, s + 37, s + 6, s + 38, s + 7, s + 39, s + 16, s + 48, s + 17,
                                   s + 49, s + 18, s + 50, s + 19, s + 51, s + 20, s + 52, s + 21, s + 53, s + 22,
                                   s + 54, s + 23, s + 55);
}

// The outer row's bytes times 8 and the inner row's times 24, added up.
template <int start> [[gnu::always_inline]] inline Words outerAndInner(SignedBytes outer, SignedBytes inner)
{
    constexpr short weights = 24 << 8 | 8;
    return (Words)__builtin_ia32_pmaddubsw256(byTurns<start>(outer, inner), (SignedBytes)(SignedWords{} + weights));
}

void joinByteRows(const Byte* const* rows, Word* out, std::size_t count)
{
    for (std::size_t i = 0; i < count; i += 2 * lanes) {
        const auto a = load<SignedBytes>(rows[0] + i);
        const auto b = load<SignedBytes>(rows[1] + i);
        const auto c = load<SignedBytes>(rows[2] + i);
        const auto d = load<SignedBytes>(rows[3] + i);
        const auto first = (WidePixels)(outerAndInner<0>(a, b) + outerAndInner<0>(d, c));
        const auto second = (WidePixels)(outerAndInner<1>(a, b) + outerAndInner<1>(d, c));
        store(out + i, __builtin_shuffle(first, second, WidePixels{0, 1, 4, 5}));
        store(out + i + lanes, __builtin_shuffle(first, second, WidePixels{2, 3, 6, 7}));
    }
}

[[gnu::always_inline]] inline Words join(Words a, Words b, Words c, Words d)
{
    const Words inner = (b + c + 1) >> 1;
    return (((a + d) >> 1) + inner + inner + inner + 2) >> 2;
}

void joinRows(const Word* const* rows, Word* out, std::size_t count)
{
    for (std::size_t i = 0; i < count; i += lanes)
        store(out + i, join(load<Words>(rows[0] + i), load<Words>(rows[1] + i), load<Words>(rows[2] + i),
                            load<Words>(rows[3] + i)));
}

// The first, third … (or, from 1 on, the second, fourth …) of eight pixels, in the order 0 2 1 3, which takes one
// instruction.
template <long long start> [[gnu::always_inline]] inline Words everyOther(const Word* from)
{
    return (Words)__builtin_shuffle(load<WidePixels>(from), load<WidePixels>(from + lanes),
                                    WidePixels{start, 4 + start, 2 + start, 6 + start});
}

void joinColumns(const Word* in, Word* out, std::size_t count)
{
    for (std::size_t i = 0; i < count; i += lanes) {
        const Word* const before = in + 2 * i - pixel;
        const Word* const behind = in + 2 * i + pixel;
        const Words joined =
            join(everyOther<0>(before), everyOther<1>(before), everyOther<0>(behind), everyOther<1>(behind));
        store(out + i, __builtin_shuffle((WidePixels)joined, WidePixels{0, 2, 1, 3}));
    }
}

void mixRows(const Word* near, const Word* far, Word* out, std::size_t count)
{
    for (std::size_t i = 0; i < count; i += lanes)
        store(out + i, (3 * load<Words>(near + i) + load<Words>(far + i) + 2) >> 2);
}

void spreadColumns(const Word* in, Word* out, std::size_t count)
{
    for (std::size_t i = 0; i < count; i += lanes) {
        const Words threefold = 3 * load<Words>(in + i) + 2;
        const auto left = (WidePixels)((threefold + load<Words>(in + i - pixel)) >> 2);
        const auto right = (WidePixels)((threefold + load<Words>(in + i + pixel)) >> 2);
        store(out + 2 * i, __builtin_shuffle(left, right, WidePixels{0, 4, 1, 5}));
        store(out + 2 * i + lanes, __builtin_shuffle(left, right, WidePixels{2, 6, 3, 7}));
    }
}

void spreadColumnsToBytes(const Word* in, Byte* out, std::size_t count)
{
    for (std::size_t i = 0; i < count; i += lanes) {
        const Words threefold = 3 * load<Words>(in + i) + 128;
        const Words left = (threefold + load<Words>(in + i - pixel)) >> 8;
        const Words right = (threefold + load<Words>(in + i + pixel)) >> 8;
        store(out + 2 * i, __builtin_shuffle((Pixels)pack(left, right), Pixels{0, 2, 1, 3, 4, 6, 5, 7}));
    }
}

void mixColors(const std::uint32_t* in, std::uint32_t* out, std::size_t count, const ColorMixture& mixture)
{
    mixColorRow(in, out, count, mixture);
}

constexpr RowKernels kernels{.widen = &widen,
                             .narrow = &narrow,
                             .convolve = &convolve,
                             .joinByteRows = &joinByteRows,
                             .joinRows = &joinRows,
                             .joinColumns = &joinColumns,
                             .mixRows = &mixRows,
                             .spreadColumns = &spreadColumns,
                             .spreadColumnsToBytes = &spreadColumnsToBytes,
                             .mixColors = &mixColors};

} // namespace

} // namespace RVCore

#pragma GCC pop_options

const RVCore::RowKernels* RVCore::avx2RowKernels()
{
    return __builtin_cpu_supports("avx2") ? &kernels : nullptr;
}

#else

const RVCore::RowKernels* RVCore::avx2RowKernels()
{
    return nullptr;
}

#endif
