#include <ConstraintLibrary/ConstraintBlocks.h>
#include <ConstraintLibrary/ConstraintCreation.h>
#include <Foundation/InternedString.h>

namespace RVCore {

LayoutConstraints autoCreateAndInstallConstraints(const std::function<void()>& closure)
{
    LayoutConstraints created;
    runConstraintBlock("autoCreateAndInstallConstraints", {}, closure, &created);
    return created;
}

LayoutConstraints autoCreateConstraintsWithoutInstalling(const std::function<void()>& closure)
{
    LayoutConstraints created;
    runConstraintBlock("autoCreateConstraintsWithoutInstalling", {.withoutInstalling = true}, closure, &created);
    return created;
}

void autoSetPriorityForConstraints(NSLayoutPriority priority, const std::function<void()>& closure)
{
    requirePriority("autoSetPriorityForConstraints", priority);
    runConstraintBlock("autoSetPriorityForConstraints", {.priority = priority}, closure);
}

void autoSetIdentifierForConstraints(const std::string& identifier, const std::function<void()>& closure)
{
    runConstraintBlock("autoSetIdentifierForConstraints", {.identifier = ShortName(identifier)}, closure);
}

} // namespace RVCore
