#include <ConstraintLibrary/ConstraintBlocks.h>
#include <ConstraintLibrary/ConstraintCreation.h>

namespace RVCore {

LayoutConstraints autoCreateAndInstallConstraints(const std::function<void()>& closure)
{
    return runConstraintBlock("autoCreateAndInstallConstraints", {}, closure);
}

LayoutConstraints autoCreateConstraintsWithoutInstalling(const std::function<void()>& closure)
{
    return runConstraintBlock("autoCreateConstraintsWithoutInstalling", {.withoutInstalling = true}, closure);
}

void autoSetPriorityForConstraints(NSLayoutPriority priority, const std::function<void()>& closure)
{
    requirePriority("autoSetPriorityForConstraints", priority);
    runConstraintBlock("autoSetPriorityForConstraints", {.priority = priority}, closure);
}

} // namespace RVCore
