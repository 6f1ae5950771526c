#include <QAccessibleObject>
#include <QGuiApplication>
#include <QPointer>
#include <QtBackend/QtAccessibility.h>
#include <QtBackend/QtApplication.h>
#include <QtBackend/QtConversions.h>
#include <QtBackend/QtWindow.h>

#include <algorithm>
#include <unordered_map>

namespace RVCore {

namespace {

using Element = std::shared_ptr<AccessibleElement>;

QAccessible::Role toQRole(AccessibleRole role)
{
    switch (role) {
    case AccessibleRole::none:
        return QAccessible::NoRole;
    case AccessibleRole::group:
        return QAccessible::Grouping;
    case AccessibleRole::staticText:
        return QAccessible::StaticText;
    case AccessibleRole::textField:
        return QAccessible::EditableText;
    case AccessibleRole::button:
        return QAccessible::Button;
    case AccessibleRole::checkBox:
        return QAccessible::CheckBox;
    case AccessibleRole::radioButton:
        return QAccessible::RadioButton;
    case AccessibleRole::image:
        return QAccessible::Graphic;
    case AccessibleRole::progressIndicator:
        return QAccessible::ProgressBar;
    case AccessibleRole::toolbar:
        return QAccessible::ToolBar;
    case AccessibleRole::popover:
        return QAccessible::Dialog;
    }
    return QAccessible::NoRole;
}

QAccessible::State toQState(const AccessibleState& state, AccessibleRole role)
{
    QAccessible::State result;
    result.disabled = !state.isEnabled;
    result.focusable = state.isFocusable;
    result.focused = state.isFocused;
    result.checkable = state.isCheckable;
    result.checked = state.isChecked;
    result.checkStateMixed = state.isMixed;
    result.editable = state.isEditable;
    result.readOnly = role == AccessibleRole::textField && !state.isEditable;
    return result;
}

QAccessibleInterface* interfaceOf(QtWindowSurface& surface, const Element& element);

// What an element says, which may take code of the application: no exception passes through Qt.
template <class T> T ask(const Element& element, T (AccessibleElement::*question)() const)
{
    T answer{};
    callGuarded([&] { answer = ((*element).*question)(); });
    return answer;
}

// An element as Qt wants it. A text that can be set or read letter by letter is offered as such.
class ElementInterface : public QAccessibleInterface,
                         public QAccessibleActionInterface,
                         public QAccessibleTextInterface,
                         public QAccessibleEditableTextInterface {
public:
    ElementInterface(QtWindowSurface& surface, Element element) : m_surface(&surface), m_element(std::move(element))
    {
    }

    bool isValid() const override { return m_surface && m_element->isValid(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return m_surface; }

    QAccessibleInterface* parent() const override
    {
        const Element around = ask(m_element, &AccessibleElement::parent);
        if (!m_surface)
            return nullptr;
        return around ? interfaceOf(*m_surface, around) : accessibleOf(*m_surface);
    }
    QAccessibleInterface* child(int index) const override
    {
        const auto children = ask(m_element, &AccessibleElement::children);
        const bool isThere = m_surface && index >= 0 && static_cast<std::size_t>(index) < children.size();
        return isThere ? interfaceOf(*m_surface, children[static_cast<std::size_t>(index)]) : nullptr;
    }
    int childCount() const override { return static_cast<int>(ask(m_element, &AccessibleElement::children).size()); }
    int indexOfChild(const QAccessibleInterface* child) const override
    {
        return indexIn(ask(m_element, &AccessibleElement::children), child);
    }
    QAccessibleInterface* childAt(int x, int y) const override
    {
        const auto children = ask(m_element, &AccessibleElement::children);
        return m_surface ? elementAt(*m_surface, children, x, y) : nullptr;
    }
    QAccessibleInterface* focusChild() const override
    {
        const auto children = ask(m_element, &AccessibleElement::children);
        return m_surface ? focusedElement(*m_surface, children) : nullptr;
    }

    QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Name)
            return toQString(ask(m_element, &AccessibleElement::name));
        return kind == QAccessible::Value ? toQString(ask(m_element, &AccessibleElement::value)) : QString();
    }
    void setText(QAccessible::Text kind, const QString& text) override
    {
        if (kind == QAccessible::Value)
            callGuarded([&] { m_element->setValue(fromQString(text)); });
    }
    QRect rect() const override
    {
        const QRectF frame = toQRectF(ask(m_element, &AccessibleElement::frame));
        if (!m_surface)
            return {};
        return {m_surface->mapToGlobal(frame.topLeft().toPoint()), frame.size().toSize()};
    }
    QAccessible::Role role() const override { return toQRole(ask(m_element, &AccessibleElement::role)); }
    QAccessible::State state() const override
    {
        return toQState(ask(m_element, &AccessibleElement::state), ask(m_element, &AccessibleElement::role));
    }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        const AccessibleRole role = ask(m_element, &AccessibleElement::role);
        const bool isText = role == AccessibleRole::textField || role == AccessibleRole::staticText;
        if (type == QAccessible::ActionInterface)
            return static_cast<QAccessibleActionInterface*>(this);
        if (type == QAccessible::TextInterface && isText)
            return static_cast<QAccessibleTextInterface*>(this);
        if (type == QAccessible::EditableTextInterface && ask(m_element, &AccessibleElement::state).isEditable)
            return static_cast<QAccessibleEditableTextInterface*>(this);
        return nullptr;
    }

    // Actions.
    QStringList actionNames() const override
    {
        QStringList names;
        const AccessibleState state = ask(m_element, &AccessibleElement::state);
        if (state.isPressable && state.isEnabled)
            names << (state.isCheckable ? toggleAction() : pressAction());
        if (state.isFocusable)
            names << setFocusAction();
        return names;
    }
    void doAction(const QString& name) override
    {
        if (!actionNames().contains(name))
            return;
        callGuarded([&] { name == setFocusAction() ? m_element->focus() : m_element->press(); });
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

    // Text: what there is to read. Where the selection is, the field alone knows.
    void selection(int, int* startOffset, int* endOffset) const override { *startOffset = *endOffset = 0; }
    int selectionCount() const override { return 0; }
    void addSelection(int, int) override {}
    void removeSelection(int) override {}
    void setSelection(int, int, int) override {}
    int cursorPosition() const override { return 0; }
    void setCursorPosition(int) override {}
    QString text(int startOffset, int endOffset) const override
    {
        return text(QAccessible::Value).mid(startOffset, endOffset - startOffset);
    }
    int characterCount() const override { return static_cast<int>(text(QAccessible::Value).size()); }
    QRect characterRect(int) const override { return rect(); }
    int offsetAtPoint(const QPoint&) const override { return -1; }
    void scrollToSubstring(int, int) override {}
    QString attributes(int, int* startOffset, int* endOffset) const override
    {
        *startOffset = 0;
        *endOffset = characterCount();
        return {};
    }

    // Editing.
    void deleteText(int startOffset, int endOffset) override { replaceText(startOffset, endOffset, {}); }
    void insertText(int offset, const QString& text) override { replaceText(offset, offset, text); }
    void replaceText(int startOffset, int endOffset, const QString& replacement) override
    {
        setText(QAccessible::Value,
                text(QAccessible::Value).replace(startOffset, endOffset - startOffset, replacement));
    }

    static int indexIn(const std::vector<Element>& elements, const QAccessibleInterface* child)
    {
        const auto* sought = dynamic_cast<const ElementInterface*>(child);
        const auto place = std::ranges::find_if(elements, [&](const Element& element) {
            return sought && element->identity() == sought->m_element->identity();
        });
        return place == elements.end() ? -1 : static_cast<int>(place - elements.begin());
    }
    static QAccessibleInterface* elementAt(QtWindowSurface& surface, const std::vector<Element>& elements, int x,
                                           int y)
    {
        for (const Element& element : elements) {
            QAccessibleInterface* candidate = interfaceOf(surface, element);
            if (candidate->rect().contains(x, y))
                return candidate;
        }
        return nullptr;
    }
    static QAccessibleInterface* focusedElement(QtWindowSurface& surface, const std::vector<Element>& elements)
    {
        for (const Element& element : elements) {
            if (ask(element, &AccessibleElement::state).isFocused)
                return interfaceOf(surface, element);
            if (QAccessibleInterface* inside = focusedElement(surface, ask(element, &AccessibleElement::children)))
                return inside;
        }
        return nullptr;
    }

private:
    const QPointer<QtWindowSurface> m_surface;
    const Element m_element;
};

// A window. Its elements are asked for anew each time: they are what the program shows just then.
class WindowInterface : public QAccessibleObject {
public:
    explicit WindowInterface(QtWindowSurface& surface) : QAccessibleObject(&surface) {}

    QWindow* window() const override { return &surface(); }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(qApp); }
    QAccessibleInterface* child(int index) const override
    {
        const auto elements = surface().accessibleElements();
        const bool isThere = index >= 0 && static_cast<std::size_t>(index) < elements.size();
        return isThere ? interfaceOf(surface(), elements[static_cast<std::size_t>(index)]) : nullptr;
    }
    int childCount() const override { return static_cast<int>(surface().accessibleElements().size()); }
    int indexOfChild(const QAccessibleInterface* child) const override
    {
        return ElementInterface::indexIn(surface().accessibleElements(), child);
    }
    QAccessibleInterface* childAt(int x, int y) const override
    {
        return ElementInterface::elementAt(surface(), surface().accessibleElements(), x, y);
    }
    QAccessibleInterface* focusChild() const override
    {
        return ElementInterface::focusedElement(surface(), surface().accessibleElements());
    }
    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name ? surface().title() : QString();
    }
    QRect rect() const override { return {surface().mapToGlobal(QPoint()), surface().size()}; }
    QAccessible::Role role() const override { return QAccessible::Window; }
    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.active = surface().isActive();
        state.invisible = !surface().isVisible();
        state.sizeable = state.movable = true;
        return state;
    }

private:
    QtWindowSurface& surface() const { return static_cast<QtWindowSurface&>(*object()); }
};

// The interfaces that Qt has been given, by what they stand for.
std::unordered_map<const void*, QAccessible::Id>& knownInterfaces()
{
    static std::unordered_map<const void*, QAccessible::Id> interfaces;
    return interfaces;
}

// What has left its window will not come back as the same thing.
void forgetInvalid()
{
    std::erase_if(knownInterfaces(), [](const auto& entry) {
        const QAccessibleInterface* known = QAccessible::accessibleInterface(entry.second);
        if (known && known->isValid())
            return false;
        QAccessible::deleteAccessibleInterface(entry.second);
        return true;
    });
}

QAccessibleInterface* interfaceOf(QtWindowSurface& surface, const Element& element)
{
    auto& interfaces = knownInterfaces();
    const auto known = interfaces.find(element->identity());
    if (known != interfaces.end()) {
        QAccessibleInterface* present = QAccessible::accessibleInterface(known->second);
        if (present && present->isValid() && present->window() == &surface)
            return present;
        forgetInvalid();
    }
    auto* made = new ElementInterface(surface, element); // Qt's from here on
    interfaces[element->identity()] = QAccessible::registerAccessibleInterface(made);
    return made;
}

QAccessible::Event toQEvent(AccessibleChange change)
{
    switch (change) {
    case AccessibleChange::focus:
        return QAccessible::Focus;
    case AccessibleChange::name:
        return QAccessible::NameChanged;
    case AccessibleChange::value:
        return QAccessible::ValueChanged;
    case AccessibleChange::state:
        return QAccessible::StateChanged;
    case AccessibleChange::children:
        return QAccessible::ObjectReorder;
    }
    return QAccessible::InvalidEvent;
}

QAccessibleInterface* makeWindowInterface(const QString&, QObject* object)
{
    auto* surface = dynamic_cast<QtWindowSurface*>(object);
    return surface ? new WindowInterface(*surface) : nullptr;
}

} // namespace

QAccessibleInterface* accessibleOf(QtWindowSurface& surface)
{
    [[maybe_unused]] static const bool isInstalled = (QAccessible::installFactory(&makeWindowInterface), true);
    return QAccessible::queryAccessibleInterface(&surface);
}

void reportAccessibilityChange(QtWindowSurface& surface, const std::shared_ptr<AccessibleElement>& element,
                               AccessibleChange change)
{
    if (!QAccessible::isActive())
        return;
    QAccessibleInterface* changed = element ? interfaceOf(surface, element) : accessibleOf(surface);
    if (change == AccessibleChange::state) {
        QAccessible::State all;
        all.checked = all.disabled = all.checkStateMixed = true;
        QAccessibleStateChangeEvent event(changed, all);
        QAccessible::updateAccessibility(&event);
    } else if (change == AccessibleChange::value) {
        QAccessibleValueChangeEvent event(changed, changed->text(QAccessible::Value));
        QAccessible::updateAccessibility(&event);
    } else {
        QAccessibleEvent event(changed, toQEvent(change));
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace RVCore
