#include "BlurPeers.h"

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

void benchmarkSigma(int sigma, const Bitmap& screen, const Bitmap& part)
{
    const std::string name = "blur.1080p.sigma" + std::to_string(sigma);
    constexpr int rounds = 15;
    const GaussianPlan plan(sigma);
    FilterScratch scratch;

    Bitmap picture;
    const auto restore = [&] { picture = copied(screen); };
    const double ours = nanoseconds(rounds, restore, [&] { gaussianBlur(picture, plan, scratch); });
    report(name + ".ms", ours / 1e6);

    const auto expected = convolved(part, sigma);
    const int margin = std::min(4 * sigma, 160);
    Bitmap blurred = copied(part);
    gaussianBlur(blurred, plan, scratch);
    const BlurError error = errorOf(blurred, expected, margin);
    if (error.largest > 2)
        fatalError(name + " is not the Gaussian");
    reportError(name, error);

    for (const auto& makePeer : {&makeQGraphicsBlurPeer, &makeOpenCVPeer}) {
        const auto peer = makePeer(screen, sigma);
        const double theirs = peer->nanosecondsOfBlur(rounds);
        report(name + "." + peer->name() + "_ms", theirs / 1e6);
        report(name + ".vs_" + peer->name(), ours / theirs);
        reportError(name + "." + peer->name(), errorOf(makePeer(part, sigma)->blurred(), expected, margin));
    }
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
