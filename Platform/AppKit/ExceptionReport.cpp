#include <AppKit/ExceptionReport.h>
#include <Foundation/NSException.h>

#include <cstdio>

namespace RVCore {

void callReportingExceptions(const std::function<void()>& closure)
{
    try {
        closure();
    } catch (const NSException& exception) {
        std::fprintf(stderr, "%s\n", exception.what());
    }
}

} // namespace RVCore
