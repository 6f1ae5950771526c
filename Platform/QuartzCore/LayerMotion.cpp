#include <QuartzCore/LayerMotion.h>

#include <algorithm>

namespace RVCore {

namespace {

thread_local LayerMotion* currentMotion = nullptr;

} // namespace

void LayerMotion::begin()
{
    const DispatchTime own = DispatchTime::now() + duration;
    end = end ? std::max(*end, own) : own;
}

LayerMotion* LayerMotion::current()
{
    return currentMotion;
}

void LayerMotion::setCurrent(LayerMotion* motion)
{
    currentMotion = motion;
}

} // namespace RVCore
