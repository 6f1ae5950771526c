#pragma once

#include <cstdint>
#include <functional>

namespace RVCore {

// A uniform random number in [0, bound); 0 for a bound of 0. Not reproducible, and needs no seed.
std::uint32_t arc4randomUniform(std::uint32_t bound);

// While it lives, `draw` answers every call of arc4randomUniform on this thread, so that a test can script draws.
class ScopedRandomSource {
public:
    explicit ScopedRandomSource(std::function<std::uint32_t(std::uint32_t bound)> draw);
    ~ScopedRandomSource();
    ScopedRandomSource(const ScopedRandomSource&) = delete;
    ScopedRandomSource& operator=(const ScopedRandomSource&) = delete;

private:
    std::function<std::uint32_t(std::uint32_t)> m_previous;
};

} // namespace RVCore
