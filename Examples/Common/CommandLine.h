#pragma once

#include <CoreGraphics/ControlDescription.h>

#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

namespace Examples {

// A command line that makes no sense; the text says what was wrong.
class UsageError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Goes through the arguments after a program's name:
//
//     while (line.next()) {
//         if (!line.isOption())
//             options.file = line.argument();
//         else if (line.is("--scale"))
//             options.scale = line.number(1, 4);
//         else
//             line.refuse();
//     }
//
// What begins with a dash is an option, up to an argument "--". Values that are missing or wrong throw UsageError.
class CommandLine {
public:
    explicit CommandLine(std::vector<std::string> arguments) : m_arguments(std::move(arguments)) {}

    bool next(); // false at the end
    const std::string& argument() const { return m_arguments[m_index]; }
    bool isOption() const { return m_hasOptions && !argument().empty() && argument()[0] == '-'; }
    bool is(const char* option) const { return argument() == option; }
    [[noreturn]] void refuse() const; // the option: there is none of that name

    // What follows the option.
    const std::string& value(); // not empty
    double number(double smallest, double largest);
    std::size_t count(std::size_t smallest, std::size_t largest);
    RVCore::Appearance appearance(); // "light" or "dark"

private:
    std::vector<std::string> m_arguments;
    std::size_t m_index = static_cast<std::size_t>(-1); // before the first one
    bool m_hasOptions = true;
};

inline constexpr int statusFailure = 1;
inline constexpr int statusUsage = 2;

// Prints "Program: problem" on standard error and returns the status.
int fail(const std::string& program, int status, const std::string& problem);

// Runs the program and turns what it throws into a message and an exit status; after a UsageError the usage follows.
int runProgram(const std::string& program, const std::string& usage, const std::function<int()>& run);

} // namespace Examples
