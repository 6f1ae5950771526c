#pragma once

#include <functional>

namespace RVCore {

// Calls what the user or assistive technology is behind. Nobody of the program is there to catch an NSException then,
// and the program is not to end for it: it is printed on standard error, as "name: reason". Whatever else is thrown
// passes through.
void callReportingExceptions(const std::function<void()>& closure);

} // namespace RVCore
