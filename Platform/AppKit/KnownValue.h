#pragma once

#include <Foundation/NSException.h>

#include <string>
#include <string_view>

namespace RVCore {

// Raises NSInvalidArgumentException unless the enumeration has the value: callers by name send numbers.
template <class Enumeration>
void requireKnown(std::string_view operation, Enumeration value, Enumeration first, Enumeration last)
{
    if (value < first || value > last)
        raiseInvalidArgument(operation, "takes " + std::to_string(static_cast<int>(first)) + " to " +
                                            std::to_string(static_cast<int>(last)) + ", got " +
                                            std::to_string(static_cast<int>(value)));
}

} // namespace RVCore
