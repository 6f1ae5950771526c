#include <AppKit/NSView.h>
#include <AppKit/NSViewController.h>
#include <ConstraintLibrary/ConstraintLibrary.h>
#include <Extensions/NSPopover+RVCore.h>
#include <Foundation/NSException.h>

namespace RVCore {

void configurePopover(NSPopover& popover, const PopoverSettings& settings)
{
    if (!settings.view)
        raiseInvalidArgument("NSPopover.initWithView:behavior:delegate:", "there is no view");
    popover.setBehavior(settings.behavior);
    popover.setDelegate(settings.delegate);
    const auto controller = make<NSViewController>();
    controller->setView(make<NSView>());
    controller->view()->addSubview(settings.view);
    autoPinEdgesToSuperviewEdges(*settings.view);
    popover.setContentViewController(controller);
}

void show(NSPopover& popover, NSView& anchor, NSRectEdge preferredEdge, CGPoint offset)
{
    CGRect rect = anchor.bounds();
    rect.origin.x += offset.x;
    rect.origin.y += offset.y;
    popover.showRelativeToRect(rect, anchor, preferredEdge);
}

bool publishPopoverOperations()
{
    return addCategory<NSPopover>("RVCore", [](auto& publish) {
        publish.initializer("initWithView:behavior:delegate:",
                            [](NSPopover& self, const std::shared_ptr<NSView>& view, NSPopoverBehavior behavior,
                               const ObjectRef& delegate) {
                                self.init();
                                const auto asDelegate = std::dynamic_pointer_cast<NSPopoverDelegate>(delegate);
                                if (delegate && !asDelegate)
                                    raiseInvalidArgument("NSPopover.initWithView:behavior:delegate:",
                                                         delegate->description() + " is no delegate of popovers");
                                configurePopover(self, {.view = view, .behavior = behavior, .delegate = asDelegate});
                            });
        publish.method("showWithRelativeToView:preferredEdge:offset:", &show);
    });
}

} // namespace RVCore
