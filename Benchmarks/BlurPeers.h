#pragma once

#include <CoreGraphics/Bitmap.h>

#include <memory>
#include <string>

namespace RVCore {

// Somebody else's blur of a picture, on one thread.
class BlurPeer {
public:
    virtual ~BlurPeer() = default;
    virtual std::string name() const = 0;
    // From now on it blurs with this standard deviation, in pixels.
    virtual void setSigma(double sigma) = 0;
    // Blurs the picture once more.
    virtual void blur() = 0;
    // Does what `blur` has to do besides.
    virtual void doWithoutBlur() {}
    virtual Bitmap blurred() = 0;
};

std::unique_ptr<BlurPeer> makeQGraphicsBlurPeer(const Bitmap& picture, double sigma);
std::unique_ptr<BlurPeer> makeOpenCVPeer(const Bitmap& picture, double sigma);

// The blur radius at which a QGraphicsBlurEffect has this standard deviation: measured on how it spreads an edge.
double qGraphicsBlurRadius(double sigma);

} // namespace RVCore
