#include <HeadlessBackend/HeadlessBackend.h>
#include <HeadlessBackend/HeadlessTextEditor.h>
#include <Platform/Backend/TextInput.h>
#include <Platform/Foundation/Raised.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace RVCore::HeadlessTextEditorTests {
namespace {

using testing::HasSubstr;

constexpr std::uint32_t shift = InputModifier::shift;
constexpr std::uint32_t command = InputModifier::command;

// At 10 points every letter is 5 wide and a line 13 high.
class HeadlessTextEditorTest : public testing::Test {
protected:
    void start(const std::string& text, NSLineBreakMode mode = NSLineBreakMode::clipping)
    {
        editor = std::dynamic_pointer_cast<HeadlessTextEditor>(backend.makeTextEditor(
            client, {.text = text, .font = {.size = 10}, .color = {0, 0, 0, 1}, .lineBreakMode = mode}, {50, 26}));
    }
    bool press(const std::string& key, std::uint32_t modifiers = 0)
    {
        return editor->handleInput(keyPress(key, modifiers), 0);
    }

    HeadlessBackend backend;
    RecordingEditorClient client;
    std::shared_ptr<HeadlessTextEditor> editor;
};

TEST_F(HeadlessTextEditorTest, StartsWithTheCaretBeforeTheText)
{
    start("text");
    EXPECT_EQ(editor->selection(), (TextRange{0, 0}));
    EXPECT_EQ(editor->caretRect(), CGRect(0, 0, 1, 13));
    EXPECT_EQ(editor->text(), "text");
}

TEST_F(HeadlessTextEditorTest, WhatIsTypedGoesToTheCaretAndIsTold)
{
    start("bc");
    typeInto(*editor, "a");
    EXPECT_EQ(editor->text(), "abc");
    EXPECT_EQ(editor->selection(), (TextRange{1, 0}));
    EXPECT_EQ(client.changeCount, 1);
    EXPECT_EQ(client.displayCount, 1);
}

TEST_F(HeadlessTextEditorTest, RangesCountBytesAndEndBetweenCharacters)
{
    start("aé漢");
    editor->select({1, 2});
    EXPECT_EQ(editor->selection(), (TextRange{1, 2}));
    editor->select({2, 2}); // inside é, inside 漢
    EXPECT_EQ(editor->selection(), (TextRange{1, 2}));
    editor->select({3, 1000});
    EXPECT_EQ(editor->selection(), (TextRange{3, 3}));
    editor->select({1000, 1});
    EXPECT_EQ(editor->selection(), (TextRange{6, 0}));
}

TEST_F(HeadlessTextEditorTest, KeysMoveByCharactersWordsAndLines)
{
    start("one two\nthree");
    press(NSKey::right);
    EXPECT_EQ(editor->selection().location, 1U);
    press(NSKey::right, command);
    EXPECT_EQ(editor->selection().location, 3U);
    press(NSKey::right, command);
    EXPECT_EQ(editor->selection().location, 7U);
    press(NSKey::left, command);
    EXPECT_EQ(editor->selection().location, 4U);
    press(NSKey::home);
    EXPECT_EQ(editor->selection().location, 0U);
    press(NSKey::down);
    EXPECT_EQ(editor->selection().location, 8U);
    press(NSKey::end);
    EXPECT_EQ(editor->selection().location, 13U);
    press(NSKey::up);
    EXPECT_EQ(editor->selection().location, 5U);
    press(NSKey::end, command);
    EXPECT_EQ(editor->selection().location, 13U);
    press(NSKey::home, command);
    press(NSKey::left);
    EXPECT_EQ(editor->selection().location, 0U);
    EXPECT_EQ(client.changeCount, 0);
}

TEST_F(HeadlessTextEditorTest, ShiftSelectsAndTypingReplaces)
{
    start("one two");
    press(NSKey::right, command | shift);
    EXPECT_EQ(editor->selection(), (TextRange{0, 3}));
    typeInto(*editor, "1");
    EXPECT_EQ(editor->text(), "1 two");
    press(NSKey::end, shift);
    press(NSKey::left);
    EXPECT_EQ(editor->selection(), (TextRange{1, 0})) << "a selection collapses to its start";
}

TEST_F(HeadlessTextEditorTest, DeletesByCharactersAndWords)
{
    start("one two");
    press(NSKey::deleteForward);
    EXPECT_EQ(editor->text(), "ne two");
    press(NSKey::backspace);
    EXPECT_EQ(editor->text(), "ne two") << "nothing is before the caret";
    EXPECT_EQ(client.changeCount, 1);
    press(NSKey::end);
    press(NSKey::backspace, command);
    EXPECT_EQ(editor->text(), "ne ");
    press(NSKey::home);
    press(NSKey::deleteForward, command);
    EXPECT_EQ(editor->text(), " ");
}

TEST_F(HeadlessTextEditorTest, UndoTakesBackWhatWasTypedAtOnce)
{
    start("");
    typeInto(*editor, "one");
    press(NSKey::home);
    typeInto(*editor, "two");
    EXPECT_EQ(editor->text(), "twoone");
    press("z", command);
    EXPECT_EQ(editor->text(), "one");
    press("z", command);
    EXPECT_EQ(editor->text(), "");
    EXPECT_FALSE(editor->canPerform(TextCommand::undo));
    press("z", command | shift);
    press("y", command);
    EXPECT_EQ(editor->text(), "twoone");
    EXPECT_FALSE(editor->canPerform(TextCommand::redo));
}

TEST_F(HeadlessTextEditorTest, CutsCopiesAndPastesThroughItsBackendsClipboard)
{
    start("one two");
    EXPECT_FALSE(editor->canPerform(TextCommand::paste));
    editor->select({0, 3});
    press("c", command);
    EXPECT_EQ(backend.clipboard().text(), "one");
    press(NSKey::end);
    press("v", command);
    EXPECT_EQ(editor->text(), "one twoone");
    press("a", command);
    press("x", command);
    EXPECT_EQ(editor->text(), "");
    EXPECT_EQ(backend.clipboard().text(), "one twoone");
}

TEST_F(HeadlessTextEditorTest, PastedLineFeedsBecomeSpacesInOneLineAndStayWhereTextWraps)
{
    backend.clipboard().setText("a\nb\r\nc\rd\xFF");
    start("");
    editor->perform(TextCommand::paste);
    EXPECT_EQ(editor->text(), "a b c d\xEF\xBF\xBD");
    start("", NSLineBreakMode::wordWrapping);
    editor->perform(TextCommand::paste);
    EXPECT_EQ(editor->text(), "a\nb\nc\nd\xEF\xBF\xBD");
}

TEST_F(HeadlessTextEditorTest, ClicksPutTheCaretAndSelectWordsAndLines)
{
    start("one two");
    click(*editor, {27, 5});
    EXPECT_EQ(editor->selection(), (TextRange{5, 0}));
    click(*editor, {27, 5}, 2);
    EXPECT_EQ(editor->selection(), (TextRange{4, 3}));
    click(*editor, {27, 5}, 3);
    EXPECT_EQ(editor->selection(), (TextRange{0, 7}));
    click(*editor, {0, 5});
    click(*editor, {15, 5}, 1, shift);
    EXPECT_EQ(editor->selection(), (TextRange{0, 3}));
}

TEST_F(HeadlessTextEditorTest, ADragSelects)
{
    start("one two");
    editor->handleInput(pointer(InputKind::buttonPressed, {5, 5}), 1);
    editor->handleInput(pointer(InputKind::pointerMoved, {20, 5}), 0);
    editor->handleInput(pointer(InputKind::buttonReleased, {20, 5}), 1);
    EXPECT_EQ(editor->selection(), (TextRange{1, 3}));
}

TEST_F(HeadlessTextEditorTest, TheSecondButtonAndTheMenuKeyOpenTheMenu)
{
    start("text");
    InputEvent event = pointer(InputKind::buttonPressed, {5, 5});
    event.button = 1;
    EXPECT_TRUE(editor->handleInput(event, 1));
    EXPECT_TRUE(press(NSKey::menu));
    EXPECT_EQ(editor->contextMenuCount(), 2);
}

TEST_F(HeadlessTextEditorTest, ALineThatIsTooLongScrollsWithTheCaret)
{
    start("0123456789abcdef");
    press(NSKey::end);
    EXPECT_EQ(editor->scrollOffset(), (CGPoint{31, 0}));
    EXPECT_EQ(editor->caretRect(), CGRect(49, 0, 1, 13));
    press(NSKey::home);
    EXPECT_EQ(editor->scrollOffset(), (CGPoint{0, 0}));
}

TEST_F(HeadlessTextEditorTest, WhatIsComposedIsNotTextUntilItIsCommitted)
{
    start("ab");
    editor->select({1, 0});
    editor->compose({.marked = "にほ", .caret = 3});
    EXPECT_TRUE(editor->isComposing());
    EXPECT_EQ(editor->text(), "ab");
    EXPECT_EQ(editor->caretRect().minX(), 15) << "in the marked text";
    EXPECT_EQ(client.changeCount, 0);
    editor->compose({.committed = "日本"});
    EXPECT_FALSE(editor->isComposing());
    EXPECT_EQ(editor->text(), "a日本b");
    EXPECT_EQ(client.changeCount, 1);
    editor->compose({.marked = "x"});
    editor->commitComposition();
    EXPECT_EQ(editor->text(), "a日本xb");
    editor->compose({.marked = "y"});
    editor->compose({});
    EXPECT_EQ(editor->text(), "a日本xb");
}

TEST_F(HeadlessTextEditorTest, WhatIsNotEditableCanBeSelectedAndCopiedOnly)
{
    start("text");
    editor->setEditable(false);
    EXPECT_FALSE(press("x"));
    EXPECT_FALSE(press(NSKey::backspace));
    editor->compose({.committed = "x"});
    EXPECT_TRUE(press("a", command));
    EXPECT_TRUE(press("c", command));
    EXPECT_EQ(backend.clipboard().text(), "text");
    for (const TextCommand what : {TextCommand::cut, TextCommand::paste, TextCommand::deleteSelection})
        editor->perform(what);
    EXPECT_EQ(editor->text(), "text");
    EXPECT_EQ(client.changeCount, 0);
}

TEST_F(HeadlessTextEditorTest, ReturnTabAndEscapeAreLeftToTheClient)
{
    start("text");
    for (const char* key : {NSKey::carriageReturn, NSKey::enter, NSKey::tab, NSKey::backTab, NSKey::escape})
        EXPECT_FALSE(press(key)) << testing::PrintToString(key);
    EXPECT_FALSE(press(NSKey::carriageReturn, shift));
    start("text", NSLineBreakMode::wordWrapping);
    EXPECT_FALSE(press(NSKey::carriageReturn));
    EXPECT_TRUE(press(NSKey::carriageReturn, shift));
    EXPECT_EQ(editor->text(), "\ntext");
}

TEST_F(HeadlessTextEditorTest, KeysThatStandForNothingAreNotUsed)
{
    start("text");
    EXPECT_FALSE(press(NSKey::f1));
    EXPECT_FALSE(press("q", command));
    EXPECT_FALSE(press(""));
    EXPECT_EQ(editor->text(), "text");
}

TEST_F(HeadlessTextEditorTest, AnotherContentForgetsWhatCouldBeUndoneAndTellsNobody)
{
    start("");
    typeInto(*editor, "one");
    const int before = client.displayCount;
    editor->setContent({.text = "on", .font = {.size = 10}});
    EXPECT_EQ(editor->selection(), (TextRange{2, 0}));
    EXPECT_FALSE(editor->canPerform(TextCommand::undo));
    EXPECT_EQ(client.displayCount, before);
    EXPECT_EQ(client.changeCount, 3);
}

TEST_F(HeadlessTextEditorTest, AFontWithoutASizeIsRefused)
{
    start("text");
    EXPECT_THAT(raised([&] { editor->setContent({.text = "a", .font = {.size = 0}}); }),
                HasSubstr("font.size must be above 0"));
    EXPECT_EQ(editor->text(), "text");
}

TEST_F(HeadlessTextEditorTest, ADetachedEditorTellsNothing)
{
    start("text");
    editor->detach();
    typeInto(*editor, "a");
    EXPECT_EQ(client.changeCount + client.displayCount, 0);
}

TEST_F(HeadlessTextEditorTest, DrawsSelectionTextAndCaret)
{
    start("text");
    RecordingCanvas canvas;
    editor->draw(canvas, {3, 4});
    EXPECT_EQ(canvas.text(), "save\n"
                             "  clip (3, 4) 50 × 26\n"
                             "  text \"text\" system 10 rgba(0, 0, 0, 1) in (3, 4) 50 × 26\n"
                             "  fill (3, 4) 1 × 13 rgba(0, 0, 0, 1)\n"
                             "restore\n");
    canvas.clear();
    editor->select({1, 2});
    editor->draw(canvas, {3, 4});
    EXPECT_EQ(canvas.text(), "save\n"
                             "  clip (3, 4) 50 × 26\n"
                             "  fill (8, 4) 10 × 13 rgba(0.7, 0.8, 1, 1)\n"
                             "  text \"text\" system 10 rgba(0, 0, 0, 1) in (3, 4) 50 × 26\n"
                             "restore\n");
}

} // namespace
} // namespace RVCore::HeadlessTextEditorTests
