#include <QuartzCore/LayerMotion.h>

#include <algorithm>
#include <atomic>
#include <utility>

namespace RVCore {

namespace {

thread_local LayerMotion* currentMotion = nullptr;
std::atomic<bool> isMovementReduced = false;

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

LayerMotion::Scope::Scope(LayerMotion* motion) : m_before(std::exchange(currentMotion, motion)) {}

LayerMotion::Scope::~Scope()
{
    currentMotion = m_before;
}

bool LayerMotion::reducesMovement()
{
    return isMovementReduced;
}

void LayerMotion::setReducesMovement(bool reduces)
{
    isMovementReduced = reduces;
}

} // namespace RVCore
