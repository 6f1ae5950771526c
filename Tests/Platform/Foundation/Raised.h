#pragma once

#include <Foundation/NSException.h>

#include <string>

namespace RVCore {

// The "<name>: <reason>" of what the operation raises; "nothing" when it raises nothing.
template <class Operation> std::string raised(const Operation& operation)
{
    try {
        operation();
    } catch (const NSException& exception) {
        return exception.what();
    }
    return "nothing";
}

} // namespace RVCore
