#pragma once

#include <Foundation/NSException.h>
#include <Foundation/NSObject.h>

#include <string>

namespace RVCore {

// Publishes the property `delegate` of a class whose delegates are of a type without selectors. By name one has to be
// an object as well; an object of another type raises NSInvalidArgumentException.
template <class Delegate, class Owner, class Publisher>
void publishDelegate(Publisher& publish, const char* className, const char* delegateName)
{
    const auto read = [](Owner& owner) { return std::dynamic_pointer_cast<NSObject>(owner.delegate()); };
    const auto write = [className, delegateName](Owner& owner, const ObjectRef& object) {
        const auto delegate = std::dynamic_pointer_cast<Delegate>(object);
        if (object && !delegate)
            raiseInvalidArgument(std::string(className) + ".setDelegate:",
                                 object->description() + " is no " + delegateName);
        owner.setDelegate(delegate);
    };
    publish.property("delegate", read, write);
}

} // namespace RVCore
