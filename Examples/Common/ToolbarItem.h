#pragma once

#include <RVCore.h>

namespace Examples {

// An item that sends the action to the target; its label identifies it.
inline std::shared_ptr<RVCore::NSToolbarItem> makeToolbarItem(const std::string& label,
                                                              const std::shared_ptr<RVCore::NSImage>& image,
                                                              const RVCore::ObjectRef& target,
                                                              const RVCore::Selector& action)
{
    auto item = RVCore::make<RVCore::NSToolbarItem>(label);
    item->setLabel(label);
    item->setImage(image);
    item->setTarget(target);
    item->setAction(action);
    return item;
}

} // namespace Examples
