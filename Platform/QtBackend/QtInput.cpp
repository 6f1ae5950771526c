#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QtBackend/QtConversions.h>
#include <QtBackend/QtInput.h>

#include <algorithm>
#include <bit>
#include <chrono>
#include <iterator>

namespace RVCore {

namespace {

// Wheels report eighths of a degree, 120 to a notch; a notch is 10 points.
constexpr CGFloat pointsPerEighth = 10.0 / 120;

double now()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

std::uint32_t fromModifiers(Qt::KeyboardModifiers modifiers)
{
    std::uint32_t bits = 0;
    bits |= modifiers.testFlag(Qt::ShiftModifier) ? InputModifier::shift : 0;
    bits |= modifiers.testFlag(Qt::ControlModifier) ? InputModifier::command : 0;
    bits |= modifiers.testFlag(Qt::AltModifier) ? InputModifier::option : 0;
    bits |= modifiers.testFlag(Qt::MetaModifier) ? InputModifier::control : 0;
    bits |= modifiers.testFlag(Qt::KeypadModifier) ? InputModifier::numericPad : 0;
    return bits;
}

// The bit of a modifier key; 0 for other keys.
std::uint32_t bitOfKey(int key)
{
    switch (key) {
    case Qt::Key_Shift:
        return InputModifier::shift;
    case Qt::Key_Control:
        return InputModifier::command;
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
        return InputModifier::option;
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
        return InputModifier::control;
    case Qt::Key_CapsLock:
        return InputModifier::capsLock;
    default:
        return 0;
    }
}

// What a key without a text gives; empty for all others.
std::string functionText(int key)
{
    struct Entry {
        int key;
        const char* text;
    };
    static constexpr Entry entries[] = {
        {Qt::Key_Up, NSKey::up},         {Qt::Key_Down, NSKey::down},
        {Qt::Key_Left, NSKey::left},     {Qt::Key_Right, NSKey::right},
        {Qt::Key_Insert, NSKey::insert}, {Qt::Key_Delete, NSKey::deleteForward},
        {Qt::Key_Home, NSKey::home},     {Qt::Key_End, NSKey::end},
        {Qt::Key_PageUp, NSKey::pageUp}, {Qt::Key_PageDown, NSKey::pageDown},
        {Qt::Key_Menu, NSKey::menu},
    };
    if (key >= Qt::Key_F1 && key <= Qt::Key_F35) {
        const QChar first = QString::fromUtf8(NSKey::f1).front();
        return fromQString(QString(QChar(first.unicode() + (key - Qt::Key_F1))));
    }
    const auto* entry = std::ranges::find(entries, key, &Entry::key);
    return entry == std::end(entries) ? "" : entry->text;
}

// What the keys give that control a text; empty for all others.
std::string controlText(int key)
{
    switch (key) {
    case Qt::Key_Backspace:
        return NSKey::backspace;
    case Qt::Key_Tab:
        return NSKey::tab;
    case Qt::Key_Backtab:
        return NSKey::backTab;
    case Qt::Key_Return:
        return NSKey::carriageReturn;
    case Qt::Key_Enter:
        return NSKey::enter;
    case Qt::Key_Escape:
        return NSKey::escape;
    default:
        return {};
    }
}

// Qt numbers keys with a text by their capital letter.
std::string textOfKey(int key, bool isShifted)
{
    if (key < 0x20 || key >= 0x01000000)
        return {};
    const auto character = static_cast<char32_t>(key);
    const QString text = QString::fromUcs4(&character, 1);
    return fromQString(isShifted ? text : text.toLower());
}

int fromButton(Qt::MouseButton button)
{
    switch (button) {
    case Qt::NoButton:
    case Qt::LeftButton:
        return 0;
    case Qt::RightButton:
        return 1;
    default:
        return std::countr_zero(static_cast<std::uint32_t>(button)); // the middle one is 4
    }
}

InputKind kindOf(QEvent::Type type)
{
    switch (type) {
    case QEvent::MouseButtonRelease:
        return InputKind::buttonReleased;
    case QEvent::MouseMove:
        return InputKind::pointerMoved;
    default:
        return InputKind::buttonPressed;
    }
}

} // namespace

InputEvent fromQMouseEvent(const QMouseEvent& event)
{
    InputEvent input;
    input.kind = kindOf(event.type());
    input.time = now();
    input.modifiers = fromModifiers(event.modifiers());
    input.location = {event.position().x(), event.position().y()};
    input.button = fromButton(event.button());
    return input;
}

InputEvent fromQWheelEvent(const QWheelEvent& event)
{
    InputEvent input;
    input.kind = InputKind::scrolled;
    input.time = now();
    input.modifiers = fromModifiers(event.modifiers());
    input.location = {event.position().x(), event.position().y()};
    input.isPreciseScroll = !event.pixelDelta().isNull();
    if (input.isPreciseScroll)
        input.scroll = {CGFloat(event.pixelDelta().x()), CGFloat(event.pixelDelta().y())};
    else
        input.scroll = {event.angleDelta().x() * pointsPerEighth, event.angleDelta().y() * pointsPerEighth};
    return input;
}

InputEvent fromQKeyEvent(const QKeyEvent& event)
{
    const bool isPress = event.type() == QEvent::KeyPress;
    InputEvent input;
    input.kind = isPress ? InputKind::keyPressed : InputKind::keyReleased;
    input.time = now();
    input.modifiers = fromModifiers(event.modifiers());
    input.keyCode = static_cast<std::uint16_t>(event.nativeScanCode());
    input.isRepeat = event.isAutoRepeat();
    if (const std::uint32_t bit = bitOfKey(event.key())) {
        input.kind = InputKind::modifiersChanged;
        input.modifiers = isPress ? input.modifiers | bit : input.modifiers & ~bit;
        return input;
    }
    std::string text = controlText(event.key());
    if (text.empty()) {
        text = functionText(event.key());
        input.modifiers |= text.empty() ? 0 : InputModifier::function;
    }
    if (text.empty()) {
        input.characters = fromQString(event.text());
        text = textOfKey(event.key(), event.modifiers().testFlag(Qt::ShiftModifier));
    } else {
        input.characters = text;
    }
    input.charactersIgnoringModifiers = text;
    return input;
}

InputEvent pointerLeft()
{
    InputEvent input;
    input.kind = InputKind::pointerLeft;
    input.time = now();
    return input;
}

Qt::CursorShape toQCursorShape(CursorShape shape)
{
    switch (shape) {
    case CursorShape::arrow:
        return Qt::ArrowCursor;
    case CursorShape::iBeam:
        return Qt::IBeamCursor;
    case CursorShape::crosshair:
        return Qt::CrossCursor;
    case CursorShape::pointingHand:
        return Qt::PointingHandCursor;
    case CursorShape::openHand:
        return Qt::OpenHandCursor;
    case CursorShape::closedHand:
        return Qt::ClosedHandCursor;
    case CursorShape::resizeLeftRight:
        return Qt::SizeHorCursor;
    case CursorShape::resizeUpDown:
        return Qt::SizeVerCursor;
    case CursorShape::operationNotAllowed:
        return Qt::ForbiddenCursor;
    }
    return Qt::ArrowCursor;
}

} // namespace RVCore
