#pragma once

#include <ConstraintLibrary/Forward.h>
#include <Foundation/NSArray.h>

namespace RVCore {

// Operations on a list of constraints. A list with anything else in it raises NSInvalidArgumentException.

// Installs every constraint, in order. When one cannot be installed, those that this call installed are taken out
// again and the exception goes on.
void autoInstallConstraints(NSArray& constraints);

// Takes every constraint out, in order.
void autoRemoveConstraints(NSArray& constraints);

// Gives every constraint the identifier; returns the same list.
std::shared_ptr<NSArray> autoIdentifyConstraints(NSArray& constraints, const std::string& identifier);

// Publishes these operations; runs once, before main.
bool publishConstraintArrayOperations();
inline const bool constraintArrayOperationsPublished = publishConstraintArrayOperations();

} // namespace RVCore
