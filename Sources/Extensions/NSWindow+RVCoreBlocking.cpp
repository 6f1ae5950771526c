#include <AppKit/NSToolbar.h>
#include <AppKit/NSWindow.h>
#include <AppKit/TargetAction.h>
#include <ConstraintLibrary/ConstraintLibrary.h>
#include <Extensions/NSView+RVCoreAnimation.h>
#include <Extensions/NSWindow+RVCoreBlocking.h>
#include <Foundation/AssociatedObjects.h>

#include <QuartzCore/CALayer.h>

#include <unordered_map>

namespace RVCore {

namespace {

constexpr AssociationKey overlayKey{"progressBlockingView"};
constexpr AssociationKey toolbarDataKey{"progressBlockingToolbarData"};

// What was taken from the items of a toolbar. Targets are held no more than an item holds its own.
class ToolbarData : public NSObject {
public:
    std::unordered_map<std::shared_ptr<NSToolbarItem>, TargetAction, ObjectHash, ObjectEqual> messages;
};

std::vector<std::shared_ptr<NSToolbarItem>> toolbarItems(const NSWindow& window)
{
    return window.toolbar() ? window.toolbar()->items() : std::vector<std::shared_ptr<NSToolbarItem>>();
}

std::shared_ptr<const ToolbarData> toolbarData(const NSWindow& window)
{
    const Value stored = associatedObject(window, toolbarDataKey);
    return stored.object() ? std::dynamic_pointer_cast<const ToolbarData>(*stored.object()) : nullptr;
}

void disableToolbar(NSWindow& window)
{
    const auto data = make<ToolbarData>();
    for (const auto& item : toolbarItems(window)) {
        const auto action = item->action();
        const auto target = item->target();
        if (!action || !target)
            continue;
        TargetAction& message = data->messages[item];
        message.setAction(action, "showBlockingView");
        message.setTarget(target);
        item->setAction(std::nullopt);
        item->setTarget(nullptr);
        item->validate();
    }
    setAssociatedObject(window, toolbarDataKey, Value(data));
}

void restoreToolbar(NSWindow& window)
{
    for (const auto& item : toolbarItems(window)) {
        const auto data = toolbarData(window);
        if (!data)
            continue;
        const auto saved = data->messages.find(item);
        if (saved == data->messages.end())
            continue;
        // Without a target the action would go to whoever answers it on the responder chain. An item that was given
        // another one meanwhile keeps that.
        const bool hasLostTarget = saved->second.hasLostTarget();
        if (hasLostTarget && !item->target())
            continue;
        item->setAction(saved->second.action());
        if (!hasLostTarget)
            item->setTarget(saved->second.target());
        item->validate();
    }
}

} // namespace

std::shared_ptr<RVProgressBlockingView> progressBlockingView(const NSWindow& window)
{
    const Value stored = associatedObject(window, overlayKey);
    return stored.object() ? std::dynamic_pointer_cast<RVProgressBlockingView>(*stored.object()) : nullptr;
}

void setProgressBlockingView(NSWindow& window, const std::shared_ptr<RVProgressBlockingView>& overlay)
{
    setAssociatedObject(window, overlayKey, Value(overlay));
}

void showBlockingView(NSWindow& window, const BlockingViewContent& content)
{
    if (const auto overlay = progressBlockingView(window)) {
        overlay->setMessage(content.message);
        overlay->setTitle(content.title);
        return;
    }
    const auto covered = window.contentView();
    if (!covered)
        return;
    const auto overlay = make<RVProgressBlockingView>(content);
    covered->addSubview(overlay);
    autoPinEdgesToSuperviewEdges(*overlay);
    if (const auto& layer = overlay->layer())
        layer->setZPosition(1.0);
    setProgressBlockingView(window, overlay);
    disableToolbar(window);
    showAnimated(*overlay);
    overlay->takeKeys(); // last: who loses them may show or hide overlays
}

void hideBlockingView(NSWindow& window)
{
    const auto overlay = progressBlockingView(window);
    if (!overlay || !window.contentView())
        return;
    restoreToolbar(window);
    hideAnimated(*overlay, [overlay, weakWindow = std::weak_ptr(shared(window))] {
        overlay->removeFromSuperview();
        // Hidden twice, the first end makes room for another overlay, which the second one leaves alone.
        if (const auto kept = weakWindow.lock(); kept && progressBlockingView(*kept) == overlay) {
            setProgressBlockingView(*kept, nullptr);
            setAssociatedObject(*kept, toolbarDataKey, Value());
        }
        overlay->giveKeysBack();
    });
}

bool publishWindowBlocking()
{
    return addCategory<NSWindow>("RVCore", [](auto& publish) {
        using Text = std::optional<std::string>;
        using Getter = std::shared_ptr<RVProgressBlockingView> (*)(const NSWindow&);
        using Setter = void (*)(NSWindow&, const std::shared_ptr<RVProgressBlockingView>&);
        publish.property("progressBlockingView", Getter(&progressBlockingView), Setter(&setProgressBlockingView));
        publish.method("showBlockingViewWithTitle:message:showProgress:",
                       [](NSWindow& self, const Text& title, const Text& message, bool showProgress) {
                           showBlockingView(self, {.title = title, .message = message, .showProgress = showProgress});
                       });
        publish.method("hideBlockingView", [](NSWindow& self) { hideBlockingView(self); });
    });
}

} // namespace RVCore
