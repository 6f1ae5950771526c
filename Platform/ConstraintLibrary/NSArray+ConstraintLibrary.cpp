#include <AppKit/NSLayoutConstraint.h>
#include <ConstraintLibrary/NSArray+ConstraintLibrary.h>

namespace RVCore {

namespace {

LayoutConstraints constraintsOf(const char* operation, const NSArray& array)
{
    LayoutConstraints result;
    result.reserve(array.count());
    for (const Value& element : array.elements()) {
        const ObjectRef* object = element.object();
        auto constraint = object ? std::dynamic_pointer_cast<NSLayoutConstraint>(*object) : nullptr;
        if (!constraint)
            raiseInvalidArgument(operation, "element " + std::to_string(result.size()) +
                                                " must be NSLayoutConstraint, got " + element.kind());
        result.push_back(std::move(constraint));
    }
    return result;
}

} // namespace

void autoInstallConstraints(NSArray& constraints)
{
    LayoutConstraints installed;
    try {
        for (const auto& constraint : constraintsOf("autoInstallConstraints", constraints)) {
            if (constraint->isActive())
                continue;
            constraint->setActive(true);
            installed.push_back(constraint);
        }
    } catch (...) {
        for (const auto& constraint : installed)
            constraint->setActive(false);
        throw;
    }
}

void autoRemoveConstraints(NSArray& constraints)
{
    for (const auto& constraint : constraintsOf("autoRemoveConstraints", constraints))
        constraint->setActive(false);
}

std::shared_ptr<NSArray> autoIdentifyConstraints(NSArray& constraints, const std::string& identifier)
{
    for (const auto& constraint : constraintsOf("autoIdentifyConstraints", constraints))
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
