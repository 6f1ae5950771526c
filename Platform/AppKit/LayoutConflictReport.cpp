#include <AppKit/LayoutConflictReport.h>
#include <AppKit/LayoutTag.h>
#include <AppKit/LayoutWords.h>

namespace RVCore {

std::string describeConflict(const LayoutConflict& conflict, const NSView& root, const LayoutEngine& engine)
{
    const LayoutWords words(root, engine);
    std::string report = "Layout conflict: these required constraints contradict each other:\n";
    for (const std::uint64_t tag : conflict.constraints) {
        const NSLayoutConstraint* constraint = LayoutTag::constraint(tag);
        report += "    " + words.role(tag) + ": " + words.law(tag) +
                  (constraint ? ", owned by " + words.names().nameOf(*constraint->holder()) : ", the view's own") +
                  "\n";
    }
    return report + "Left out, because it was installed last: " + words.role(conflict.leftOut) + ": " +
           words.law(conflict.leftOut) + "\n";
}

} // namespace RVCore
