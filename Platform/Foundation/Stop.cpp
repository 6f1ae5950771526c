#include <Foundation/Stop.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace RVCore {

namespace {

[[noreturn]] void printAndAbort(const std::string& line)
{
    std::fflush(stdout);
    std::fputs((line + "\n").c_str(), stderr);
    std::abort();
}

} // namespace

void fatalError(std::string_view message, std::string_view file, unsigned line)
{
    printAndAbort(std::string(file) + ":" + std::to_string(line) + ": Fatal error: " + std::string(message));
}

void fatalError(std::string_view message, const std::source_location& place)
{
    fatalError(message, place.file_name(), place.line());
}

void unimplementedInitializer(std::string_view className, std::string_view initializer)
{
    printAndAbort("Fatal error: Use of unimplemented initializer '" + std::string(initializer) + "' for class '" +
                  std::string(className) + "'");
}

} // namespace RVCore
