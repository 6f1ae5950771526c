#include <AppKit/CoveredViews.h>
#include <AppKit/ExceptionReport.h>
#include <AppKit/NSAccessibility.h>
#include <AppKit/NSToolbar.h>
#include <AppKit/NSWindow.h>
#include <AppKit/ToolbarView.h>
#include <AppKit/ViewExtras.h>

#include <algorithm>

namespace RVCore {

namespace {

// A view as an element. A second one for the same view is as good as the first.
class ViewElement : public AccessibleElement {
public:
    explicit ViewElement(NSView& view) : m_view(shared(view)), m_identity(&view) {}

    bool isValid() const override
    {
        const auto view = m_view.lock();
        return view && view->window();
    }
    const void* identity() const override { return m_identity; }
    AccessibleRole role() const override;
    std::string name() const override
    {
        const auto view = m_view.lock();
        return view ? accessibilityName(*view) : std::string();
    }
    std::string value() const override
    {
        const auto view = m_view.lock();
        return view ? view->accessibilityValue() : std::string();
    }
    AccessibleState state() const override
    {
        const auto view = m_view.lock();
        return view ? view->accessibilityState() : AccessibleState{.isEnabled = false};
    }
    CGRect frame() const override;
    std::shared_ptr<AccessibleElement> parent() const override;
    std::vector<std::shared_ptr<AccessibleElement>> children() const override
    {
        const auto view = m_view.lock();
        return view ? accessibleElementsIn(*view) : std::vector<std::shared_ptr<AccessibleElement>>();
    }
    bool press() override
    {
        const auto view = m_view.lock();
        return view && act([&] { return view->accessibilityPerformPress(); });
    }
    bool focus() override
    {
        const auto view = m_view.lock();
        return view && view->window() && act([&] { return view->window()->makeFirstResponder(view.get()); });
    }
    bool setValue(const std::string& text) override
    {
        const auto view = m_view.lock();
        return view && act([&] { return view->setAccessibilityValue(text); });
    }

private:
    static bool act(const std::function<bool()>& action)
    {
        bool done = false;
        callReportingExceptions([&] { done = action(); });
        return done;
    }

    std::weak_ptr<NSView> m_view;
    const void* m_identity;
};

// A label makes a group of a view that is nothing else. An empty text says nothing.
AccessibleRole roleOf(const NSView& view)
{
    const AccessibleRole role = view.accessibilityRole();
    const bool hasLabel = !view.accessibilityLabel().empty();
    if (role == AccessibleRole::staticText && !hasLabel && view.accessibilityValue().empty())
        return AccessibleRole::none;
    return role == AccessibleRole::none && hasLabel ? AccessibleRole::group : role;
}

AccessibleRole ViewElement::role() const
{
    const auto view = m_view.lock();
    return view ? roleOf(*view) : AccessibleRole::none;
}

CGRect ViewElement::frame() const
{
    const auto view = m_view.lock();
    const NSWindow* window = view ? view->window() : nullptr;
    if (!window)
        return {};
    const CGRect inWindow = view->convertRectTo(view->bounds(), nullptr);
    return {inWindow.minX(), window->areaSize().height - inWindow.maxY(), inWindow.size.width, inWindow.size.height};
}

std::shared_ptr<AccessibleElement> ViewElement::parent() const
{
    const auto view = m_view.lock();
    for (NSView* around = view ? view->superview() : nullptr; around; around = around->superview()) {
        if (roleOf(*around) != AccessibleRole::none)
            return std::make_shared<ViewElement>(*around);
    }
    return nullptr;
}

// In the order in which Tab goes through them; those that a modal view covers are left out.
std::vector<NSView*> reachableSubviews(const NSView& view)
{
    auto subviews = uncoveredSubviewsInKeyOrder(view);
    std::erase_if(subviews, [](const NSView* subview) { return subview->isInvisible(); });
    return subviews;
}

bool needsLabel(AccessibleRole role)
{
    return role == AccessibleRole::textField || role == AccessibleRole::button || role == AccessibleRole::image ||
           role == AccessibleRole::progressIndicator;
}

// The text of the static text before the view, up to the next view that is something else.
std::string labelBefore(const NSView& view)
{
    const NSView* inner = &view;
    for (const NSView* around = view.superview(); around; inner = around, around = around->superview()) {
        const auto siblings = around->subviewsInKeyOrder();
        const auto place = std::ranges::find(siblings, inner);
        for (auto before = place; before != siblings.begin();) {
            --before;
            const AccessibleRole role = roleOf(**before);
            if (role == AccessibleRole::staticText && !(*before)->isInvisible())
                return (*before)->accessibilityValue();
            if (role != AccessibleRole::none || !(*before)->subviews().empty())
                return {};
        }
        if (roleOf(*around) != AccessibleRole::none)
            return {};
    }
    return {};
}

std::string_view nameOf(AccessibleRole role)
{
    switch (role) {
    case AccessibleRole::none:
        return "none";
    case AccessibleRole::group:
        return "group";
    case AccessibleRole::staticText:
        return "static text";
    case AccessibleRole::textField:
        return "text field";
    case AccessibleRole::button:
        return "button";
    case AccessibleRole::checkBox:
        return "check box";
    case AccessibleRole::radioButton:
        return "radio button";
    case AccessibleRole::image:
        return "image";
    case AccessibleRole::progressIndicator:
        return "progress indicator";
    case AccessibleRole::toolbar:
        return "toolbar";
    case AccessibleRole::popover:
        return "popover";
    }
    return "";
}

void describe(const AccessibleElement& element, const std::string& indent, std::string& text)
{
    const AccessibleState state = element.state();
    text += indent + std::string(nameOf(element.role())) + " '" + element.name() + "'";
    if (!element.value().empty())
        text += " \"" + element.value() + "\"";
    const std::pair<bool, const char*> states[] = {
        {!state.isEnabled, "disabled"}, {state.isFocused, "focused"},   {state.isChecked, "checked"},
        {state.isMixed, "mixed"},       {state.isEditable, "editable"},
    };
    for (const auto& [holds, name] : states)
        text += holds ? std::string(" ") + name : "";
    text += "\n";
    for (const auto& child : element.children())
        describe(*child, indent + "  ", text);
}

} // namespace

void postAccessibilityChange(NSView& view, AccessibleChange change)
{
    if (NSWindow* window = view.window())
        window->accessibilityChanged(std::make_shared<ViewElement>(view), change, {});
}

std::string accessibilityName(const NSView& view)
{
    std::string name = view.accessibilityLabel();
    const AccessibleRole role = roleOf(view);
    if (name.empty() && role == AccessibleRole::staticText)
        return view.accessibilityValue();
    if (name.empty() && needsLabel(role))
        return labelBefore(view);
    return name;
}

std::vector<std::shared_ptr<AccessibleElement>> accessibleElementsIn(NSView& view)
{
    std::vector<std::shared_ptr<AccessibleElement>> elements;
    for (NSView* subview : reachableSubviews(view)) {
        if (roleOf(*subview) != AccessibleRole::none)
            elements.push_back(std::make_shared<ViewElement>(*subview));
        else
            std::ranges::move(accessibleElementsIn(*subview), std::back_inserter(elements));
    }
    return elements;
}

std::vector<std::shared_ptr<AccessibleElement>> accessibleElementsOf(NSWindow& window)
{
    window.layoutIfNeeded();
    auto elements = accessibleElementsIn(*window.contentView());
    if (window.toolbar() && window.toolbar()->isVisible())
        elements.push_back(std::make_shared<ViewElement>(*window.toolbar()->view({})));
    return elements;
}

std::string accessibilityTree(NSWindow& window)
{
    std::string text = "window '" + window.title() + "'\n";
    for (const auto& element : accessibleElementsOf(window))
        describe(*element, "  ", text);
    return text;
}

AccessibleRole ViewInput::accessibilityRole() const
{
    return AccessibleRole::none;
}

std::string ViewInput::accessibilityLabel() const
{
    return m_extras ? m_extras->accessibilityLabel : std::string();
}

void ViewInput::setAccessibilityLabel(const std::string& label)
{
    if (accessibilityLabel() == label)
        return;
    extras().accessibilityLabel = label;
    postAccessibilityChange(self(), AccessibleChange::name);
}

std::string ViewInput::accessibilityValue() const
{
    return {};
}

bool ViewInput::setAccessibilityValue(const std::string&)
{
    return false;
}

AccessibleState ViewInput::accessibilityState() const
{
    const NSWindow* host = self().window();
    return {.isFocusable = acceptsFirstResponder(),
            .isFocused = host && host->isKeyWindow() && host->firstResponder() == this};
}

bool ViewInput::accessibilityPerformPress()
{
    return false;
}

bool ViewInput::isAccessibilityModal() const
{
    return m_extras && m_extras->isAccessibilityModal;
}

void ViewInput::setAccessibilityModal(bool modal)
{
    if (modal == isAccessibilityModal())
        return;
    extras().isAccessibilityModal = modal;
    postAccessibilityChange(self(), AccessibleChange::children);
}

} // namespace RVCore
