#include <QtBackend/QtConversions.h>
#include <QtBackend/QtKeys.h>

#include <algorithm>
#include <iterator>

namespace RVCore {

namespace {

// Qt::Key of a key without a text; 0 for all others.
int functionKey(const std::string& text)
{
    struct Entry {
        const char* text;
        int key;
    };
    static constexpr Entry entries[] = {
        {NSKey::enter, Qt::Key_Enter},
        {NSKey::backspace, Qt::Key_Backspace},
        {NSKey::tab, Qt::Key_Tab},
        {NSKey::backTab, Qt::Key_Backtab},
        {NSKey::carriageReturn, Qt::Key_Return},
        {NSKey::escape, Qt::Key_Escape},
        {NSKey::up, Qt::Key_Up},
        {NSKey::down, Qt::Key_Down},
        {NSKey::left, Qt::Key_Left},
        {NSKey::right, Qt::Key_Right},
        {NSKey::insert, Qt::Key_Insert},
        {NSKey::deleteForward, Qt::Key_Delete},
        {NSKey::home, Qt::Key_Home},
        {NSKey::end, Qt::Key_End},
        {NSKey::pageUp, Qt::Key_PageUp},
        {NSKey::pageDown, Qt::Key_PageDown},
        {NSKey::menu, Qt::Key_Menu},
    };
    const auto* entry = std::ranges::find(entries, text, &Entry::text);
    return entry == std::end(entries) ? 0 : entry->key;
}

// The private-use characters that stand for keys, F1 to F35 among them, are no text.
bool isFunctionText(const QString& text)
{
    return text.size() == 1 && text.front() >= QChar(0xF700) && text.front() <= QChar(0xF8FF);
}

} // namespace

Qt::KeyboardModifiers toQtModifiers(std::uint32_t modifiers)
{
    Qt::KeyboardModifiers result;
    result.setFlag(Qt::ShiftModifier, (modifiers & InputModifier::shift) != 0);
    result.setFlag(Qt::ControlModifier, (modifiers & InputModifier::command) != 0);
    result.setFlag(Qt::AltModifier, (modifiers & InputModifier::option) != 0);
    result.setFlag(Qt::MetaModifier, (modifiers & InputModifier::control) != 0);
    result.setFlag(Qt::KeypadModifier, (modifiers & InputModifier::numericPad) != 0);
    return result;
}

QKeyEvent toQKeyEvent(const InputEvent& event)
{
    const QString bare = toQString(event.charactersIgnoringModifiers);
    QString text = toQString(event.characters);
    int key = functionKey(event.charactersIgnoringModifiers);
    if (key == 0 && !bare.isEmpty() && !isFunctionText(bare))
        key = static_cast<int>(bare.toUpper().toUcs4().front()); // Qt numbers keys by their capital letter
    if (isFunctionText(text))
        text.clear();
    return {QEvent::KeyPress, key, toQtModifiers(event.modifiers), text, event.isRepeat};
}

} // namespace RVCore
