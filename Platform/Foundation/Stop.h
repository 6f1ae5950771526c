#pragma once

#include <source_location>
#include <string_view>

namespace RVCore {

// Stops the program after a programming error: prints "<file>:<line>: Fatal error: <message>" to standard
// error and aborts. Every deliberate stop of the framework and its platform comes through here.
[[noreturn]] void fatalError(std::string_view message, std::string_view file, unsigned line);

// The same, reporting the caller's own place.
[[noreturn]] void fatalError(std::string_view message,
                             const std::source_location& place = std::source_location::current());

// The stop of an inherited initialiser that a class does not offer:
// "Fatal error: Use of unimplemented initializer '<initializer>' for class '<className>'".
[[noreturn]] void unimplementedInitializer(std::string_view className, std::string_view initializer);

} // namespace RVCore
