#include <CoreImage/FilterWorkers.h>
#include <CoreImage/GaussianBlur.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <optional>

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

// The same for distances, which may be negative.
constexpr std::ptrdiff_t distance(int pixels)
{
    return std::ptrdiff_t{pixels} * channels;
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

// A level, or the rows of it that were made last.
struct Level {
    static constexpr int window = 4; // rows that the neighbouring levels are made of

    Extent x;
    Extent y;
    std::size_t stride = 0;
    Word* words = nullptr; // the leftmost pixel of the uppermost row
    int kept = 0;          // rows; `window` or all

    Word* row(int at) const
    {
        return words + static_cast<std::size_t>((std::clamp(at, y.first, y.last) - y.first) % kept) * stride;
    }
};

// What a band of rows is worked on with. Bands have the last level in common, which is kept whole; the rest is their
// own.
struct Band {
    // Rows that are convolved at a time.
    static constexpr int batch = 8;
    static constexpr int ringRows = 2 * GaussianPlan::largestRadius + batch;
    static constexpr int ownRows = 1 + ringRows + GaussianPlan::largestRadius;

    using Levels = std::array<Level, GaussianPlan::mostLevels + 1>;

    Levels levels;          // from 1 on
    std::size_t stride = 0; // of the rows that follow
    Word* line = nullptr;   // one row; room of `margin` pixels before it
    Word* ring = nullptr;   // `ringRows` rows
    Word* tail = nullptr;   // `largestRadius` rows
};

// The words that a blur takes. It asks for as many as any blur of a picture of that size takes: a radius that grows
// from frame to frame never asks for more.
class Workspace {
public:
    Workspace(const Bitmap& picture, const GaussianPlan& plan, int bandCount, FilterScratch& scratch)
    {
        Extent x{0, picture.width() - 1};
        Extent y{0, picture.height() - 1};
        const std::size_t widest = strideFor(picture.width() + 2 * GaussianPlan::largestRadius);
        std::size_t ofBand = Band::ownRows * widest;
        std::size_t ofLastLevel = 0;
        Band::Levels levels;
        for (int level = 1; level <= GaussianPlan::mostLevels; level++) {
            x = x.half();
            y = y.half();
            const std::size_t stride = strideFor(x.count());
            ofBand += stride * Level::window;
            ofLastLevel = std::max(ofLastLevel, stride * static_cast<std::size_t>(y.count()));
            levels[static_cast<std::size_t>(level)] = {x, y, stride, nullptr,
                                                       level < plan.levels ? Level::window : y.count()};
        }

        Word* const lastLevel = scratch.words(ofLastLevel + static_cast<std::size_t>(bandCount) * ofBand);
        for (int number = 0; number < bandCount; number++) {
            Word* next = lastLevel + ofLastLevel + static_cast<std::size_t>(number) * ofBand;
            Band& band = bands[static_cast<std::size_t>(number)];
            band.levels = levels;
            band.stride = widest;
            band.line = next + lanes(margin);
            band.ring = band.line + widest;
            band.tail = band.ring + Band::ringRows * widest;
            next += Band::ownRows * widest;
            for (int level = 1; level < plan.levels; level++) {
                Level& own = band.levels[static_cast<std::size_t>(level)];
                own.words = next + lanes(margin);
                next += own.stride * Level::window;
            }
            band.levels[static_cast<std::size_t>(plan.levels)].words = lastLevel + lanes(margin);
        }
    }

    std::array<Band, FilterWorkers::most> bands;
};

// Carries the pixels at both ends on for some pixels.
void extend(Word* row, int count, int pixels)
{
    for (int i = 1; i <= pixels; i++) {
        std::memcpy(row - lanes(i), row, sizeof(Word) * channels);
        std::memcpy(row + lanes(count - 1 + i), row + lanes(count - 1), sizeof(Word) * channels);
    }
}

const std::uint8_t* bytesOf(const Bitmap& picture, int y)
{
    return reinterpret_cast<const std::uint8_t*>(picture.row(y).data());
}

std::uint8_t* bytesOf(Bitmap& picture, int y)
{
    return reinterpret_cast<std::uint8_t*>(picture.row(y).data());
}

// What the convolution works on: the picture itself.
struct PictureRows {
    const Bitmap& source;
    Bitmap& result;
    const RowKernels& kernels;

    int width() const { return source.width(); }
    int height() const { return source.height(); }
    void read(int y, Word* to) const { kernels.widen(bytesOf(source, y), to, lanes(width())); }
    void write(int y, std::size_t begin, const Word* from, std::size_t count) const
    {
        kernels.narrow(from, bytesOf(result, y) + begin, count);
    }
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

// Convolves a band of rows in place. A ring of rows holds what has been convolved horizontally; `batch` rows at a
// time are then convolved vertically, in blocks of columns that stay in the nearest cache while all these rows pass
// over them.
template <class Rows> class Convolution {
public:
    // The rows from `first` to before `end`.
    Convolution(const Rows& rows, int first, int end, const GaussianPlan& plan, const Band& band,
                const RowKernels& kernels)
        : m_rows(rows), m_first(first), m_end(end), m_plan(plan), m_band(band), m_kernels(kernels)
    {
    }

    // Takes what the rows above and below the band add to it. Once all bands have, each may change its own rows.
    void takeSurroundings()
    {
        for (int y = std::max(m_first - m_plan.radius, 0); y < m_first; y++)
            convolveHorizontally(y);
        for (int y = m_end; y < std::min(m_end + m_plan.radius, m_rows.height()); y++)
            convolveHorizontally(y);
    }
    void run()
    {
        int filtered = m_first; // the first row that has not been convolved horizontally
        for (int y = m_first; y < m_end; y += Band::batch) {
            const int end = std::min(y + Band::batch, m_end);
            for (; filtered < std::min(end + m_plan.radius, m_end); filtered++)
                convolveHorizontally(filtered);
            convolveVertically(y, end);
        }
    }

private:
    using Runs = std::array<const Word*, 2 * GaussianPlan::largestRadius + 1>;
    static constexpr std::size_t block = 4 * RowKernels::slack;

    // Where the row is kept that has been convolved horizontally: those below the band stay until its end.
    Word* filteredRow(int y) const
    {
        return y < m_end ? m_band.ring + static_cast<std::size_t>(y % Band::ringRows) * m_band.stride
                         : m_band.tail + static_cast<std::size_t>(y - m_end) * m_band.stride;
    }

    void convolveHorizontally(int y)
    {
        Word* const line = m_band.line + lanes(m_plan.radius);
        m_rows.read(y, line);
        extend(line, m_rows.width(), m_plan.radius);
        Runs runs;
        for (int tap = 0; tap <= 2 * m_plan.radius; tap++)
            runs[static_cast<std::size_t>(tap)] = m_band.line + lanes(tap);
        m_kernels.convolve(runs.data(), m_plan.weights.data(), m_plan.radius, filteredRow(y), lanes(m_rows.width()));
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
                    runs[static_cast<std::size_t>(tap)] = filteredRow(from) + begin;
                }
                m_kernels.convolve(runs.data(), m_plan.weights.data(), m_plan.radius, result, count);
                m_rows.write(row, begin, result, count);
            }
        }
    }

    Rows m_rows;
    int m_first;
    int m_end;
    const GaussianPlan& m_plan;
    const Band& m_band;
    const RowKernels& m_kernels;
};

// Both ways through the levels make a row as soon as the rows that it is made of are there, and no earlier: what has
// just been written is read from the nearest cache, and a few rows of each level are all that is kept.
class Passage {
public:
    Passage(int last, const Band& band, const RowKernels& kernels)
        : m_last(last), m_levels(band.levels), m_line(band.line), m_kernels(kernels)
    {
    }

protected:
    const Level& level(int number) const { return m_levels[static_cast<std::size_t>(number)]; }
    // The first row of a level that will be asked for, or the nearest that there is, which it returns.
    int startAt(int number, int y)
    {
        const Extent& rows = level(number).y;
        return m_next[static_cast<std::size_t>(number)] = std::clamp(y, rows.first, rows.last);
    }
    // The next row of a level that has to be made before row `upTo` can be read; nothing when all have been.
    std::optional<int> takeNext(int number, int upTo)
    {
        int& next = m_next[static_cast<std::size_t>(number)];
        if (next > std::clamp(upTo, level(number).y.first, level(number).y.last))
            return std::nullopt;
        return next++;
    }

    const int m_last;
    const Band::Levels& m_levels;
    Word* const m_line;
    const RowKernels& m_kernels;

private:
    std::array<int, GaussianPlan::mostLevels + 1> m_next{};
};

// From the picture down to the last level.
class Descent : public Passage {
public:
    Descent(const Bitmap& source, int last, const Band& band, const RowKernels& kernels)
        : Passage(last, band, kernels), m_source(source)
    {
    }

    // The last level's rows from `first` to before `end`.
    void run(int first, int end)
    {
        int y = startAt(m_last, first);
        for (int number = m_last - 1; number >= 1; number--)
            y = startAt(number, 2 * y - 1);
        make(m_last, end - 1);
    }

private:
    void make(int number, int upTo)
    {
        while (const auto y = takeNext(number, upTo)) {
            if (number == 1) {
                joinPictureRows(*y);
                joinLine({0, m_source.width() - 1}, level(1), *y);
            } else {
                make(number - 1, 2 * *y + 2);
                joinLevelRows(level(number - 1), *y);
                joinLine(level(number - 1).x, level(number), *y);
            }
        }
    }

    void joinPictureRows(int y)
    {
        const std::uint8_t* four[4];
        for (int i = 0; i < 4; i++)
            four[i] = bytesOf(m_source, std::clamp(2 * y - 1 + i, 0, m_source.height() - 1));
        m_kernels.joinByteRows(four, m_line, lanes(m_source.width()));
    }

    void joinLevelRows(const Level& from, int y)
    {
        const Word* four[4];
        for (int i = 0; i < 4; i++)
            four[i] = from.row(2 * y - 1 + i);
        m_kernels.joinRows(four, m_line, lanes(from.x.count()));
    }

    // The four rows on the line, still as wide as the level above, become row `y`.
    void joinLine(const Extent& from, const Level& half, int y)
    {
        extend(m_line, from.count(), 4);
        m_kernels.joinColumns(m_line + distance(2 * half.x.first - from.first), half.row(y), lanes(half.x.count()));
    }

    const Bitmap& m_source;
};

// And back up.
class Ascent : public Passage {
public:
    Ascent(Bitmap& result, int last, const Band& band, const RowKernels& kernels)
        : Passage(last, band, kernels), m_result(result)
    {
    }

    // The picture's rows from `first` to before `end`.
    void run(int first, int end)
    {
        int start = first;
        for (int number = 1; number < m_last; number++)
            start = startAt(number, halfDown(start - 1));
        const Extent& half = level(1).x;
        for (int y = first; y < end; y++) {
            mixLine(1, y);
            m_kernels.spreadColumnsToBytes(m_line - distance(half.first), bytesOf(m_result, y),
                                           lanes(halfUp(m_result.width())));
        }
    }

private:
    void make(int number, int upTo)
    {
        const Level& made = level(number);
        // Pixels come in pairs, of which the first may lie in the margin before the row.
        const Extent pairs{halfDown(made.x.first), halfDown(made.x.last)};
        while (const auto y = takeNext(number, upTo)) {
            mixLine(number + 1, *y);
            m_kernels.spreadColumns(m_line + distance(pairs.first - level(number + 1).x.first),
                                    made.row(*y) + distance(2 * pairs.first - made.x.first), lanes(pairs.count()));
        }
    }

    // Row `y` of the level above, still as narrow as this one, on the line.
    void mixLine(int number, int y)
    {
        const int near = halfDown(y);
        const int far = y % 2 == 0 ? near - 1 : near + 1;
        if (number < m_last)
            make(number, std::max(near, far));
        const Level& from = level(number);
        m_kernels.mixRows(from.row(near), from.row(far), m_line, lanes(from.x.count()));
    }

    Bitmap& m_result;
};

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

void gaussianBlur(const Bitmap& source, Bitmap& result, const GaussianPlan& plan, FilterScratch& scratch,
                  const RowKernels& kernels, FilterWorkers* workers)
{
    if (plan.isNeutral() || source.isEmpty()) {
        copyPixels(source, result);
        return;
    }
    const int bandCount = workers ? workers->bandCount(source.width(), source.height()) : 1;
    const Workspace workspace(source, plan, bandCount, scratch);
    // Does the rows from `first` to before `end` in bands, and returns when all are done.
    const auto inBands = [&](int first, int end, const auto& work) {
        const auto doBand = [&](int band) {
            const int from = first + (end - first) * band / bandCount;
            const int to = first + (end - first) * (band + 1) / bandCount;
            if (from < to)
                work(workspace.bands[static_cast<std::size_t>(band)], from, to);
        };
        if (bandCount == 1)
            doBand(0);
        else
            workers->run(doBand);
    };
    const auto convolve = [&](const auto& rows) {
        inBands(0, rows.height(), [&](const Band& band, int from, int to) {
            Convolution(rows, from, to, plan, band, kernels).takeSurroundings();
        });
        inBands(0, rows.height(),
                [&](const Band& band, int from, int to) { Convolution(rows, from, to, plan, band, kernels).run(); });
    };
    if (plan.levels == 0) {
        convolve(PictureRows{source, result, kernels});
        return;
    }

    const Level& last = workspace.bands[0].levels[static_cast<std::size_t>(plan.levels)];
    inBands(last.y.first, last.y.last + 1,
            [&](const Band& band, int from, int to) { Descent(source, plan.levels, band, kernels).run(from, to); });
    convolve(LevelRows{last});
    inBands(0, result.height(),
            [&](const Band& band, int from, int to) { Ascent(result, plan.levels, band, kernels).run(from, to); });
}

} // namespace RVCore
