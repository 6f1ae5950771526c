#include <Foundation/NSException.h>

#include <array>
#include <charconv>
#include <cmath>

namespace RVCore {

NSException::NSException(std::string_view name, std::string reason)
    : m_name(name), m_reason(std::move(reason)), m_text(m_name + ": " + m_reason)
{
}

void raiseInvalidArgument(std::string_view operation, std::string_view problem)
{
    throw NSException(NSInvalidArgumentException, std::string(operation) + ": " + std::string(problem));
}

void requireFinite(std::string_view operation, std::string_view name, double value)
{
    if (!std::isfinite(value))
        raiseInvalidArgument(operation, std::string(name) + " must be finite, got " + numberText(value));
}

void requireNotNegative(std::string_view operation, std::string_view name, double value)
{
    requireFinite(operation, name, value);
    if (value < 0)
        raiseInvalidArgument(operation, std::string(name) + " must not be negative, got " + numberText(value));
}

std::string numberText(double value)
{
    if (value == 0)
        return "0"; // also for negative zero, which no reader of a dump wants to see
    if (std::isnan(value))
        return "nan"; // whatever its sign
    std::array<char, 32> buffer;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value).ptr;
    return std::string(buffer.data(), end);
}

} // namespace RVCore
