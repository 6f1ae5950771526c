#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace RVCore {

inline constexpr std::string_view NSInvalidArgumentException = "NSInvalidArgumentException";
inline constexpr std::string_view NSRangeException = "NSRangeException";
inline constexpr std::string_view NSUnknownKeyException = "NSUnknownKeyException";

// What the platform raises on bad input. Nothing has been changed when it reaches the caller.
class NSException : public std::exception {
public:
    NSException(std::string_view name, std::string reason);

    const std::string& name() const { return m_name; }
    // Names the operation, what was wrong with which value, and what was expected.
    const std::string& reason() const { return m_reason; }
    // "<name>: <reason>"
    const char* what() const noexcept override { return m_text.c_str(); }

private:
    std::string m_name;
    std::string m_reason;
    std::string m_text;
};

// Raises NSInvalidArgumentException with "<operation>: <problem>".
[[noreturn]] void raiseInvalidArgument(std::string_view operation, std::string_view problem);

// Raises NSInvalidArgumentException unless the value is finite; `name` says which value of the operation it is.
void requireFinite(std::string_view operation, std::string_view name, double value);
// The same also for a value below 0.
void requireNotNegative(std::string_view operation, std::string_view name, double value);

// The shortest text that reads back as the same number; "nan", "inf" and "-inf" for the others.
std::string numberText(double value);

} // namespace RVCore
