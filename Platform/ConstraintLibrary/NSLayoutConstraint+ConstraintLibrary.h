#pragma once

#include <AppKit/NSLayoutConstraint.h>
#include <ConstraintLibrary/Forward.h>

namespace RVCore {

// Installs the constraint in the nearest common ancestor of its views; nothing happens when it is installed already.
// Raises NSInvalidArgumentException when there is no such ancestor. The blocks that are open do not matter.
void autoInstall(NSLayoutConstraint& constraint);

// Takes the constraint out; nothing happens when it is not installed.
void autoRemove(NSLayoutConstraint& constraint);

// Publishes these operations and those of ConstraintBlocks.h; runs once, before main.
bool publishConstraintOperations();
inline const bool constraintOperationsPublished = publishConstraintOperations();

} // namespace RVCore
