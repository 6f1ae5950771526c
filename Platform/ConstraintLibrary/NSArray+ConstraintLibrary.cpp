#include <AppKit/NSLayoutConstraint.h>
#include <ConstraintLibrary/NSArray+ConstraintLibrary.h>

namespace RVCore {

namespace {

// All of them checked; the list keeps them.
std::vector<NSLayoutConstraint*> constraintsOf(const char* operation, const NSArray& array)
{
    std::vector<NSLayoutConstraint*> result;
    result.reserve(array.count());
    for (const Value& element : array.elements()) {
        const ObjectRef* object = element.object();
        if (!object || &(*object)->classObject() != &NSLayoutConstraint::staticClass())
            raiseInvalidArgument(operation, "element " + std::to_string(result.size()) +
                                                " must be NSLayoutConstraint, got " + element.kind());
        result.push_back(static_cast<NSLayoutConstraint*>(object->get()));
    }
    return result;
}

} // namespace

void autoInstallConstraints(NSArray& constraints)
{
    std::vector<NSLayoutConstraint*> installed;
    try {
        for (NSLayoutConstraint* constraint : constraintsOf("autoInstallConstraints", constraints)) {
            if (constraint->isActive())
                continue;
            constraint->setActive(true);
            installed.push_back(constraint);
        }
    } catch (...) {
        for (NSLayoutConstraint* constraint : installed)
            constraint->setActive(false);
        throw;
    }
}

void autoRemoveConstraints(NSArray& constraints)
{
    for (NSLayoutConstraint* constraint : constraintsOf("autoRemoveConstraints", constraints))
        constraint->setActive(false);
}

std::shared_ptr<NSArray> autoIdentifyConstraints(NSArray& constraints, const std::string& identifier)
{
    for (NSLayoutConstraint* constraint : constraintsOf("autoIdentifyConstraints", constraints))
        constraint->setIdentifier(identifier);
    return shared(constraints);
}

bool publishConstraintArrayOperations()
{
    return addCategory<NSArray>("ConstraintLibrary", [](auto& publish) {
        publish.method("autoInstallConstraints", &autoInstallConstraints);
        publish.method("autoRemoveConstraints", &autoRemoveConstraints);
        publish.method("autoIdentifyConstraints:", &autoIdentifyConstraints);
    });
}

} // namespace RVCore
