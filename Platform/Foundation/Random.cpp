#include <Foundation/Random.h>

#include <random>
#include <utility>

namespace RVCore {

namespace {

std::function<std::uint32_t(std::uint32_t)>& scriptedSource()
{
    thread_local std::function<std::uint32_t(std::uint32_t)> source;
    return source;
}

} // namespace

std::uint32_t arc4randomUniform(std::uint32_t bound)
{
    if (const auto& source = scriptedSource())
        return source(bound);
    if (bound < 2)
        return 0;
    thread_local std::random_device device; // the system's own source, without bias by construction
    return std::uniform_int_distribution<std::uint32_t>(0, bound - 1)(device);
}

ScopedRandomSource::ScopedRandomSource(std::function<std::uint32_t(std::uint32_t)> draw)
    : m_previous(std::exchange(scriptedSource(), std::move(draw)))
{
}

ScopedRandomSource::~ScopedRandomSource()
{
    scriptedSource() = std::move(m_previous);
}

} // namespace RVCore
