#include <ConstraintLibrary/ConstraintBlocks.h>
#include <ConstraintLibrary/NSLayoutConstraint+ConstraintLibrary.h>

namespace RVCore {

void autoInstall(NSLayoutConstraint& constraint)
{
    constraint.setActive(true);
}

void autoRemove(NSLayoutConstraint& constraint)
{
    constraint.setActive(false);
}

bool publishConstraintOperations()
{
    using Closure = std::function<void()>;
    return addCategory<NSLayoutConstraint>("ConstraintLibrary", [](auto& publish) {
        publish.method("autoInstall", &autoInstall);
        publish.method("autoRemove", &autoRemove);
        publish.classMethod("autoCreateAndInstallConstraints:", [](const Class&, const Closure& closure) {
            return autoCreateAndInstallConstraints(closure);
        });
        publish.classMethod("autoCreateConstraintsWithoutInstalling:", [](const Class&, const Closure& closure) {
            return autoCreateConstraintsWithoutInstalling(closure);
        });
        publish.classMethod("autoSetPriority:forConstraints:",
                            [](const Class&, NSLayoutPriority priority, const Closure& closure) {
                                autoSetPriorityForConstraints(priority, closure);
                            });
        publish.classMethod("autoSetIdentifier:forConstraints:",
                            [](const Class&, const std::string& identifier, const Closure& closure) {
                                autoSetIdentifierForConstraints(identifier, closure);
                            });
    });
}

} // namespace RVCore
