#include <AppKit/NSToolbar.h>
#include <AppKit/NSToolbarItem.h>
#include <AppKit/NSWindow.h>
#include <Extensions/BlockingOverlay.h>
#include <Extensions/NSView+RVCoreAnimation.h>
#include <Extensions/NSWindow+RVCoreBlocking.h>

#include <QuartzCore/CALayer.h>

#include <unordered_map>

namespace RVCore {

namespace {

constexpr AssociationKey overlayKey{"progressBlockingView"};
constexpr AssociationKey toolbarDataKey{"progressBlockingToolbarData"};

// What was taken from the items of a toolbar. Targets are held until they are given back.
class ToolbarData : public NSObject {
public:
    struct Message {
        ObjectRef target;
        Selector action;
    };
    std::unordered_map<std::shared_ptr<NSToolbarItem>, Message, ObjectHash, ObjectEqual> messages;
};

std::vector<std::shared_ptr<NSToolbarItem>> toolbarItems(const NSWindow& window)
{
    return window.toolbar() ? window.toolbar()->items() : std::vector<std::shared_ptr<NSToolbarItem>>();
}

// What an item's setters run may raise or hide the overlay again, so each item is known before it loses anything,
// and looked up anew before it gets it back.
void disableToolbar(NSWindow& window)
{
    const auto data = make<ToolbarData>();
    setAssociatedObject(window, toolbarDataKey, Value(data));
    for (const auto& item : toolbarItems(window)) {
        const auto action = item->action();
        const auto target = item->target();
        if (!action || !target)
            continue;
        data->messages.insert_or_assign(item, ToolbarData::Message{target, *action});
        item->setAction(std::nullopt);
        item->setTarget(nullptr);
        item->validate();
    }
}

void restoreToolbar(NSWindow& window)
{
    for (const auto& item : toolbarItems(window)) {
        const auto data = associatedObjectAs<const ToolbarData>(window, toolbarDataKey);
        if (!data)
            continue;
        const auto saved = data->messages.find(item);
        if (saved == data->messages.end())
            continue;
        item->setAction(saved->second.action);
        item->setTarget(saved->second.target);
        item->validate();
    }
}

} // namespace

std::shared_ptr<RVProgressBlockingView> progressBlockingView(const NSWindow& window)
{
    return associatedObjectAs<RVProgressBlockingView>(window, overlayKey);
}

void setProgressBlockingView(NSWindow& window, const std::shared_ptr<RVProgressBlockingView>& overlay)
{
    setAssociatedObject(window, overlayKey, Value(overlay));
}

void showBlockingView(NSWindow& window, const BlockingViewContent& content)
{
    if (const auto overlay = progressBlockingView(window)) {
        updateTexts(*overlay, content);
        return;
    }
    const auto covered = window.contentView();
    if (!covered)
        return;
    const auto overlay = putOverlayOver(*covered, content);
    if (const auto& layer = overlay->layer())
        layer->setZPosition(overlayZPosition);
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
    return addCategory<NSWindow>("RVCore", [](auto& publish) { publishBlocking<NSWindow>(publish); });
}

} // namespace RVCore
