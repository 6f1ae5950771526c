#pragma once

#include <AppKit/NSLayoutConstraint.h>
#include <ConstraintLibrary/Forward.h>

#include <functional>

namespace RVCore {

// Blocks of constraint-building calls. A block acts on every auto… operation on views that runs until its closure
// returns, however deep in calls. Blocks nest in any order, and any nesting gives the same constraints:
//
//   - every enclosing collecting block has a constraint in its result, in order of creation;
//   - a constraint is installed in the moment it is created, unless any enclosing block says without installing;
//   - its priority is that of the innermost priority block, and 1000 outside all of them;
//   - its identifier is that of the innermost identifier block, and outside all of them the role that the operation
//     gives it: "pin edge", "pin to superview", "align axis", "center", "dimension" or "size".
//
// When a closure throws, the constraints created in it are taken out again and belong to no enclosing block's
// result; what else the operations did (masks no longer translated, hugging priorities) stays. A closure that is not
// there raises NSInvalidArgumentException. Blocks of one thread do not act on another's constraints.

// Creates, installs and returns constraints. Published as autoCreateAndInstallConstraints: on the class of
// constraints, like the ones below.
LayoutConstraints autoCreateAndInstallConstraints(const std::function<void()>& closure);

// Creates and returns constraints that are not installed; nothing else holds them.
LayoutConstraints autoCreateConstraintsWithoutInstalling(const std::function<void()>& closure);

// Gives constraints their priority, which lies in (0, 1000]; any other raises NSInvalidArgumentException. Published
// as autoSetPriority:forConstraints:.
void autoSetPriorityForConstraints(NSLayoutPriority priority, const std::function<void()>& closure);

// Names the role of constraints, for dumps and reports; an empty identifier leaves them without a name. Published as
// autoSetIdentifier:forConstraints:.
void autoSetIdentifierForConstraints(const std::string& identifier, const std::function<void()>& closure);

} // namespace RVCore
