#pragma once

#include "Benchmarks.h"

#include <CoreGraphics/Bitmap.h>

#include <memory>

namespace RVCore {

// Somebody else's blur of a picture, on one thread.
class BlurPeer {
public:
    virtual ~BlurPeer() = default;
    virtual std::string name() const = 0;
    // The median of so many rounds.
    virtual double nanosecondsOfBlur(int rounds) = 0;
    virtual Bitmap blurred() = 0;
};

std::unique_ptr<BlurPeer> makeQGraphicsBlurPeer(const Bitmap& picture, double sigma);
std::unique_ptr<BlurPeer> makeOpenCVPeer(const Bitmap& picture, double sigma);

// The blur radius at which a QGraphicsBlurEffect has this standard deviation: measured on how it spreads an edge.
double qGraphicsBlurRadius(double sigma);

} // namespace RVCore
