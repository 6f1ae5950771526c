#include <Backend/Backend.h>
#include <Platform/Backend/TextInput.h>
#include <Platform/Foundation/Raised.h>
#include <Platform/QtBackend/NarrowOnes.h>
#include <Platform/QtBackend/Offscreen.h>

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QMimeData>
#include <QPalette>
#include <QtBackend/QtTextEditor.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <ctime>

namespace RVCore::QtTextEditorTests {
namespace {

using testing::HasSubstr;

constexpr std::uint32_t shift = InputModifier::shift;
constexpr std::uint32_t command = InputModifier::command;
constexpr CGColor black{0, 0, 0, 1};

class QtTextEditorTest : public testing::Test {
protected:
    void start(const std::string& text, NSLineBreakMode mode = NSLineBreakMode::clipping, CGSize size = {200, 20})
    {
        m_size = size;
        content = {.text = text, .font = {.size = 13}, .color = black, .lineBreakMode = mode};
        editor = Backend::shared().makeTextEditor(client, content, size);
    }
    bool press(const std::string& key, std::uint32_t modifiers = 0)
    {
        return editor->handleInput(keyPress(key, modifiers), 0);
    }
    // The place behind this many bytes.
    CGRect caretAt(std::size_t location)
    {
        editor->select({location, 0});
        return editor->caretRect();
    }
    // In the middle of the character that begins there.
    CGPoint middleOf(std::size_t location, std::size_t length = 1)
    {
        const CGRect before = caretAt(location), after = caretAt(location + length);
        return {(before.minX() + after.minX()) / 2, before.midY()};
    }
    QImage picture(CGFloat scale = 1)
    {
        return paintedPicture(m_size, scale, [&](Canvas& canvas) { editor->draw(canvas, {}); });
    }

    RecordingEditorClient client;
    TextDescription content;
    std::shared_ptr<TextEditor> editor;

private:
    CGSize m_size;
};

TEST_F(QtTextEditorTest, StartsWithTheCaretBeforeTheText)
{
    start("text");
    EXPECT_EQ(editor->text(), "text");
    EXPECT_EQ(editor->selection(), (TextRange{0, 0}));
    EXPECT_EQ(editor->caretRect().minX(), 0);
    EXPECT_GE(editor->caretRect().size.height, 13);
    EXPECT_EQ(client.changeCount + client.displayCount, 0);
}

TEST_F(QtTextEditorTest, WhatIsTypedGoesToTheCaretAndIsToldOnce)
{
    start("bc");
    EXPECT_TRUE(press("a"));
    EXPECT_EQ(editor->text(), "abc");
    EXPECT_EQ(editor->selection(), (TextRange{1, 0}));
    EXPECT_EQ(client.changeCount, 1);
    EXPECT_EQ(client.displayCount, 1);
    EXPECT_TRUE(press("é"));
    EXPECT_TRUE(press("漢"));
    EXPECT_TRUE(press("😀"));
    EXPECT_EQ(editor->text(), "aé漢😀bc");
}

TEST_F(QtTextEditorTest, RangesCountBytesAndEndBetweenCharacters)
{
    start("aé漢😀z");
    editor->select({1, 2});
    EXPECT_EQ(editor->selection(), (TextRange{1, 2}));
    editor->select({2, 2}); // inside é, inside 漢
    EXPECT_EQ(editor->selection(), (TextRange{1, 2}));
    editor->select({6, 4}); // the emoji
    EXPECT_EQ(editor->selection(), (TextRange{6, 4}));
    editor->select({3, 1000});
    EXPECT_EQ(editor->selection(), (TextRange{3, 8}));
    editor->select({1000, 1});
    EXPECT_EQ(editor->selection(), (TextRange{11, 0}));
}

TEST_F(QtTextEditorTest, KeysMoveByCharactersWordsAndToTheEnds)
{
    start("one two three");
    press(NSKey::right);
    EXPECT_EQ(editor->selection().location, 1U);
    press(NSKey::right, command);
    EXPECT_EQ(editor->selection().location, 4U) << "to the start of the next word";
    press(NSKey::end);
    EXPECT_EQ(editor->selection().location, 13U);
    press(NSKey::left, command);
    EXPECT_EQ(editor->selection().location, 8U);
    press(NSKey::home);
    EXPECT_EQ(editor->selection().location, 0U);
    EXPECT_EQ(client.changeCount, 0);
}

TEST_F(QtTextEditorTest, ShiftSelectsAndTypingReplaces)
{
    start("one two");
    press(NSKey::right, shift);
    press(NSKey::right, shift);
    EXPECT_EQ(editor->selection(), (TextRange{0, 2}));
    press(NSKey::right, command | shift);
    EXPECT_EQ(editor->selection(), (TextRange{0, 4}));
    press("1");
    EXPECT_EQ(editor->text(), "1two");
    press(NSKey::end, shift);
    EXPECT_EQ(editor->selection(), (TextRange{1, 3}));
    press(NSKey::home, command | shift);
    EXPECT_EQ(editor->selection(), (TextRange{0, 1}));
}

TEST_F(QtTextEditorTest, DeletesByCharactersAndWords)
{
    start("one two three");
    press(NSKey::deleteForward);
    EXPECT_EQ(editor->text(), "ne two three");
    press(NSKey::deleteForward, command);
    EXPECT_EQ(editor->text(), "two three");
    press(NSKey::end);
    press(NSKey::backspace);
    EXPECT_EQ(editor->text(), "two thre");
    press(NSKey::backspace, command);
    EXPECT_EQ(editor->text(), "two ");
}

TEST_F(QtTextEditorTest, UndoesAndRedoes)
{
    start("");
    typeInto(*editor, "one");
    press(NSKey::home);
    typeInto(*editor, "two");
    press("z", command);
    EXPECT_EQ(editor->text(), "one");
    press("z", command);
    EXPECT_EQ(editor->text(), "");
    EXPECT_FALSE(editor->canPerform(TextCommand::undo));
    EXPECT_TRUE(editor->canPerform(TextCommand::redo));
    press("z", command | shift);
    EXPECT_EQ(editor->text(), "one");
    editor->perform(TextCommand::redo);
    EXPECT_EQ(editor->text(), "twoone");
    editor->perform(TextCommand::undo);
    EXPECT_EQ(editor->text(), "one");
}

TEST_F(QtTextEditorTest, CutsCopiesAndPastesThroughTheDesktopsClipboard)
{
    start("one two");
    editor->select({0, 3});
    press("c", command);
    EXPECT_EQ(QApplication::clipboard()->text(), "one");
    EXPECT_EQ(Backend::shared().clipboard().text(), "one");
    press(NSKey::end);
    press("v", command);
    EXPECT_EQ(editor->text(), "one twoone");
    press("a", command);
    EXPECT_EQ(editor->selection(), (TextRange{0, 10}));
    press("x", command);
    EXPECT_EQ(editor->text(), "");
    EXPECT_EQ(Backend::shared().clipboard().text(), "one twoone");
    editor->perform(TextCommand::undo);
    EXPECT_EQ(editor->text(), "one twoone");
}

TEST_F(QtTextEditorTest, PastedLineFeedsBecomeSpacesInOneLineAndStayWhereTextWraps)
{
    Backend::shared().clipboard().setText("a\nb\r\nc\rd\xFF");
    start("");
    editor->perform(TextCommand::paste);
    EXPECT_EQ(editor->text(), "a b c d\xEF\xBF\xBD");
    start("", NSLineBreakMode::wordWrapping, {200, 100});
    editor->perform(TextCommand::paste);
    EXPECT_EQ(editor->text(), "a\nb\nc\nd\xEF\xBF\xBD");
}

TEST_F(QtTextEditorTest, PastingBringsNoLooksWithIt)
{
    start("");
    auto* rich = new QMimeData;
    rich->setHtml("<h1>big</h1>");
    rich->setText("big");
    QApplication::clipboard()->setMimeData(rich);
    editor->perform(TextCommand::paste);
    EXPECT_EQ(editor->text(), "big");
    const QImage pasted = picture();
    start("big");
    editor->select({3, 0});
    EXPECT_EQ(largestDifference(pasted, picture()), 0);
    auto* image = new QMimeData;
    image->setImageData(QImage(2, 2, QImage::Format_RGB32));
    QApplication::clipboard()->setMimeData(image);
    editor->perform(TextCommand::paste);
    EXPECT_EQ(editor->text(), "big");
}

TEST_F(QtTextEditorTest, ClicksPutTheCaretAndSelectWordsAndTheWhole)
{
    start("one two three");
    const CGPoint place = middleOf(5);
    click(*editor, place);
    EXPECT_THAT(editor->selection().location, testing::AnyOf(5U, 6U));
    EXPECT_EQ(editor->selection().length, 0U);
    click(*editor, place, 2);
    EXPECT_EQ(editor->selection(), (TextRange{4, 3}));
    click(*editor, place, 3);
    EXPECT_EQ(editor->selection(), (TextRange{0, 13}));
    click(*editor, place);
    EXPECT_EQ(editor->selection().length, 0U) << "a click into the selection takes it away";
    const CGPoint end = caretAt(3).origin;
    click(*editor, {0, 5});
    click(*editor, end, 1, shift);
    EXPECT_EQ(editor->selection(), (TextRange{0, 3}));
}

TEST_F(QtTextEditorTest, ADragSelectsAlsoFromInsideTheSelection)
{
    start("one two");
    const CGPoint from{caretAt(1).minX(), 5}, to{caretAt(4).minX(), 5};
    editor->perform(TextCommand::selectAll);
    editor->handleInput(pointer(InputKind::buttonPressed, from), 1);
    editor->handleInput(pointer(InputKind::pointerMoved, to), 0);
    editor->handleInput(pointer(InputKind::buttonReleased, to), 1);
    EXPECT_EQ(editor->selection(), (TextRange{1, 3}));
    EXPECT_EQ(editor->text(), "one two");
}

TEST_F(QtTextEditorTest, ADragAfterADoubleClickSelectsWholeWords)
{
    start("one two three");
    const CGPoint from = middleOf(1), to = middleOf(5);
    click(*editor, from);
    editor->handleInput(pointer(InputKind::buttonPressed, from), 2);
    editor->handleInput(pointer(InputKind::pointerMoved, {to.x + 3, to.y}), 0);
    editor->handleInput(pointer(InputKind::buttonReleased, to), 2);
    EXPECT_EQ(editor->selection(), (TextRange{0, 7}));
}

TEST_F(QtTextEditorTest, ALineThatIsTooLongScrollsWithTheCaret)
{
    start(std::string(100, 'm'));
    press(NSKey::end);
    EXPECT_GT(editor->scrollOffset().x, 100);
    EXPECT_LE(editor->caretRect().maxX(), 200);
    EXPECT_GE(editor->caretRect().minX(), 190);
    EXPECT_EQ(editor->scrollOffset().y, 0);
    press(NSKey::home);
    EXPECT_EQ(editor->scrollOffset(), (CGPoint{0, 0}));
    InputEvent wheel;
    wheel.kind = InputKind::scrolled;
    wheel.scroll = {-30, 0};
    EXPECT_TRUE(editor->handleInput(wheel, 0));
    EXPECT_EQ(editor->scrollOffset().x, 30);
    wheel.scroll = {0, -30};
    EXPECT_FALSE(editor->handleInput(wheel, 0)) << "one line does not scroll up and down";
}

TEST_F(QtTextEditorTest, ALineThatFitsDoesNotScroll)
{
    start("short");
    press(NSKey::end);
    EXPECT_EQ(editor->scrollOffset(), (CGPoint{0, 0}));
}

TEST_F(QtTextEditorTest, WrappingTextGoesUpAndDownAndScrollsThatWay)
{
    start("one two three four five six seven eight", NSLineBreakMode::wordWrapping, {60, 30});
    press(NSKey::down);
    EXPECT_GT(editor->caretRect().minY(), 10);
    EXPECT_GT(editor->selection().location, 0U);
    press(NSKey::end, command);
    EXPECT_GT(editor->scrollOffset().y, 20);
    EXPECT_EQ(editor->scrollOffset().x, 0);
    EXPECT_LE(editor->caretRect().maxY(), 31);
    press(NSKey::home, command);
    EXPECT_EQ(editor->scrollOffset().y, 0);
}

TEST_F(QtTextEditorTest, ArabicMovesAgainstItsReading)
{
    start("سلام");
    const CGFloat right = editor->caretRect().minX();
    EXPECT_GT(right, 100) << "reading starts at the right edge";
    press(NSKey::left);
    EXPECT_EQ(editor->selection().location, 2U) << "to the left is forward";
    EXPECT_LT(editor->caretRect().minX(), right);
    press(NSKey::right);
    EXPECT_EQ(editor->selection().location, 0U);
    press(NSKey::end);
    EXPECT_EQ(editor->selection().location, 8U);
    press(NSKey::backspace);
    EXPECT_EQ(editor->text(), "سلا");
}

TEST_F(QtTextEditorTest, ALongLineOfArabicScrollsFromItsRightEdge)
{
    std::string text;
    for (int i = 0; i < 60; ++i)
        text += "سلام ";
    start(text);
    press(NSKey::home);
    EXPECT_GE(editor->caretRect().minX(), 190);
    EXPECT_LE(editor->caretRect().maxX(), 200);
    const CGFloat atStart = editor->scrollOffset().x;
    EXPECT_GT(atStart, 100);
    press(NSKey::end);
    EXPECT_EQ(editor->scrollOffset().x, 0);
    EXPECT_GE(editor->caretRect().minX(), 0);
    EXPECT_LE(editor->caretRect().maxX(), 20);
}

TEST_F(QtTextEditorTest, HebrewInsideLatinKeepsItsOrder)
{
    start("ab שלום cd");
    press(NSKey::end);
    EXPECT_EQ(editor->selection().location, 14U);
    std::vector<CGFloat> places;
    for (std::size_t location : {0U, 3U, 5U, 11U, 14U})
        places.push_back(caretAt(location).minX());
    EXPECT_LT(places[0], places[1]);
    editor->select({3, 8});
    editor->perform(TextCommand::copy);
    EXPECT_EQ(Backend::shared().clipboard().text(), "שלום");
    press("x");
    EXPECT_EQ(editor->text(), "ab x cd");
}

TEST_F(QtTextEditorTest, ALetterWithItsMarksIsOneStepAndIsDeletedAsOne)
{
    start("ae\xCC\x81\xCC\xA3z"); // e with acute and dot below
    press(NSKey::right);
    press(NSKey::right);
    EXPECT_EQ(editor->selection().location, 6U);
    press(NSKey::left);
    EXPECT_EQ(editor->selection().location, 1U);
    press(NSKey::deleteForward);
    EXPECT_EQ(editor->text(), "az");
}

TEST_F(QtTextEditorTest, AnEmojiIsOneStepAndIsDeletedAsOne)
{
    start("a😀z");
    press(NSKey::right);
    press(NSKey::right);
    EXPECT_EQ(editor->selection().location, 5U);
    press(NSKey::backspace);
    EXPECT_EQ(editor->text(), "az");
    press("👍");
    EXPECT_EQ(editor->text(), "a👍z");
    press(NSKey::backspace);
    EXPECT_EQ(editor->text(), "az");
}

TEST_F(QtTextEditorTest, SpacesThatDoNotBreakStaySo)
{
    start("a\xC2\xA0z");
    press(NSKey::end);
    press("!");
    EXPECT_EQ(editor->text(), "a\xC2\xA0z!");
}

TEST_F(QtTextEditorTest, WhatIsComposedIsShownButIsNotTextUntilItIsCommitted)
{
    start("ab");
    editor->select({1, 0});
    const CGFloat before = editor->caretRect().minX();
    editor->compose({.marked = "にほ", .caret = 3});
    EXPECT_TRUE(editor->isComposing());
    EXPECT_EQ(editor->text(), "ab");
    EXPECT_EQ(client.changeCount, 0);
    EXPECT_GE(client.displayCount, 1);
    const CGFloat inside = editor->caretRect().minX();
    editor->compose({.marked = "にほ", .caret = 6});
    EXPECT_LT(before, inside);
    EXPECT_LT(inside, editor->caretRect().minX());
    const QImage composing = picture();
    editor->compose({.committed = "日本"});
    EXPECT_FALSE(editor->isComposing());
    EXPECT_EQ(editor->text(), "a日本b");
    EXPECT_EQ(editor->selection(), (TextRange{7, 0}));
    EXPECT_EQ(client.changeCount, 1);
    EXPECT_GT(largestDifference(composing, picture()), 100) << "the marked text is underlined";
    editor->perform(TextCommand::undo);
    EXPECT_EQ(editor->text(), "ab");
}

TEST_F(QtTextEditorTest, ACompositionReplacesTheSelectionAndCanBeGivenUp)
{
    start("one two");
    editor->select({0, 3});
    editor->compose({.marked = "x", .caret = 1});
    EXPECT_EQ(editor->text(), " two");
    editor->compose({});
    EXPECT_FALSE(editor->isComposing());
    EXPECT_EQ(editor->text(), " two");
}

TEST_F(QtTextEditorTest, AClickOrACommandCommitsWhatIsComposed)
{
    start("ab");
    editor->compose({.marked = "x", .caret = 1});
    click(*editor, {150, 5});
    EXPECT_EQ(editor->text(), "xab");
    EXPECT_EQ(editor->selection(), (TextRange{3, 0}));
    editor->compose({.marked = "y", .caret = 1});
    editor->perform(TextCommand::selectAll);
    EXPECT_EQ(editor->text(), "xaby");
    editor->compose({.committed = "1\n2"});
    EXPECT_EQ(editor->text(), "1 2") << "one line";
}

TEST_F(QtTextEditorTest, WhatIsNotEditableCanBeSelectedAndCopiedOnly)
{
    start("text");
    editor->setEditable(false);
    EXPECT_FALSE(press("x"));
    press(NSKey::backspace);
    editor->compose({.committed = "x"});
    EXPECT_TRUE(press("a", command));
    EXPECT_TRUE(press("c", command));
    EXPECT_EQ(Backend::shared().clipboard().text(), "text");
    for (const TextCommand what : {TextCommand::cut, TextCommand::paste, TextCommand::deleteSelection}) {
        EXPECT_FALSE(editor->canPerform(what));
        editor->perform(what);
    }
    click(*editor, middleOf(1), 2);
    EXPECT_EQ(editor->selection(), (TextRange{0, 4}));
    EXPECT_EQ(editor->text(), "text");
    EXPECT_EQ(client.changeCount, 0);
}

TEST_F(QtTextEditorTest, ReturnTabAndEscapeAreLeftToTheClient)
{
    start("text");
    for (const char* key : {NSKey::carriageReturn, NSKey::enter, NSKey::tab, NSKey::backTab, NSKey::escape})
        EXPECT_FALSE(press(key)) << testing::PrintToString(key);
    EXPECT_FALSE(press(NSKey::carriageReturn, shift));
    start("text", NSLineBreakMode::wordWrapping);
    EXPECT_FALSE(press(NSKey::carriageReturn));
    EXPECT_TRUE(press(NSKey::carriageReturn, shift));
    EXPECT_TRUE(press(NSKey::carriageReturn, InputModifier::option));
    EXPECT_EQ(editor->text(), "\n\ntext");
}

TEST_F(QtTextEditorTest, KeysThatStandForNothingAreNotUsed)
{
    start("text");
    EXPECT_FALSE(press(NSKey::f1));
    EXPECT_FALSE(press("q", command));
    EXPECT_FALSE(press(""));
    EXPECT_EQ(editor->text(), "text");
    EXPECT_EQ(client.changeCount, 0);
}

TEST_F(QtTextEditorTest, AnotherContentForgetsWhatCouldBeUndoneAndTellsNobody)
{
    start("");
    typeInto(*editor, "one");
    const int changes = client.changeCount, displays = client.displayCount;
    content.text = "on";
    editor->setContent(content);
    EXPECT_EQ(editor->text(), "on");
    EXPECT_EQ(editor->selection(), (TextRange{2, 0}));
    EXPECT_FALSE(editor->canPerform(TextCommand::undo));
    QCoreApplication::processEvents();
    EXPECT_EQ(client.changeCount, changes);
    EXPECT_EQ(client.displayCount, displays);
}

TEST_F(QtTextEditorTest, TheSameContentKeepsWhatCouldBeUndone)
{
    start("");
    typeInto(*editor, "one");
    content.text = "one";
    content.color = {1, 0, 0, 1};
    editor->setContent(content);
    EXPECT_TRUE(editor->canPerform(TextCommand::undo));
    content.font.size = 20;
    editor->setContent(content);
    EXPECT_TRUE(editor->canPerform(TextCommand::undo));
    EXPECT_GE(editor->caretRect().size.height, 20);
}

TEST_F(QtTextEditorTest, TheSameContentLeavesACompositionAloneHoweverItsLinesEnd)
{
    for (const std::string text : {"a\nb", "a\r\nb", "a\rb", "a\xE2\x80\xA9z", "a\xE2\x80\xA8z", "a\xFFz"}) {
        start(text);
        editor->compose({.marked = "x", .caret = 1});
        content.color = {1, 0, 0, 1};
        editor->setContent(content);
        EXPECT_TRUE(editor->isComposing()) << testing::PrintToString(text);
    }
}

TEST_F(QtTextEditorTest, TheProgramsOwnLineFeedsStay)
{
    start("two\nlines");
    EXPECT_EQ(editor->text(), "two\nlines");
    press(NSKey::end, command);
    press("!");
    EXPECT_EQ(editor->text(), "two\nlines!");
}

TEST_F(QtTextEditorTest, BytesThatAreNotUtf8BecomeReplacements)
{
    start("a\xFFz");
    EXPECT_EQ(editor->text(), "a\xEF\xBF\xBDz");
}

TEST_F(QtTextEditorTest, AFontWithoutASizeIsRefused)
{
    start("text");
    for (const CGFloat size : {0.0, -1.0, std::nan("")}) {
        EXPECT_THAT(raised([&] { editor->setContent({.text = "a", .font = {.size = size}}); }),
                    HasSubstr("TextEditor.setContent: font.size must be"));
        EXPECT_THAT(raised([&] {
                        Backend::shared().makeTextEditor(client, {.font = {.size = size}}, {1, 1});
                    }),
                    HasSubstr("Backend.makeTextEditor: font.size must be"));
    }
    EXPECT_EQ(editor->text(), "text");
}

TEST_F(QtTextEditorTest, SizesFromNothingToHugeAreTaken)
{
    start("text");
    for (const CGSize size : {CGSize{0, 0}, {-5, -5}, {1e9, 1e9}, {0.5, 3}}) {
        editor->setSize(size);
        press(NSKey::end);
        press("!");
    }
    EXPECT_EQ(editor->text(), "text!!!!");
}

TEST_F(QtTextEditorTest, ADetachedEditorTellsNothing)
{
    start("text");
    editor->detach();
    typeInto(*editor, "a");
    QCoreApplication::processEvents();
    EXPECT_EQ(client.changeCount + client.displayCount, 0);
}

// Ends the editor as soon as the text changes.
class EndingClient : public TextEditorClient {
public:
    void textDidChange() override
    {
        editor->detach();
        editor.reset();
    }
    void editorNeedsDisplay() override { ADD_FAILURE() << "after the end"; }
    std::shared_ptr<TextEditor> editor;
};

TEST_F(QtTextEditorTest, TheClientMayEndItWhenItHearsOfAChange)
{
    const auto end = [](auto&& change) {
        EndingClient ending;
        ending.editor = Backend::shared().makeTextEditor(ending, {.text = "one", .font = {.size = 13}}, {100, 20});
        TextEditor& ended = *ending.editor;
        change(ended);
        EXPECT_FALSE(ending.editor);
    };
    end([](TextEditor& ended) { ended.handleInput(keyPress("x"), 0); });
    end([](TextEditor& ended) { ended.compose({.committed = "x"}); });
    Backend::shared().clipboard().setText("x");
    end([](TextEditor& ended) { ended.perform(TextCommand::paste); });
    QCoreApplication::processEvents();
}

TEST_F(QtTextEditorTest, AHundredThousandLettersCanStillBeTypedIn)
{
    std::string text;
    while (text.size() < 100000)
        text += "words and spaces ";
    start(text);
    press(NSKey::end);
    const std::clock_t before = std::clock(); // of the processor: other programs make no difference
    constexpr int count = 10;
    for (int i = 0; i < count; ++i)
        press("x");
    const double seconds = static_cast<double>(std::clock() - before) / CLOCKS_PER_SEC / count;
    RecordProperty("secondsPerLetter", std::to_string(seconds));
    EXPECT_LT(seconds, 0.5);
    EXPECT_EQ(editor->text(), text + std::string(count, 'x'));
}

TEST_F(QtTextEditorTest, TheTextLiesWhereItIsDrawnWithoutAnEditor)
{
    for (const CGFloat size : {10.0, 13.0, 13.5, 24.0}) {
        for (const NSTextAlignment alignment :
             {NSTextAlignment::natural, NSTextAlignment::right, NSTextAlignment::center}) {
            start("Ágqy");
            content.font.size = size;
            content.alignment = alignment;
            editor->setSize({200, 40});
            editor->setContent(content);
            editor->setEditable(false); // no caret
            const QImage edited = paintedPicture({200, 40}, 2, [&](Canvas& canvas) { editor->draw(canvas, {}); });
            const QImage plain = paintedPicture({200, 40}, 2, [&](Canvas& canvas) {
                canvas.drawText(content, {0, 0, 200, 40});
            });
            const QRect a = inkBounds(edited), b = inkBounds(plain);
            EXPECT_LE(std::abs(a.top() - b.top()), 1) << size;
            EXPECT_LE(std::abs(a.bottom() - b.bottom()), 1) << size;
            EXPECT_LE(std::abs(a.left() - b.left()), 2) << size;
            EXPECT_LE(std::abs(a.right() - b.right()), 2) << size;
        }
    }
}

TEST_F(QtTextEditorTest, DigitsAdvanceAlikeWhereTheFontSaysSo)
{
    ASSERT_TRUE(addNarrowOnes());
    start("1118881");
    content.font.family = "Narrow Ones";
    content.font.monospacedDigits = true;
    editor->setContent(content);
    press(NSKey::end);
    press("1");
    const CGFloat narrow = caretAt(3).minX() - caretAt(0).minX(), wide = caretAt(6).minX() - caretAt(3).minX();
    EXPECT_NEAR(narrow, wide, 0.1);
    EXPECT_NEAR(caretAt(8).minX() - caretAt(7).minX(), wide / 3, 0.1) << "typed ones as well";
    content.font.monospacedDigits = false;
    editor->setContent(content);
    EXPECT_LT(caretAt(3).minX() - caretAt(0).minX(), wide - 1);
}

TEST_F(QtTextEditorTest, TheContextMenuEditsAndTellsWhatItDid)
{
    start("one two");
    editor->select({0, 3});
    InputEvent event = pointer(InputKind::buttonPressed, {5, 5});
    event.button = 1;
    EXPECT_TRUE(editor->handleInput(event, 1));
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(menu);
    client.changeCount = 0;
    for (QAction* action : menu->actions()) {
        if (action->objectName() == "edit-cut")
            action->trigger();
    }
    menu->close();
    EXPECT_EQ(client.changeCount, 0) << "not while Qt is in the middle of it";
    QCoreApplication::processEvents();
    EXPECT_EQ(editor->text(), " two");
    EXPECT_EQ(client.changeCount, 1);
}

TEST_F(QtTextEditorTest, AnEditorMayEndWhileItsContextMenuIsOpen)
{
    start("one two");
    EXPECT_TRUE(press(NSKey::menu));
    ASSERT_TRUE(QApplication::activePopupWidget());
    editor->detach();
    editor.reset();
    EXPECT_FALSE(QApplication::activePopupWidget());
    QCoreApplication::processEvents();
}

TEST_F(QtTextEditorTest, DrawsTheCaretInTheTextsColourOnlyWhereNothingIsSelected)
{
    start("");
    content.color = {1, 0, 0, 1};
    editor->setContent(content);
    const QRect ink = inkBounds(picture());
    EXPECT_EQ(ink.width(), 1);
    EXPECT_GE(ink.height(), 12);
    EXPECT_EQ(picture().pixel(ink.topLeft()), qRgb(255, 0, 0)) << "sharp";
    editor->setEditable(false);
    EXPECT_TRUE(inkBounds(picture()).isEmpty());
}

TEST_F(QtTextEditorTest, DrawsTheSelectionInTheDesktopsColours)
{
    start("text");
    const double before = inkArea(picture());
    editor->perform(TextCommand::selectAll);
    const QImage selected = picture();
    EXPECT_GT(inkArea(selected), 3 * before);
    const QRgb highlight = QApplication::palette().color(QPalette::Highlight).rgb();
    int count = 0;
    for (int x = 0; x < selected.width(); ++x)
        count += selected.pixel(x, 1) == highlight ? 1 : 0;
    EXPECT_GT(count, 10);
}

TEST_F(QtTextEditorTest, DrawsInsideItsRectangleOnly)
{
    start(std::string(100, 'm'), NSLineBreakMode::clipping, {50, 10});
    const QImage image = paintedPicture({100, 60}, 1, [&](Canvas& canvas) { editor->draw(canvas, {20, 20}); });
    EXPECT_TRUE(QRect(20, 20, 50, 10).contains(inkBounds(image)));
    EXPECT_FALSE(inkBounds(image).isEmpty());
}

} // namespace
} // namespace RVCore::QtTextEditorTests
