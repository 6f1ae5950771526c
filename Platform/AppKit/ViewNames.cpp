#include <AppKit/NSView.h>
#include <AppKit/ViewNames.h>

namespace RVCore {

ViewNames::ViewNames(const NSView& root)
{
    add(root);
}

void ViewNames::add(const NSView& view)
{
    m_numbers.emplace(&view, m_numbers.size() + 1);
    for (const auto& subview : view.subviews())
        add(*subview);
}

std::string ViewNames::nameOf(const NSView& view) const
{
    const std::string name = view.classObject().name() + " ";
    return view.identifier().empty() ? name + "#" + std::to_string(numberOf(view))
                                     : name + "\"" + view.identifier() + "\"";
}

} // namespace RVCore
