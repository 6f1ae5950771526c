#include "Benchmarks.h"
#include "BlurPeers.h"

#include <CoreImage/FilterWorkers.h>
#include <CoreImage/GaussianBlur.h>
#include <Foundation/Stop.h>
#include <Platform/CoreImage/Pictures.h>

#include <algorithm>
#include <cmath>
#include <random>

namespace RVCore {

namespace {

// Fields of one colour with sharp edges, as interfaces have them, and noise, as photographs have it.
Bitmap makeScreen(int width, int height)
{
    std::mt19937 random(11);
    std::vector<std::uint32_t> fields(64);
    for (std::uint32_t& field : fields)
        field = 0xff000000 | (static_cast<std::uint32_t>(random()) & 0xffffff);
    return makePicture(width, height, [&](int x, int y) {
        const std::uint32_t field = fields[static_cast<std::size_t>((x / 61 + y / 37 * 7) % 64)];
        return (x / 200 + y / 150) % 2 ? field : 0xff000000 | (static_cast<std::uint32_t>(random()) & 0xffffff);
    });
}

struct BlurError {
    double largest = 0;
    double mean = 0;
};

// The peers make different things of what is beyond the edges, so a margin is left out.
BlurError errorOf(const Bitmap& blurred, const std::vector<double>& expected, int margin)
{
    BlurError error;
    double count = 0;
    for (int y = margin; y < blurred.height() - margin; y++) {
        for (int x = margin; x < blurred.width() - margin; x++) {
            const std::size_t at =
                static_cast<std::size_t>(y) * static_cast<std::size_t>(blurred.width()) + static_cast<std::size_t>(x);
            for (int index = 0; index < 4; index++) {
                const int got = channel(blurred.row(y)[static_cast<std::size_t>(x)], index);
                const double difference = std::abs(got - expected[4 * at + static_cast<std::size_t>(index)]);
                error.largest = std::max(error.largest, difference);
                error.mean += difference;
                count++;
            }
        }
    }
    error.mean /= count;
    return error;
}

void reportError(const std::string& name, const BlurError& error)
{
    report(name + ".largest_error", error.largest);
    report(name + ".mean_error", error.mean);
}

// Times of something that is done again and again.
class Samples {
public:
    template <class Work> void add(Work&& work) { m_taken.push_back(processorMilliseconds(work)); }

    double median() const { return percentile(m_taken, 0.5); }

private:
    std::vector<double> m_taken; // milliseconds
};

struct Contestant {
    std::unique_ptr<BlurPeer> peer;
    Samples blurs;
    Samples rest;

    double milliseconds() const { return blurs.median() - rest.median(); }
};

// One after the other in each round, so that the machine is the same for all, and each on one thread.
double runRounds(const Bitmap& screen, const GaussianPlan& plan, std::vector<Contestant>& contestants)
{
    FilterScratch scratch;
    Samples ours;
    for (int round = 0; round < 15; round++) {
        Bitmap picture = copied(screen);
        ours.add([&] { gaussianBlur(picture, plan, scratch); });
        for (Contestant& contestant : contestants) {
            contestant.rest.add([&] { contestant.peer->doWithoutBlur(); });
            contestant.blurs.add([&] { contestant.peer->blur(); });
        }
    }
    return ours.median();
}

// By the clock, as threads would each add their processor's time.
double elapsedMilliseconds(const Bitmap& screen, const GaussianPlan& plan, int threads)
{
    FilterWorkers workers(threads);
    FilterScratch scratch;
    Bitmap picture;
    return nanoseconds(
               15, [&] { picture = copied(screen); },
               [&] { gaussianBlur(picture, plan, scratch, rowKernels(), &workers); }) /
           1e6;
}

void benchmarkSigma(int sigma, const Bitmap& screen, const Bitmap& part)
{
    const std::string name = "blur.1080p.sigma" + std::to_string(sigma);
    const GaussianPlan plan(sigma);
    const auto expected = convolved(part, sigma);
    const int margin = std::min(4 * sigma, 160);
    FilterScratch scratch;
    Bitmap blurred = copied(part);
    gaussianBlur(blurred, plan, scratch);
    const BlurError error = errorOf(blurred, expected, margin);
    if (error.largest > 2)
        fatalError(name + " is not the Gaussian");

    std::vector<Contestant> contestants;
    for (const auto& makePeer : {&makeQGraphicsBlurPeer, &makeOpenCVPeer})
        contestants.push_back({.peer = makePeer(screen, sigma), .blurs = {}, .rest = {}});
    const double ours = runRounds(screen, plan, contestants);
    report(name + ".ms", ours);
    report(name + ".elapsed_ms", elapsedMilliseconds(screen, plan, 1));
    report(name + ".all_cores_elapsed_ms", elapsedMilliseconds(screen, plan, FilterWorkers::shared().shareCount()));
    reportError(name, error);
    for (const Contestant& contestant : contestants) {
        const std::string peer = contestant.peer->name();
        std::string time = name;
        report(time.append(".").append(peer).append("_ms"), contestant.milliseconds());
        std::string ratio = name;
        report(ratio.append(".vs_").append(peer), ours / contestant.milliseconds());
    }
    reportError(name + ".qgraphicsblur", errorOf(makeQGraphicsBlurPeer(part, sigma)->blurred(), expected, margin));
    reportError(name + ".opencv", errorOf(makeOpenCVPeer(part, sigma)->blurred(), expected, margin));
}

} // namespace

void benchmarkBlur()
{
    const Bitmap screen = makeScreen(1920, 1080);
    const Bitmap part = makeScreen(640, 480);
    report("blur.qgraphicsblur_radius_per_sigma", qGraphicsBlurRadius(8) / 8);
    for (const int sigma : {2, 8, 32})
        benchmarkSigma(sigma, screen, part);
}

} // namespace RVCore
