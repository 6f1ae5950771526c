#include "ViewTesting.h"

#include <AppKit/NSEvent.h>
#include <AppKit/NSFont.h>
#include <AppKit/NSTextField.h>
#include <AppKit/NSWindow.h>
#include <Foundation/Message.h>
#include <HeadlessBackend/HeadlessBackend.h>
#include <HeadlessBackend/HeadlessTextEditor.h>
#include <Platform/Backend/TextInput.h>
#include <Platform/Foundation/Raised.h>

namespace RVCore::NSTextFieldInputTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::uint32_t shift = InputModifier::shift;
constexpr std::uint32_t command = InputModifier::command;

// Writes down what fields tell, and does what a test wants done then.
class RecordingDelegate : public NSObject, public NSTextFieldDelegate {
public:
    void controlTextDidBeginEditing(NSTextField& field) override { note("begin", field); }
    void controlTextDidChange(NSTextField& field) override { note("change", field); }
    void controlTextDidEndEditing(NSTextField& field) override { note("end", field); }

    std::vector<std::string> take() { return std::exchange(m_calls, {}); }
    std::function<void(const std::string&, NSTextField&)> onCall;

private:
    void note(const std::string& what, NSTextField& field)
    {
        m_calls.push_back(what + " '" + field.stringValue() + "'");
        if (onCall)
            onCall(what, field);
    }

    std::vector<std::string> m_calls;
};

// A window with two fields, the first at the top. At 10 points every letter is 5 wide and a line 13 high.
class NSTextFieldInputTest : public testing::Test {
protected:
    NSTextFieldInputTest()
    {
        auto owned = std::make_unique<HeadlessBackend>();
        desktop = owned.get();
        Backend::install(std::move(owned));
        window = make<NSWindow>(CGSize{200, 100});
        first = addField(60, "one two");
        second = addField(20, "three");
        window->makeKeyAndOrderFront();
        desktop->flushFrames();
    }
    ~NSTextFieldInputTest() override
    {
        window->close();
        window = nullptr;
        Backend::install(nullptr);
    }

    std::shared_ptr<NSTextField> addField(CGFloat bottom, const std::string& text)
    {
        auto field = make<NSTextField>(CGRect(10, bottom, 112, 21));
        field->setFont(systemFontOfSize(10));
        field->setStringValue(text);
        field->setDelegate(delegate);
        field->setOnAction([this] { ++actionCount; });
        window->contentView()->addSubview(field);
        return field;
    }
    HeadlessWindow& screen() { return *desktop->windows().front(); }
    void press(const std::string& key, std::uint32_t modifiers = 0) { screen().userInput(keyPress(key, modifiers)); }
    void type(const std::string& text)
    {
        for (const char letter : text)
            press(std::string(1, letter));
    }
    // In the first field, counted from where its text begins: from the window's top left corner (16, 23).
    void click(CGFloat x, int count = 1, std::uint32_t modifiers = 0)
    {
        for (int i = 0; i < count; ++i) {
            screen().userInput(pointer(InputKind::buttonPressed, {16 + x, 28}, modifiers));
            screen().userInput(pointer(InputKind::buttonReleased, {16 + x, 28}, modifiers));
        }
    }

    HeadlessBackend* desktop = nullptr;
    std::shared_ptr<NSWindow> window;
    std::shared_ptr<RecordingDelegate> delegate = make<RecordingDelegate>();
    std::shared_ptr<NSTextField> first;
    std::shared_ptr<NSTextField> second;
    int actionCount = 0;
};

TEST_F(NSTextFieldInputTest, AClickStartsEditingWithTheCaretThere)
{
    EXPECT_FALSE(first->isEditing());
    click(16);
    EXPECT_EQ(window->firstResponder(), first.get());
    EXPECT_TRUE(first->isEditing());
    EXPECT_EQ(first->selectedRange(), (TextRange{3, 0}));
    type("!");
    EXPECT_EQ(first->stringValue(), "one! two");
}

TEST_F(NSTextFieldInputTest, TwoClicksSelectAWordAndThreeAll)
{
    click(27, 2);
    EXPECT_EQ(first->selectedRange(), (TextRange{4, 3}));
    click(27);
    EXPECT_EQ(first->selectedRange(), (TextRange{0, 7}));
}

TEST_F(NSTextFieldInputTest, ADragSelectsAndGoesOnOutsideTheField)
{
    screen().userInput(pointer(InputKind::buttonPressed, {16 + 5, 28}));
    screen().userInput(pointer(InputKind::pointerMoved, {16 + 15, 28}));
    EXPECT_EQ(first->selectedRange(), (TextRange{1, 2}));
    screen().userInput(pointer(InputKind::pointerMoved, {190, 90}));
    screen().userInput(pointer(InputKind::buttonReleased, {190, 90}));
    EXPECT_EQ(first->selectedRange(), (TextRange{1, 6}));
}

TEST_F(NSTextFieldInputTest, TabSelectsAllOfTheNextFieldAndEndsTheOneBefore)
{
    press(NSKey::tab);
    EXPECT_EQ(window->firstResponder(), first.get());
    EXPECT_EQ(first->selectedRange(), (TextRange{0, 7}));
    type("x");
    press(NSKey::tab);
    EXPECT_FALSE(first->isEditing());
    EXPECT_EQ(first->stringValue(), "x");
    EXPECT_EQ(second->selectedRange(), (TextRange{0, 5}));
    press(NSKey::backTab);
    EXPECT_TRUE(first->isEditing());
    EXPECT_FALSE(second->isEditing());
    EXPECT_EQ(actionCount, 0) << "only Return sends the action";
    EXPECT_THAT(delegate->take(), ElementsAre("begin 'x'", "change 'x'", "end 'x'"));
}

TEST_F(NSTextFieldInputTest, EveryChangeIsToldAndTheValueIsLive)
{
    press(NSKey::tab);
    EXPECT_THAT(delegate->take(), IsEmpty()) << "nothing has been changed yet";
    type("ab");
    press(NSKey::left);
    EXPECT_THAT(delegate->take(), ElementsAre("begin 'a'", "change 'a'", "change 'ab'"));
    EXPECT_EQ(first->stringValue(), "ab");
}

TEST_F(NSTextFieldInputTest, AFieldThatWasNotChangedTellsNothing)
{
    press(NSKey::tab);
    press(NSKey::tab);
    EXPECT_THAT(delegate->take(), IsEmpty());
}

TEST_F(NSTextFieldInputTest, ReturnEndsEditingSelectsAllAndSendsTheAction)
{
    click(0);
    type("x");
    std::vector<std::string> callsBefore;
    first->setOnAction([&] {
        ++actionCount;
        callsBefore = delegate->take();
    });
    press(NSKey::carriageReturn);
    EXPECT_EQ(actionCount, 1);
    EXPECT_THAT(callsBefore, ElementsAre("begin 'xone two'", "change 'xone two'", "end 'xone two'"));
    EXPECT_EQ(first->selectedRange(), (TextRange{0, 8}));
    EXPECT_EQ(window->firstResponder(), first.get());
    press(NSKey::enter);
    EXPECT_EQ(actionCount, 2) << "also when nothing was changed";
    type("y");
    EXPECT_THAT(delegate->take(), ElementsAre("begin 'y'", "change 'y'"));
}

TEST_F(NSTextFieldInputTest, ReturnGoesOnToTheWindowWhereNoActionTakesIt)
{
    class Window : public NSWindow {
    public:
        void keyDown(NSEvent& event) override { keys += event.characters(); }
        std::string keys;
    };
    const auto other = make<Window>(CGSize{100, 100});
    const auto field = make<NSTextField>(CGRect(0, 0, 100, 20));
    other->contentView()->addSubview(field);
    other->makeFirstResponder(field.get());
    NSEventContent key;
    key.type = NSEventType::keyDown;
    key.characters = key.charactersIgnoringModifiers = NSKey::carriageReturn;
    field->keyDown(*make<NSEvent>(key));
    EXPECT_EQ(other->keys, "\r");
    field->setOnAction([] {});
    field->keyDown(*make<NSEvent>(key));
    EXPECT_EQ(other->keys, "\r");
    key.characters = key.charactersIgnoringModifiers = NSKey::escape;
    field->keyDown(*make<NSEvent>(key));
    EXPECT_EQ(other->keys, "\r\x1b") << "there is nothing to bring back";
}

TEST_F(NSTextFieldInputTest, EscapeBringsBackWhatEditingBeganWith)
{
    press(NSKey::tab);
    type("xy");
    delegate->take();
    press(NSKey::escape);
    EXPECT_EQ(first->stringValue(), "one two");
    EXPECT_EQ(first->selectedRange(), (TextRange{0, 7}));
    EXPECT_TRUE(first->isEditing());
    EXPECT_THAT(delegate->take(), ElementsAre("change 'one two'"));
    type("z");
    press(NSKey::carriageReturn);
    type("!");
    press(NSKey::escape);
    EXPECT_EQ(first->stringValue(), "z") << "since Return";
}

TEST_F(NSTextFieldInputTest, EscapeGivesUpAComposition)
{
    press(NSKey::tab);
    screen().textInput()->compose({.marked = "x", .caret = 1});
    EXPECT_EQ(first->stringValue(), "") << "what was selected gives way";
    press(NSKey::escape);
    EXPECT_FALSE(screen().textInput()->isComposing());
    EXPECT_EQ(first->stringValue(), "");
    press(NSKey::escape);
    EXPECT_EQ(first->stringValue(), "one two");
}

TEST_F(NSTextFieldInputTest, ShortcutsAndTheActionsOfMenusEdit)
{
    click(0);
    press("a", command);
    press("c", command);
    EXPECT_EQ(desktop->clipboard().text(), "one two");
    send(first, "delete:", ObjectRef());
    EXPECT_EQ(first->stringValue(), "");
    send(first, "paste:", ObjectRef());
    send(first, "paste:", ObjectRef());
    EXPECT_EQ(first->stringValue(), "one twoone two");
    send(first, "undo:", ObjectRef());
    EXPECT_EQ(first->stringValue(), "one two");
    send(first, "redo:", ObjectRef());
    send(first, "selectAll:", ObjectRef());
    send(first, "cut:", ObjectRef());
    EXPECT_EQ(desktop->clipboard().text(), "one twoone two");
    EXPECT_TRUE(window->firstResponder()->tryToPerform("copy:", nullptr));
}

TEST_F(NSTextFieldInputTest, CommandsDoNothingWhileItIsNotEdited)
{
    first->perform(TextCommand::selectAll);
    first->perform(TextCommand::deleteSelection);
    first->setSelectedRange({1, 2});
    EXPECT_EQ(first->selectedRange(), (TextRange{0, 0}));
    EXPECT_EQ(first->stringValue(), "one two");
}

TEST_F(NSTextFieldInputTest, TheSecondButtonOpensTheMenuOfTheFieldUnderIt)
{
    InputEvent event = pointer(InputKind::buttonPressed, {20, 28});
    event.button = 1;
    screen().userInput(event);
    EXPECT_TRUE(first->isEditing());
    const auto editor = std::dynamic_pointer_cast<HeadlessTextEditor>(screen().textInput());
    ASSERT_TRUE(editor);
    EXPECT_EQ(editor->contextMenuCount(), 1);
}

TEST_F(NSTextFieldInputTest, InputMethodsComposeIntoTheFieldThatIsEdited)
{
    EXPECT_EQ(screen().textInput(), nullptr);
    click(35);
    const auto editor = screen().textInput();
    ASSERT_TRUE(editor);
    EXPECT_EQ(screen().textInputOrigin(), (CGPoint{16, 23}));
    editor->compose({.marked = "か", .caret = 3});
    EXPECT_EQ(first->stringValue(), "one two");
    editor->compose({.committed = "火"});
    EXPECT_EQ(first->stringValue(), "one two火");
    press(NSKey::tab);
    EXPECT_NE(screen().textInput(), editor);
    EXPECT_EQ(screen().textInputOrigin(), (CGPoint{16, 63}));
    window->makeFirstResponder(nullptr);
    EXPECT_EQ(screen().textInput(), nullptr);
}

TEST_F(NSTextFieldInputTest, WhatIsBeingComposedIsNotLostWhenEditingEnds)
{
    click(35);
    screen().textInput()->compose({.marked = "か", .caret = 3});
    window->makeFirstResponder(nullptr);
    EXPECT_EQ(first->stringValue(), "one twoか");
    EXPECT_THAT(delegate->take(), ElementsAre("begin 'one twoか'", "change 'one twoか'", "end 'one twoか'"));
}

TEST_F(NSTextFieldInputTest, AFieldThatMovesTellsInputMethodsWithItsNextFrame)
{
    click(35);
    first->setFrameOrigin({20, 50});
    desktop->flushFrames();
    EXPECT_EQ(screen().textInputOrigin(), (CGPoint{26, 33}));
}

TEST_F(NSTextFieldInputTest, AnotherValueWhileEditingReplacesTheTextAndTellsNobody)
{
    click(35);
    type("!");
    delegate->take();
    first->setStringValue("new");
    EXPECT_EQ(first->selectedRange(), (TextRange{3, 0}));
    EXPECT_THAT(delegate->take(), IsEmpty());
    press("z", command);
    EXPECT_EQ(first->stringValue(), "new") << "what could be undone is forgotten";
    type("er");
    EXPECT_EQ(first->stringValue(), "newer");
    press(NSKey::escape);
    EXPECT_EQ(first->stringValue(), "new") << "it is what Escape brings back";
}

TEST_F(NSTextFieldInputTest, ADelegateMayChangeTheTextThatItHearsOf)
{
    delegate->onCall = [](const std::string& what, NSTextField& field) {
        if (what != "change")
            return;
        std::string text = field.stringValue();
        std::erase(text, '-');
        field.setStringValue(text);
    };
    click(35);
    type("-a-b");
    EXPECT_EQ(first->stringValue(), "one twoab");
    EXPECT_EQ(first->selectedRange(), (TextRange{9, 0}));
    press(NSKey::escape);
    EXPECT_EQ(first->stringValue(), "one two");
}

TEST_F(NSTextFieldInputTest, ADelegateMayEndEditingOrTakeTheFieldOutWhenItHearsOfAChange)
{
    for (const std::string when : {"begin", "change"}) {
        delegate->onCall = [&](const std::string& what, NSTextField& field) {
            if (what == when && field.window())
                field.removeFromSuperview();
        };
        const auto field = addField(60, "text");
        window->makeFirstResponder(field.get());
        type("x");
        EXPECT_EQ(field->superview(), nullptr);
        EXPECT_FALSE(field->isEditing());
        EXPECT_EQ(field->stringValue(), "x");
        const auto calls = delegate->take();
        EXPECT_EQ(calls.back(), "end 'x'");
        EXPECT_EQ(std::count(calls.begin(), calls.end(), "end 'x'"), 1);
        EXPECT_EQ(window->firstResponder(), window.get());
    }
}

TEST_F(NSTextFieldInputTest, AFieldMayDieInItsOwnCallback)
{
    for (const std::string when : {"begin", "change", "end", "action"}) {
        auto field = addField(60, "text");
        const std::weak_ptr<NSTextField> watch = field;
        const auto drop = [&] {
            if (field)
                field->removeFromSuperview();
            field = nullptr;
        };
        delegate->onCall = [&](const std::string& what, NSTextField&) {
            if (what == when)
                drop();
        };
        field->setOnAction(drop);
        window->makeFirstResponder(field.get());
        type("x");
        press(NSKey::carriageReturn);
        EXPECT_TRUE(watch.expired()) << when;
        type("y");
    }
}

TEST_F(NSTextFieldInputTest, LeavingItsWindowKeepsWhatWasTyped)
{
    click(35);
    type("!");
    delegate->take();
    window->contentView()->addSubview(make<NSView>());
    first->removeFromSuperview();
    EXPECT_EQ(first->stringValue(), "one two!");
    EXPECT_FALSE(first->isEditing());
    EXPECT_THAT(delegate->take(), ElementsAre("end 'one two!'"));
    EXPECT_EQ(screen().textInput(), nullptr);
    type("lost");
    EXPECT_EQ(first->stringValue(), "one two!");
}

TEST_F(NSTextFieldInputTest, ADisabledFieldTakesNeitherClicksNorKeys)
{
    click(35);
    first->setEnabled(false);
    EXPECT_FALSE(first->isEditing());
    EXPECT_EQ(window->firstResponder(), window.get());
    click(5);
    type("x");
    EXPECT_EQ(first->stringValue(), "one two");
    press(NSKey::tab);
    EXPECT_EQ(window->firstResponder(), second.get());
}

TEST_F(NSTextFieldInputTest, WhatIsSelectableOnlyCanBeCopiedAndTabPassesIt)
{
    first->setEditable(false);
    click(0);
    EXPECT_TRUE(first->isEditing());
    EXPECT_EQ(screen().textInput(), nullptr) << "input methods have nothing to do here";
    type("x");
    press("a", command);
    press("c", command);
    EXPECT_EQ(desktop->clipboard().text(), "one two");
    press("x", command);
    EXPECT_EQ(first->stringValue(), "one two");
    EXPECT_THAT(delegate->take(), IsEmpty());
    window->makeFirstResponder(nullptr);
    press(NSKey::tab);
    EXPECT_EQ(window->firstResponder(), second.get());
}

TEST_F(NSTextFieldInputTest, ALabelTakesNothing)
{
    first->setEditable(false);
    first->setSelectable(false);
    click(5);
    EXPECT_FALSE(first->isEditing());
    EXPECT_EQ(window->firstResponder(), window.get());
    EXPECT_FALSE(window->makeFirstResponder(first.get()));
}

TEST_F(NSTextFieldInputTest, AFieldThatBecomesALabelWhileItIsEditedEndsThat)
{
    click(5);
    first->setEditable(false);
    EXPECT_TRUE(first->isEditing()) << "it can still be selected";
    type("x");
    EXPECT_EQ(first->stringValue(), "one two");
    first->setSelectable(false);
    EXPECT_FALSE(first->isEditing());
    EXPECT_EQ(window->firstResponder(), window.get());
}

TEST_F(NSTextFieldInputTest, PastedLineFeedsBecomeSpacesAndBadBytesReplacements)
{
    desktop->clipboard().setText("a\nb\xFF");
    press(NSKey::tab);
    press("v", command);
    EXPECT_EQ(first->stringValue(), "a b\xEF\xBF\xBD");
}

TEST_F(NSTextFieldInputTest, WhereTextWrapsReturnWithShiftStartsANewLine)
{
    first->setLineBreakMode(NSLineBreakMode::wordWrapping);
    click(35);
    press(NSKey::carriageReturn, shift);
    type("x");
    EXPECT_EQ(first->stringValue(), "one two\nx");
    EXPECT_EQ(actionCount, 0);
    press(NSKey::carriageReturn);
    EXPECT_EQ(actionCount, 1);
}

TEST_F(NSTextFieldInputTest, ALongTextScrollsInsideTheField)
{
    first->setStringValue("0123456789012345678901234567890");
    press(NSKey::tab);
    press(NSKey::end);
    EXPECT_EQ(screen().textInput()->scrollOffset(), (CGPoint{56, 0}));
    first->setFrameSize({62, 21});
    EXPECT_EQ(screen().textInput()->scrollOffset(), (CGPoint{106, 0}));
}

TEST_F(NSTextFieldInputTest, ThePointerIsABeamOverWhatCanBeSelected)
{
    screen().userInput(pointer(InputKind::pointerMoved, {20, 28}));
    EXPECT_EQ(screen().cursor(), CursorShape::iBeam);
    screen().userInput(pointer(InputKind::pointerMoved, {20, 5}));
    EXPECT_EQ(screen().cursor(), CursorShape::arrow);
    first->setEnabled(false);
    screen().userInput(pointer(InputKind::pointerMoved, {20, 28}));
    EXPECT_EQ(screen().cursor(), CursorShape::arrow);
}

TEST_F(NSTextFieldInputTest, TypingAsksForOneFrame)
{
    click(35);
    desktop->flushFrames();
    EXPECT_FALSE(screen().needsFrame());
    type("x");
    EXPECT_TRUE(screen().needsFrame());
    EXPECT_EQ(desktop->flushFrames(), 1);
    EXPECT_EQ(desktop->flushFrames(), 0);
    EXPECT_THAT(screen().lastFrame().text(), HasSubstr("\"one twox\""));
}

TEST_F(NSTextFieldInputTest, TypingDoesNotChangeTheSizeOfALine)
{
    const CGSize before = first->intrinsicContentSize();
    click(35);
    type("and on and on");
    EXPECT_EQ(first->intrinsicContentSize(), before);
    EXPECT_FALSE(window->contentView()->needsLayout());
}

TEST_F(NSTextFieldInputTest, AssistiveTechnologySeesAFieldAndTypesIntoIt)
{
    EXPECT_EQ(first->accessibilityRole(), AccessibleRole::textField);
    EXPECT_EQ(first->accessibilityValue(), "one two");
    EXPECT_EQ(first->accessibilityState(), (AccessibleState{.isFocusable = true, .isEditable = true}));
    EXPECT_TRUE(first->setAccessibilityValue("by\nvoice"));
    EXPECT_EQ(first->stringValue(), "by voice");
    EXPECT_TRUE(first->accessibilityState().isFocused);
    EXPECT_EQ(delegate->take().back(), "change 'by voice'");
    EXPECT_TRUE(first->setAccessibilityValue(""));
    EXPECT_EQ(first->stringValue(), "");
    second->setEnabled(false);
    EXPECT_EQ(second->accessibilityState(), (AccessibleState{.isEnabled = false}));
    EXPECT_FALSE(second->setAccessibilityValue("x"));
    second->setEnabled(true);
    second->setEditable(false);
    EXPECT_EQ(second->accessibilityRole(), AccessibleRole::staticText);
    EXPECT_FALSE(second->accessibilityState().isEditable);
    EXPECT_FALSE(second->setAccessibilityValue("x"));
    EXPECT_EQ(second->stringValue(), "three");
}

TEST_F(NSTextFieldInputTest, ADelegateByNameMustBeOne)
{
    send(first, "setDelegate:", ObjectRef(delegate));
    EXPECT_EQ(send(first, "delegate").as<ObjectRef>(), delegate);
    EXPECT_THAT(raised([&] { send(first, "setDelegate:", ObjectRef(second)); }),
                HasSubstr("is no NSTextFieldDelegate"));
    EXPECT_EQ(first->delegate(), delegate);
    send(first, "setDelegate:", Value());
    EXPECT_EQ(first->delegate(), nullptr);
}

TEST_F(NSTextFieldInputTest, ADeadDelegateHearsNothing)
{
    const std::weak_ptr<RecordingDelegate> watch = delegate;
    delegate = nullptr;
    EXPECT_TRUE(watch.expired());
    click(35);
    type("x");
    EXPECT_EQ(first->stringValue(), "one twox");
}

TEST_F(NSTextFieldInputTest, ADelegateMayKeepTheFocusWhenEditingEnds)
{
    click(35);
    type("!");
    delegate->onCall = [&](const std::string& what, NSTextField& field) {
        if (what == "end")
            window->makeFirstResponder(&field);
    };
    EXPECT_FALSE(second->setAccessibilityValue("other"));
    EXPECT_EQ(window->firstResponder(), first.get());
    EXPECT_TRUE(first->isEditing());
    EXPECT_FALSE(second->isEditing());
    EXPECT_EQ(second->stringValue(), "three");
    delegate->onCall = nullptr;
}

TEST_F(NSTextFieldInputTest, AHiddenFieldIsNoLongerEdited)
{
    click(35);
    type("!");
    first->setHidden(true);
    EXPECT_FALSE(first->isEditing());
    type("lost");
    EXPECT_EQ(first->stringValue(), "one two!");
}

TEST_F(NSTextFieldInputTest, TheSideButtonsOfAMouseDoNothingToTheText)
{
    click(35);
    first->setSelectedRange({0, 3});
    for (const int button : {3, 4}) {
        for (const InputKind kind : {InputKind::buttonPressed, InputKind::buttonReleased}) {
            InputEvent event = pointer(kind, {20, 28});
            event.button = button;
            screen().userInput(event);
        }
    }
    EXPECT_EQ(first->selectedRange(), (TextRange{0, 3}));
}

TEST_F(NSTextFieldInputTest, ReturnThatIsHeldSendsTheActionOnce)
{
    click(35);
    InputEvent event = keyPress(NSKey::carriageReturn, 0);
    screen().userInput(event);
    event.isRepeat = true;
    screen().userInput(event);
    EXPECT_EQ(actionCount, 1);
}

TEST_F(NSTextFieldInputTest, AssistiveTechnologysValueIsOneEdit)
{
    click(35);
    EXPECT_TRUE(first->setAccessibilityValue("new"));
    EXPECT_THAT(delegate->take(), ElementsAre("begin 'new'", "change 'new'"));
    press("z", command);
    EXPECT_EQ(first->stringValue(), "one two");
    delegate->take();
    EXPECT_TRUE(first->setAccessibilityValue(""));
    EXPECT_EQ(first->stringValue(), "");
    EXPECT_THAT(delegate->take(), ElementsAre("change ''"));
}

TEST_F(NSTextFieldInputTest, AChangeOfBeingEnabledIsToldOnce)
{
    screen().takeAccessibilityChanges();
    first->setEnabled(false);
    const auto changes = screen().takeAccessibilityChanges();
    EXPECT_EQ(std::ranges::count(changes, AccessibleChange::state, &decltype(changes)::value_type::second), 1);
}

TEST_F(NSTextFieldInputTest, TheFocusRingIsOnlyInTheWindowThatHasTheKeys)
{
    const auto ring = [&] {
        RecordingCanvas canvas;
        first->draw(canvas, first->bounds());
        return canvas.text().find("text field, focused in") != std::string::npos;
    };
    window->makeFirstResponder(first.get());
    EXPECT_TRUE(ring());
    const auto other = make<NSWindow>(CGSize{50, 50});
    other->makeKeyAndOrderFront();
    EXPECT_FALSE(ring());
    other->close();
    EXPECT_TRUE(ring());
}

} // namespace
} // namespace RVCore::NSTextFieldInputTests
