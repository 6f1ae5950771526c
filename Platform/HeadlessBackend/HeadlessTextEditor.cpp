#include <Foundation/NSException.h>
#include <Foundation/Utf8.h>
#include <HeadlessBackend/CharacterWidth.h>
#include <HeadlessBackend/HeadlessText.h>
#include <HeadlessBackend/HeadlessTextEditor.h>

#include <algorithm>
#include <cmath>

namespace RVCore {

namespace {

constexpr CGColor selectionColor{0.7, 0.8, 1, 1};

std::u32string decoded(std::string_view text)
{
    std::u32string result;
    while (!text.empty())
        result += static_cast<char32_t>(takeCodePoint(text));
    return result;
}

std::string encoded(std::u32string_view text)
{
    std::string result;
    for (const char32_t codePoint : text)
        appendCodePoint(result, codePoint);
    return result;
}

bool isWordPart(char32_t codePoint)
{
    return codePoint > 0x7F || (codePoint >= U'0' && codePoint <= U'9') ||
           ((codePoint | 0x20U) >= U'a' && (codePoint | 0x20U) <= U'z');
}

// As it may come in from outside: without line feeds in a single line.
std::u32string accepted(const std::u32string& text, bool isSingleLine)
{
    std::u32string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == U'\r' && i + 1 < text.size() && text[i + 1] == U'\n')
            continue;
        const bool isFeed = text[i] == U'\n' || text[i] == U'\r';
        result += isFeed ? (isSingleLine ? U' ' : U'\n') : text[i];
    }
    return result;
}

bool has(const InputEvent& event, std::uint32_t modifier)
{
    return (event.modifiers & modifier) != 0;
}

} // namespace

HeadlessTextEditor::HeadlessTextEditor(TextEditorClient& client, Clipboard& clipboard, const TextDescription& content,
                                       CGSize size)
    : m_client(&client), m_clipboard(clipboard), m_content(content), m_size(size)
{
    requireUsable(content);
    m_state.text = decoded(content.text);
}

void HeadlessTextEditor::requireUsable(const TextDescription& content) const
{
    headlessTextMetrics({.font = content.font}, 0);
}

void HeadlessTextEditor::setContent(const TextDescription& content)
{
    requireUsable(content);
    m_content = content;
    std::u32string text = decoded(content.text);
    if (text != m_state.text) {
        m_state = {text, std::min(m_state.anchor, text.size()), std::min(m_state.caret, text.size())};
        m_marked.clear();
        m_undo.clear();
        m_redo.clear();
        m_isTyping = false;
    }
    scrollToCaret();
}

void HeadlessTextEditor::setSize(CGSize size)
{
    m_size = size;
    scrollToCaret();
}

std::string HeadlessTextEditor::text() const
{
    return encoded(m_state.text);
}

std::size_t HeadlessTextEditor::selectionStart() const
{
    return std::min(m_state.anchor, m_state.caret);
}

std::size_t HeadlessTextEditor::selectionEnd() const
{
    return std::max(m_state.anchor, m_state.caret);
}

TextRange HeadlessTextEditor::selection() const
{
    const std::u32string_view text = m_state.text;
    const std::size_t start = encoded(text.substr(0, selectionStart())).size();
    return {start, encoded(text.substr(selectionStart(), selectionEnd() - selectionStart())).size()};
}

// How many code points end at or before this many bytes.
std::size_t HeadlessTextEditor::positionOf(std::size_t bytes) const
{
    std::size_t position = 0;
    std::string before;
    for (; position < m_state.text.size(); ++position) {
        appendCodePoint(before, m_state.text[position]);
        if (before.size() > bytes)
            break;
    }
    return position;
}

void HeadlessTextEditor::select(TextRange range)
{
    m_state.anchor = positionOf(range.location);
    m_state.caret = positionOf(range.location + std::min(range.length, m_state.text.size() * 4));
    m_isTyping = false;
    changed(false);
}

// Back over what is between words, then over the word.
std::size_t HeadlessTextEditor::wordStart(std::size_t position) const
{
    while (position > 0 && !isWordPart(m_state.text[position - 1]))
        --position;
    while (position > 0 && isWordPart(m_state.text[position - 1]))
        --position;
    return position;
}

std::size_t HeadlessTextEditor::wordEnd(std::size_t position) const
{
    while (position < m_state.text.size() && !isWordPart(m_state.text[position]))
        ++position;
    while (position < m_state.text.size() && isWordPart(m_state.text[position]))
        ++position;
    return position;
}

std::size_t HeadlessTextEditor::lineStart(std::size_t position) const
{
    const std::size_t feed = position == 0 ? std::u32string::npos : m_state.text.rfind(U'\n', position - 1);
    return feed == std::u32string::npos ? 0 : feed + 1;
}

std::size_t HeadlessTextEditor::lineEnd(std::size_t position) const
{
    return std::min(m_state.text.find(U'\n', position), m_state.text.size());
}

void HeadlessTextEditor::moveTo(std::size_t position, bool extendsSelection)
{
    m_state.caret = position;
    if (!extendsSelection)
        m_state.anchor = position;
    m_isTyping = false;
}

void HeadlessTextEditor::replaceSelection(const std::u32string& replacement, bool isTyping)
{
    if (!m_isTyping || !isTyping)
        m_undo.push_back(m_state);
    m_redo.clear();
    m_isTyping = isTyping;
    m_state.text.replace(selectionStart(), selectionEnd() - selectionStart(), replacement);
    m_state.caret = m_state.anchor = selectionStart() + replacement.size();
    changed(true);
}

void HeadlessTextEditor::restore(std::vector<State>& from, std::vector<State>& to)
{
    to.push_back(std::exchange(m_state, from.back()));
    from.pop_back();
    m_isTyping = false;
    changed(true);
}

bool HeadlessTextEditor::handleInput(const InputEvent& event, int clickCount)
{
    const auto alive = shared_from_this(); // the client may let go of it
    switch (event.kind) {
    case InputKind::keyPressed:
        return handleKey(event);
    case InputKind::buttonPressed:
        return handlePress(event, clickCount);
    case InputKind::pointerMoved:
        moveTo(positionAt(event.location), true);
        changed(false);
        return true;
    case InputKind::buttonReleased:
        return true;
    default:
        return false;
    }
}

bool HeadlessTextEditor::handlePress(const InputEvent& event, int clickCount)
{
    commitComposition();
    if (event.button == 1) {
        ++m_contextMenuCount;
        return true;
    }
    const std::size_t position = positionAt(event.location);
    moveTo(position, has(event, InputModifier::shift));
    if (clickCount == 2) {
        m_state.anchor = wordStart(std::min(position + 1, m_state.text.size()));
        m_state.caret = wordEnd(m_state.anchor);
    } else if (clickCount > 2) {
        m_state.anchor = lineStart(position);
        m_state.caret = lineEnd(position);
    }
    changed(false);
    return true;
}

bool HeadlessTextEditor::handleKey(const InputEvent& event)
{
    const std::string& key = event.charactersIgnoringModifiers;
    if (key == NSKey::menu) {
        ++m_contextMenuCount;
        return true;
    }
    const bool isReturn = key == NSKey::carriageReturn || key == NSKey::enter;
    if (isReturn && m_isEditable && m_content.wraps() && has(event, InputModifier::option | InputModifier::shift)) {
        replaceSelection(U"\n", true);
        return true;
    }
    if (handleMovement(event) || handleDeletion(event) || handleShortcut(event))
        return true;
    const std::u32string typed = decoded(event.characters);
    const bool isText = !typed.empty() && typed.front() >= U' ' && typed.front() != U'\x7f' &&
                        !(typed.front() >= 0xF700 && typed.front() <= 0xF8FF);
    if (!isText || !m_isEditable || has(event, InputModifier::command | InputModifier::control))
        return false;
    replaceSelection(typed, true);
    return true;
}

bool HeadlessTextEditor::handleMovement(const InputEvent& event)
{
    const std::string& key = event.charactersIgnoringModifiers;
    const bool extends = has(event, InputModifier::shift), byWords = has(event, InputModifier::command);
    const bool collapses = !extends && m_state.anchor != m_state.caret && !byWords;
    const std::size_t caret = m_state.caret, end = m_state.text.size();
    if (key == NSKey::left)
        moveTo(byWords     ? wordStart(caret)
               : collapses ? selectionStart()
                           : caret - std::min<std::size_t>(caret, 1),
               extends);
    else if (key == NSKey::right)
        moveTo(byWords ? wordEnd(caret) : collapses ? selectionEnd() : std::min(caret + 1, end), extends);
    else if (key == NSKey::home)
        moveTo(byWords ? 0 : lineStart(caret), extends);
    else if (key == NSKey::end)
        moveTo(byWords ? end : lineEnd(caret), extends);
    else if (key == NSKey::up)
        moveTo(positionAt({placeOf(caret).x, placeOf(caret).y - 1}), extends);
    else if (key == NSKey::down)
        moveTo(positionAt({placeOf(caret).x, placeOf(caret).y + lineHeight()}), extends);
    else
        return false;
    changed(false);
    return true;
}

bool HeadlessTextEditor::handleDeletion(const InputEvent& event)
{
    const bool isBackward = event.charactersIgnoringModifiers == NSKey::backspace;
    if (!m_isEditable || (!isBackward && event.charactersIgnoringModifiers != NSKey::deleteForward))
        return false;
    if (m_state.anchor == m_state.caret) {
        const std::size_t caret = m_state.caret;
        const bool byWords = has(event, InputModifier::command);
        if (isBackward)
            m_state.anchor = byWords ? wordStart(caret) : caret - std::min<std::size_t>(caret, 1);
        else
            m_state.anchor = byWords ? wordEnd(caret) : std::min(caret + 1, m_state.text.size());
    }
    if (m_state.anchor != m_state.caret)
        replaceSelection({}, false);
    return true;
}

bool HeadlessTextEditor::handleShortcut(const InputEvent& event)
{
    if (!has(event, InputModifier::command))
        return false;
    const std::string& key = event.charactersIgnoringModifiers;
    const bool isShifted = has(event, InputModifier::shift);
    if (key == "a")
        perform(TextCommand::selectAll);
    else if (key == "c")
        perform(TextCommand::copy);
    else if (key == "x")
        perform(TextCommand::cut);
    else if (key == "v")
        perform(TextCommand::paste);
    else if (key == "z" && !isShifted)
        perform(TextCommand::undo);
    else if (key == "y" || key == "z" || key == "Z")
        perform(TextCommand::redo);
    else
        return false;
    return true;
}

void HeadlessTextEditor::compose(const TextComposition& composition)
{
    if (!m_isEditable)
        return;
    const auto alive = shared_from_this();
    m_marked = accepted(decoded(composition.marked), !m_content.wraps());
    m_markedCaret =
        std::min(decoded(std::string_view(composition.marked).substr(0, composition.caret)).size(), m_marked.size());
    const std::u32string committed = accepted(decoded(composition.committed), !m_content.wraps());
    if (!committed.empty() || (!m_marked.empty() && m_state.anchor != m_state.caret))
        replaceSelection(committed, false);
    else
        changed(false);
}

void HeadlessTextEditor::commitComposition()
{
    if (!m_marked.empty())
        compose({.committed = encoded(m_marked)});
}

bool HeadlessTextEditor::canPerform(TextCommand command) const
{
    const bool hasSelection = m_state.anchor != m_state.caret;
    switch (command) {
    case TextCommand::undo:
        return m_isEditable && !m_undo.empty();
    case TextCommand::redo:
        return m_isEditable && !m_redo.empty();
    case TextCommand::cut:
    case TextCommand::deleteSelection:
        return m_isEditable && hasSelection;
    case TextCommand::copy:
        return hasSelection;
    case TextCommand::paste:
        return m_isEditable && !m_clipboard.text().empty();
    case TextCommand::selectAll:
        return !m_state.text.empty();
    }
    return false;
}

void HeadlessTextEditor::perform(TextCommand command)
{
    if (!canPerform(command))
        return;
    const auto alive = shared_from_this();
    commitComposition();
    const auto selected = [this] {
        return encoded(std::u32string_view(m_state.text).substr(selectionStart(), selectionEnd() - selectionStart()));
    };
    switch (command) {
    case TextCommand::undo:
        restore(m_undo, m_redo);
        break;
    case TextCommand::redo:
        restore(m_redo, m_undo);
        break;
    case TextCommand::cut:
        m_clipboard.setText(selected());
        replaceSelection({}, false);
        break;
    case TextCommand::copy:
        m_clipboard.setText(selected());
        break;
    case TextCommand::paste:
        replaceSelection(accepted(decoded(m_clipboard.text()), !m_content.wraps()), false);
        break;
    case TextCommand::deleteSelection:
        replaceSelection({}, false);
        break;
    case TextCommand::selectAll:
        moveTo(0, false);
        moveTo(m_state.text.size(), true);
        changed(false);
        break;
    }
}

CGFloat HeadlessTextEditor::lineHeight() const
{
    return headlessTextMetrics({.font = m_content.font}, 0).size.height;
}

CGFloat HeadlessTextEditor::advance(std::size_t from, std::size_t to) const
{
    int width = 0;
    for (std::size_t i = from; i < to; ++i)
        width += characterWidth(m_state.text[i]);
    return m_content.font.size * (width * (m_content.font.bold ? 6 : 5)) / 10;
}

// Where the line that starts here begins in the rectangle; one that is too long begins at the left.
CGFloat HeadlessTextEditor::lineOffset(std::size_t start) const
{
    const CGFloat slack = std::max(m_size.width - advance(start, lineEnd(start)), 0.0);
    if (m_content.alignment == NSTextAlignment::center)
        return slack / 2;
    return m_content.alignment == NSTextAlignment::right ? slack : 0;
}

CGPoint HeadlessTextEditor::placeOf(std::size_t position) const
{
    const auto feeds =
        std::count(m_state.text.begin(), m_state.text.begin() + static_cast<std::ptrdiff_t>(position), U'\n');
    const std::size_t start = lineStart(position);
    return {lineOffset(start) + advance(start, position), lineHeight() * static_cast<CGFloat>(feeds)};
}

// The nearest place between two characters.
std::size_t HeadlessTextEditor::positionAt(CGPoint point) const
{
    const CGFloat x = point.x + m_scroll.x, y = point.y + m_scroll.y;
    std::size_t start = 0;
    for (CGFloat bottom = lineHeight(); y >= bottom && lineEnd(start) < m_state.text.size(); bottom += lineHeight())
        start = lineEnd(start) + 1;
    std::size_t position = start;
    const CGFloat offset = lineOffset(start);
    while (position < lineEnd(start) && x >= offset + (advance(start, position) + advance(start, position + 1)) / 2)
        ++position;
    return position;
}

CGRect HeadlessTextEditor::caretRect() const
{
    CGPoint place = placeOf(m_state.caret);
    for (std::size_t i = 0; i < m_markedCaret; ++i)
        place.x += m_content.font.size * (characterWidth(m_marked[i]) * (m_content.font.bold ? 6 : 5)) / 10;
    return {place.x - m_scroll.x, place.y - m_scroll.y, 1, lineHeight()};
}

void HeadlessTextEditor::scrollToCaret()
{
    const CGRect caret = caretRect();
    m_scroll.x = std::max(0.0, m_scroll.x + std::max(caret.maxX() - m_size.width, 0.0) + std::min(caret.minX(), 0.0));
    m_scroll.y =
        std::max(0.0, m_scroll.y + std::max(caret.maxY() - m_size.height, 0.0) + std::min(caret.minY(), 0.0));
    if (!m_content.wraps())
        m_scroll.y = 0;
}

void HeadlessTextEditor::changed(bool isOtherText)
{
    const auto alive = shared_from_this();
    scrollToCaret();
    if (isOtherText && m_client)
        m_client->textDidChange();
    if (m_client)
        m_client->editorNeedsDisplay();
}

void HeadlessTextEditor::draw(Canvas& canvas, CGPoint origin)
{
    const CanvasState state(canvas);
    canvas.clip({{origin, m_size}, 0});
    const CGPoint start{origin.x - m_scroll.x, origin.y - m_scroll.y};
    for (std::size_t from = selectionStart(); from < selectionEnd();) {
        const std::size_t to = std::min(lineEnd(from), selectionEnd());
        const CGPoint place = placeOf(from);
        canvas.fill({{start.x + place.x, start.y + place.y, advance(from, to), lineHeight()}, 0}, selectionColor);
        from = to + 1;
    }
    TextDescription content = m_content;
    content.lineBreakMode = NSLineBreakMode::clipping;
    content.maximumNumberOfLines = 0;
    std::u32string shown = m_state.text;
    shown.insert(m_state.caret, m_marked);
    content.text = encoded(shown);
    if (!content.text.empty())
        canvas.drawText(content, {start, {m_size.width + m_scroll.x, m_size.height + m_scroll.y}});
    const CGRect caret = caretRect();
    if (m_isEditable && selectionStart() == selectionEnd())
        canvas.fill({{origin.x + caret.minX(), origin.y + caret.minY(), 1, lineHeight()}, 0}, m_content.color);
}

} // namespace RVCore
