#pragma once

#include <compare>

namespace RVCore {

// A moment on the program's clock.
class DispatchTime {
public:
    static DispatchTime now();
    // By its seconds on DispatchClock. One that is no number raises NSInvalidArgumentException.
    explicit DispatchTime(double seconds);

    // A number of seconds that is not finite raises NSInvalidArgumentException.
    DispatchTime operator+(double seconds) const;
    double operator-(DispatchTime earlier) const { return m_seconds - earlier.m_seconds; }
    auto operator<=>(const DispatchTime&) const = default;
    double seconds() const { return m_seconds; }

private:
    double m_seconds;
};

} // namespace RVCore
