#include <CoreImage/GaussianBlur.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace RVCore {

namespace {

using Word = std::uint16_t;

constexpr int channels = 4;
// Room in pixels on both sides of a row: kernels read three pixels before the first one, and behind the last one
// three and what they round up to.
constexpr int margin = 8;
constexpr int rightMargin = margin + static_cast<int>(RowKernels::slack) / channels;

constexpr std::size_t lanes(int pixels)
{
    return static_cast<std::size_t>(pixels) * channels;
}

// Words from one row to the next. An odd number of cache lines: with rows a power of two apart, the pixels of one
// column would all compete for the same few places of the cache.
std::size_t strideFor(int pixels)
{
    constexpr std::size_t line = 64 / sizeof(Word);
    return ((lanes(margin + pixels + rightMargin) + line - 1) / line | 1) * line;
}

// Half rounded down and up, of negative numbers too.
constexpr int halfDown(int value)
{
    return value >> 1;
}
constexpr int halfUp(int value)
{
    return (value + 1) >> 1;
}

// The pixels of a level along one axis. Level 0 is the picture; pixel k of a level is made of the pixels 2k - 1 to 2k
// + 2 of the one above. From `first` downward and from `last` upward all pixels are equal, as they are beyond the
// picture's edges, so a level that goes from `first` to `last` stands for an endless one.
struct Extent {
    int first = 0;
    int last = 0;

    int count() const { return last - first + 1; }
    Extent half() const { return {halfUp(first - 1) - 1, halfUp(last + 1)}; }
};

struct Level {
    Extent x;
    Extent y;
    std::size_t stride = 0;
    Word* words = nullptr; // the leftmost pixel of the uppermost row

    Word* row(int at) const
    {
        return words + static_cast<std::size_t>(std::clamp(at, y.first, y.last) - y.first) * stride;
    }
};

// The words that a blur of a picture of that size takes, the largest that there is: a radius that grows from frame to
// frame never asks for more.
class Workspace {
public:
    Workspace(const Bitmap& picture, const GaussianPlan& plan, FilterScratch& scratch)
    {
        Extent x{0, picture.width() - 1};
        Extent y{0, picture.height() - 1};
        const std::size_t widest = strideFor(picture.width() + 2 * GaussianPlan::largestRadius);
        std::size_t total = (1 + ringRows) * widest;
        for (int level = 1; level <= GaussianPlan::mostLevels; level++) {
            x = x.half();
            y = y.half();
            levels[static_cast<std::size_t>(level)] = {x, y, strideFor(x.count()), nullptr};
            total += levels[static_cast<std::size_t>(level)].stride * static_cast<std::size_t>(y.count());
        }

        Word* next = scratch.words(total);
        line = next + lanes(margin);
        ring = line + widest;
        ringStride = widest;
        next += (1 + ringRows) * widest;
        for (int level = 1; level <= plan.levels; level++) {
            Level& taken = levels[static_cast<std::size_t>(level)];
            taken.words = next + lanes(margin);
            next += taken.stride * static_cast<std::size_t>(taken.y.count());
        }
    }

    // Rows that are convolved at a time.
    static constexpr int batch = 8;
    static constexpr int ringRows = 2 * GaussianPlan::largestRadius + batch;

    std::array<Level, GaussianPlan::mostLevels + 1> levels;
    Word* line = nullptr; // one row; room of `margin` pixels before it
    Word* ring = nullptr; // `ringRows` rows
    std::size_t ringStride = 0;
};

// Carries the pixels at both ends on for some pixels.
void extend(Word* row, int count, int pixels)
{
    for (int i = 1; i <= pixels; i++) {
        std::memcpy(row - lanes(i), row, sizeof(Word) * channels);
        std::memcpy(row + lanes(count - 1 + i), row + lanes(count - 1), sizeof(Word) * channels);
    }
}

// What the convolution works on: the picture itself.
struct PictureRows {
    Bitmap& picture;
    const RowKernels& kernels;

    int width() const { return picture.width(); }
    int height() const { return picture.height(); }
    void read(int y, Word* to) const { kernels.widen(bytes(y), to, lanes(width())); }
    void write(int y, std::size_t begin, const Word* from, std::size_t count) const
    {
        kernels.narrow(from, bytes(y) + begin, count);
    }
    std::uint8_t* bytes(int y) const { return reinterpret_cast<std::uint8_t*>(picture.row(y).data()); }
};

// Or a level of it.
struct LevelRows {
    const Level& level;

    int width() const { return level.x.count(); }
    int height() const { return level.y.count(); }
    void read(int y, Word* to) const { std::memcpy(to, level.row(level.y.first + y), sizeof(Word) * lanes(width())); }
    void write(int y, std::size_t begin, const Word* from, std::size_t count) const
    {
        std::memcpy(level.row(level.y.first + y) + begin, from, sizeof(Word) * count);
    }
};

// Convolves rows in place. A ring of rows holds what has been convolved horizontally; `batch` rows at a time are then
// convolved vertically, in blocks of columns that stay in the nearest cache while all these rows pass over them.
template <class Rows> class Convolution {
public:
    Convolution(const Rows& rows, const GaussianPlan& plan, const Workspace& workspace, const RowKernels& kernels)
        : m_rows(rows), m_plan(plan), m_workspace(workspace), m_kernels(kernels)
    {
    }

    void run()
    {
        int filtered = 0; // rows that have been convolved horizontally
        for (int y = 0; y < m_rows.height(); y += Workspace::batch) {
            const int end = std::min(y + Workspace::batch, m_rows.height());
            for (; filtered < std::min(end + m_plan.radius, m_rows.height()); filtered++)
                convolveHorizontally(filtered);
            convolveVertically(y, end);
        }
    }

private:
    using Runs = std::array<const Word*, 2 * GaussianPlan::largestRadius + 1>;
    static constexpr std::size_t block = 4 * RowKernels::slack;

    Word* ringRow(int y) const
    {
        return m_workspace.ring + static_cast<std::size_t>(y % Workspace::ringRows) * m_workspace.ringStride;
    }

    void convolveHorizontally(int y)
    {
        Word* const line = m_workspace.line + lanes(m_plan.radius);
        m_rows.read(y, line);
        extend(line, m_rows.width(), m_plan.radius);
        Runs runs;
        for (int tap = 0; tap <= 2 * m_plan.radius; tap++)
            runs[static_cast<std::size_t>(tap)] = m_workspace.line + lanes(tap);
        m_kernels.convolve(runs.data(), m_plan.weights.data(), m_plan.radius, ringRow(y), lanes(m_rows.width()));
    }

    void convolveVertically(int y, int end)
    {
        alignas(64) Word result[block];
        const std::size_t all = lanes(m_rows.width());
        for (std::size_t begin = 0; begin < all; begin += block) {
            const std::size_t count = std::min(block, all - begin);
            for (int row = y; row < end; row++) {
                Runs runs;
                for (int tap = 0; tap <= 2 * m_plan.radius; tap++) {
                    const int from = std::clamp(row + tap - m_plan.radius, 0, m_rows.height() - 1);
                    runs[static_cast<std::size_t>(tap)] = ringRow(from) + begin;
                }
                m_kernels.convolve(runs.data(), m_plan.weights.data(), m_plan.radius, result, count);
                m_rows.write(row, begin, result, count);
            }
        }
    }

    Rows m_rows;
    const GaussianPlan& m_plan;
    const Workspace& m_workspace;
    const RowKernels& m_kernels;
};

// The row `joined`, between them the four rows that it was made of, becomes the row `to` of the next level.
void joinLine(Word* joined, const Extent& from, const Extent& half, Word* to, const RowKernels& kernels)
{
    extend(joined, from.count(), 4);
    kernels.joinColumns(joined + (2 * half.first - from.first) * channels, to, lanes(half.count()));
}

void halvePicture(Bitmap& picture, const Level& half, Word* line, const RowKernels& kernels)
{
    const Extent x{0, picture.width() - 1};
    const PictureRows rows{picture, kernels};
    for (int y = half.y.first; y <= half.y.last; y++) {
        const std::uint8_t* four[4];
        for (int i = 0; i < 4; i++)
            four[i] = rows.bytes(std::clamp(2 * y - 1 + i, 0, picture.height() - 1));
        kernels.joinByteRows(four, line, lanes(x.count()));
        joinLine(line, x, half.x, half.row(y), kernels);
    }
}

void halveLevel(const Level& level, const Level& half, Word* line, const RowKernels& kernels)
{
    for (int y = half.y.first; y <= half.y.last; y++) {
        const Word* four[4];
        for (int i = 0; i < 4; i++)
            four[i] = level.row(2 * y - 1 + i);
        kernels.joinRows(four, line, lanes(level.x.count()));
        joinLine(line, level.x, half.x, half.row(y), kernels);
    }
}

// Row `y` of the level above, still as narrow as this one, on the line.
void mixLine(const Level& half, int y, Word* line, const RowKernels& kernels)
{
    const int near = halfDown(y);
    const int far = y % 2 == 0 ? near - 1 : near + 1;
    kernels.mixRows(half.row(near), half.row(far), line, lanes(half.x.count()));
}

void doubleLevel(const Level& half, const Level& level, Word* line, const RowKernels& kernels)
{
    // Pixels come in pairs, of which the first may lie in the margin before the row.
    const Extent pairs{halfDown(level.x.first), halfDown(level.x.last)};
    for (int y = level.y.first; y <= level.y.last; y++) {
        mixLine(half, y, line, kernels);
        kernels.spreadColumns(line + (pairs.first - half.x.first) * channels,
                              level.row(y) + (2 * pairs.first - level.x.first) * channels, lanes(pairs.count()));
    }
}

void doublePicture(const Level& half, Bitmap& picture, Word* line, const RowKernels& kernels)
{
    const PictureRows rows{picture, kernels};
    for (int y = 0; y < picture.height(); y++) {
        mixLine(half, y, line, kernels);
        kernels.spreadColumnsToBytes(line - half.x.first * channels, rows.bytes(y), lanes(halfUp(picture.width())));
    }
}

} // namespace

GaussianPlan::GaussianPlan(double sigma)
{
    // 1. The coarsest grid that is still fine enough: below 1.8 of its pixels, the kernel that comes out differs from
    //    the Gaussian by more than an adversary's picture may show (measured over all positions on the grid: 0.66/255
    //    an axis at 1.8, 1.0 at 1.5, 4.3 at 1).
    constexpr double finest = 1.8;
    sigma = std::min(sigma, finest * std::ldexp(1.0, mostLevels));
    while (sigma >= finest * std::ldexp(1.0, levels + 1))
        levels++;

    // 2. What the way down and the way up leave to do.
    const double coarse = std::ldexp(1.0, 2 * levels);
    const double variance = (sigma * sigma - (coarse - 1) / 2) / coarse;
    if (!(variance > 0))
        return;

    // 3. Weights up to three deviations; what is cut off is 0.3 % of the area. The middle one takes what rounding
    // left.
    std::array<double, largestRadius + 1> exact{};
    const int furthest = std::min(static_cast<int>(std::ceil(3 * std::sqrt(variance))), largestRadius);
    double sum = 0;
    for (int tap = furthest; tap >= 0; tap--) {
        exact[static_cast<std::size_t>(tap)] = std::exp(-tap * tap / (2 * variance));
        sum += exact[static_cast<std::size_t>(tap)] * (tap == 0 ? 1 : 2);
    }
    int left = 65536;
    for (int tap = furthest; tap > 0; tap--) {
        const int weight = static_cast<int>(std::lround(exact[static_cast<std::size_t>(tap)] / sum * 65536));
        weights[static_cast<std::size_t>(tap)] = static_cast<std::uint16_t>(weight);
        left -= 2 * weight;
        if (weight > 0)
            radius = std::max(radius, tap);
    }
    if (radius > 0)
        weights[0] = static_cast<std::uint16_t>(left);
}

int GaussianPlan::reach() const
{
    // Down and up each add three pixels of every level but the last.
    return (radius << levels) + 3 * ((1 << levels) - 1);
}

void gaussianBlur(Bitmap& picture, const GaussianPlan& plan, FilterScratch& scratch, const RowKernels& kernels)
{
    if (picture.isEmpty() || plan.isNeutral())
        return;
    const Workspace workspace(picture, plan, scratch);
    if (plan.levels == 0) {
        Convolution(PictureRows{picture, kernels}, plan, workspace, kernels).run();
        return;
    }

    // 1. Down.
    const auto& levels = workspace.levels;
    const auto last = static_cast<std::size_t>(plan.levels);
    halvePicture(picture, levels[1], workspace.line, kernels);
    for (std::size_t level = 1; level < last; level++)
        halveLevel(levels[level], levels[level + 1], workspace.line, kernels);

    // 2. The small Gaussian.
    Convolution(LevelRows{levels[last]}, plan, workspace, kernels).run();

    // 3. Up.
    for (std::size_t level = last; level > 1; level--)
        doubleLevel(levels[level], levels[level - 1], workspace.line, kernels);
    doublePicture(levels[1], picture, workspace.line, kernels);
}

} // namespace RVCore
