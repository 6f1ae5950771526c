#include "ControlTesting.h"

#include <AppKit/NSAccessibility.h>
#include <AppKit/NSApplication.h>
#include <AppKit/NSButton.h>
#include <AppKit/NSFont.h>
#include <Foundation/Message.h>
#include <Foundation/NSCoder.h>
#include <HeadlessBackend/RecordingCanvas.h>
#include <Platform/Foundation/Raised.h>

namespace RVCore::NSButtonTests {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;
using State = NSControlStateValue;
using Type = NSButtonType;

std::shared_ptr<NSImage> image(CGFloat width, CGFloat height)
{
    return make<NSImage>(std::make_shared<const CGImage>(1, 1, std::vector<std::uint8_t>(4, 255)),
                         CGSize{width, height});
}

// At 10 points every character is 5 wide and a line 13 high (HeadlessText.h).
std::shared_ptr<NSButton> button(const std::string& title, Type type = Type::momentaryPushIn)
{
    const auto result = make<NSButton>();
    result->setFont(systemFontOfSize(10));
    result->setButtonType(type);
    result->setTitle(title);
    result->setFrameSize(result->intrinsicContentSize());
    return result;
}

std::string drawn(NSButton& view)
{
    RecordingCanvas canvas;
    view.draw(canvas, view.bounds());
    return canvas.text();
}

// What is drawn first: the look.
std::string lookOf(NSButton& view)
{
    RecordingCanvas canvas;
    view.draw(canvas, view.bounds());
    return canvas.lines().front();
}

// A window on the (headless) screen with what the test puts into its content.
class NSButtonInWindow : public testing::Test {
protected:
    NSButtonInWindow() { window->makeKeyAndOrderFront(); }
    ~NSButtonInWindow() override { window->close(); }

    std::shared_ptr<NSButton> add(const std::string& title, Type type = Type::momentaryPushIn)
    {
        const auto result = button(title, type);
        result->setFrameOrigin({10, 10.0 + 30.0 * static_cast<CGFloat>(window->contentView()->subviews().size())});
        result->setOnAction([this, title] { log.push_back(title); });
        window->contentView()->addSubview(result);
        return result;
    }
    void sendMouse(NSEventType type, const NSView& view, CGPoint point)
    {
        window->sendEvent(*mouseEvent(type, view, point));
    }
    void click(const NSView& view)
    {
        sendMouse(NSEventType::leftMouseDown, view, {5, 5});
        sendMouse(NSEventType::leftMouseUp, view, {5, 5});
    }
    void press(const std::string& key, NSEventModifierFlags flags = NSEventModifierFlags::none)
    {
        window->sendEvent(*keyEvent(key, flags));
    }

    std::shared_ptr<NSWindow> window = make<NSWindow>();
    std::vector<std::string> log;
};

TEST(NSButton, StartsAsABorderedPushButtonWithoutATitle)
{
    const auto plain = make<NSButton>();
    EXPECT_EQ(plain->buttonType(), Type::momentaryPushIn);
    EXPECT_TRUE(plain->isBordered());
    EXPECT_EQ(plain->bezelStyle(), NSBezelStyle::rounded);
    EXPECT_EQ(plain->title(), "");
    EXPECT_EQ(plain->image(), nullptr);
    EXPECT_EQ(plain->imagePosition(), NSCellImagePosition::noImage);
    EXPECT_EQ(plain->imageScaling(), NSImageScaling::proportionallyDown);
    EXPECT_EQ(plain->state(), State::off);
    EXPECT_FALSE(plain->allowsMixedState());
    EXPECT_EQ(plain->keyEquivalent(), "");
    EXPECT_TRUE(plain->isEnabled());
}

TEST(NSButton, IsAsLargeAsItsLookMakesItsContent)
{
    EXPECT_EQ(button("A long title")->intrinsicContentSize(), (CGSize{80, 21}));
    EXPECT_EQ(button("OK")->intrinsicContentSize(), (CGSize{60, 21})) << "the smallest width of a button with text";
    EXPECT_EQ(button("")->intrinsicContentSize(), (CGSize{20, 21})) << "as high as with text";
    EXPECT_EQ(button("Check", Type::switchButton)->intrinsicContentSize(), (CGSize{43, 14}));
    EXPECT_EQ(button("Radio", Type::radio)->intrinsicContentSize(), (CGSize{43, 14}));
    const auto square = button("OK");
    square->setBezelStyle(NSBezelStyle::regularSquare);
    EXPECT_EQ(square->intrinsicContentSize(), (CGSize{30, 21}));
    square->setBordered(false);
    EXPECT_EQ(square->intrinsicContentSize(), (CGSize{10, 13}));
    square->setImage(image(16, 16));
    EXPECT_EQ(square->intrinsicContentSize(), (CGSize{30, 16}));
}

TEST(NSButton, AnImageIsPutWhereThereIsRoomForIt)
{
    const auto titled = button("OK");
    titled->setImage(image(16, 16));
    EXPECT_EQ(titled->imagePosition(), NSCellImagePosition::imageLeft);
    const auto plain = button("");
    plain->setImage(image(16, 16));
    EXPECT_EQ(plain->imagePosition(), NSCellImagePosition::imageOnly);
    const auto below = button("OK");
    below->setImagePosition(NSCellImagePosition::imageBelow);
    below->setImage(image(16, 16));
    EXPECT_EQ(below->imagePosition(), NSCellImagePosition::imageBelow);
}

TEST(NSButton, ACheckBoxOrRadioButtonHasNoBorderAndItsContentAtTheLeft)
{
    for (const Type type : {Type::switchButton, Type::radio}) {
        const auto changed = button("Title", type);
        EXPECT_FALSE(changed->isBordered());
        EXPECT_EQ(changed->imagePosition(), NSCellImagePosition::imageLeft);
    }
}

TEST(NSButton, DrawsItsLookAndItsTitle)
{
    EXPECT_EQ(drawn(*button("A long title")),
              "push button in (0, 0) 80 × 21\n"
              "save\n"
              "  clip (0, 0) 80 × 21\n"
              "  text \"A long title\" system 10 rgba(0, 0, 0, 1) in (10, 4) 60 × 13, center, truncatingTail\n"
              "restore\n");
    EXPECT_EQ(drawn(*button("Check", Type::switchButton)),
              "check box in (0, 0) 43 × 14\n"
              "save\n"
              "  clip (0, 0) 43 × 14\n"
              "  text \"Check\" system 10 rgba(0, 0, 0, 1) in (18, 0) 25 × 13, truncatingTail\n"
              "restore\n");
}

TEST(NSButton, WithoutABorderThereIsOnlyContent)
{
    const auto plain = button("");
    plain->setBordered(false);
    plain->setImage(image(16, 12));
    plain->setFrameSize({16, 12});
    EXPECT_EQ(drawn(*plain), "save\n"
                             "  clip (0, 0) 16 × 12\n"
                             "  image 1 × 1 pixels in (0, 0) 16 × 12\n"
                             "restore\n");
    plain->setHighlighted(true);
    EXPECT_THAT(drawn(*plain), HasSubstr("  layer 0.6\n    image")) << "what could go down fades";
    plain->setHighlighted(false);
    plain->setEnabled(false);
    EXPECT_THAT(drawn(*plain), HasSubstr("  layer 0.5\n    image"));
    plain->image()->setTemplate(true);
    EXPECT_THAT(drawn(*plain), HasSubstr("  mask 1 × 1 pixels in (0, 0) 16 × 12 rgba(0.5, 0.5, 0.5, 1)"));
}

TEST(NSButton, ATitleThatDoesNotFitIsCutWithAnEllipsis)
{
    const auto narrow = button("A very long title");
    narrow->setFrameSize({50, 21});
    EXPECT_THAT(drawn(*narrow), HasSubstr("in (10, 4) 30 × 13, center, truncatingTail"));
    narrow->setFrameSize({10, 4});
    EXPECT_EQ(drawn(*narrow), "push button in (0, 0) 10 × 4\nsave\n  clip (0, 0) 10 × 4\nrestore\n");
    const auto endless = button(std::string(100000, 'x'));
    EXPECT_EQ(endless->intrinsicContentSize().width, 500020);
}

TEST(NSButton, ShowsItsStateTheWayItsTypeDoes)
{
    const auto shown = [](Type type, State state, bool highlighted) {
        const auto example = button("Title", type);
        example->setAlternateTitle("Other");
        example->setAllowsMixedState(true);
        example->setState(state);
        example->setHighlighted(highlighted);
        const std::string text = drawn(*example);
        return text.substr(0, text.find(" in (")) + (text.find("Other") != std::string::npos ? ", other" : "");
    };
    EXPECT_EQ(shown(Type::momentaryLight, State::on, false), "push button");
    EXPECT_EQ(shown(Type::momentaryLight, State::off, true), "push button, pressed");
    EXPECT_EQ(shown(Type::pushOnPushOff, State::on, false), "push button, on");
    EXPECT_EQ(shown(Type::toggle, State::on, false), "push button, other");
    EXPECT_EQ(shown(Type::toggle, State::off, true), "push button, pressed, other");
    EXPECT_EQ(shown(Type::switchButton, State::mixed, false), "check box, mixed");
    EXPECT_EQ(shown(Type::switchButton, State::on, true), "check box, on, pressed");
    EXPECT_EQ(shown(Type::radio, State::on, false), "radio button, on");
    EXPECT_EQ(shown(Type::momentaryChange, State::off, true), "push button, other");
    EXPECT_EQ(shown(Type::momentaryChange, State::off, false), "push button");
    EXPECT_EQ(shown(Type::onOff, State::on, false), "push button, on");
    EXPECT_EQ(shown(Type::momentaryPushIn, State::off, true), "push button, pressed");
}

TEST(NSButton, AlternateContentStandsInOnlyWhereThereIsSome)
{
    const auto toggle = button("Title", Type::toggle);
    toggle->setImage(image(1, 1));
    toggle->setState(State::on);
    EXPECT_THAT(drawn(*toggle), HasSubstr("\"Title\""));
    toggle->setAlternateImage(image(9, 9));
    toggle->setFrameSize({100, 21});
    EXPECT_THAT(drawn(*toggle), HasSubstr("9 × 9"));
}

TEST(NSButton, LooksTheWayTheApplicationDoes)
{
    const auto example = button("Title");
    NSApplication::shared().setAppearance(Appearance::dark);
    const std::string dark = drawn(*example);
    NSApplication::shared().setAppearance(std::nullopt);
    EXPECT_THAT(dark, StartsWith("push button, dark in"));
    EXPECT_THAT(dark, HasSubstr("rgba(1, 1, 1, 1)"));
    example->setEnabled(false);
    EXPECT_THAT(drawn(*example), StartsWith("push button, disabled in"));
    EXPECT_THAT(drawn(*example), HasSubstr("rgba(0.5, 0.5, 0.5, 1)"));
}

TEST(NSButton, AClickChangesTheStateOnlyOfTypesThatHaveOne)
{
    const auto stateAfterClick = [](Type type) {
        const auto example = button("Title", type);
        example->performClick();
        return example->state();
    };
    for (const Type type : {Type::momentaryLight, Type::momentaryChange, Type::momentaryPushIn})
        EXPECT_EQ(stateAfterClick(type), State::off);
    for (const Type type : {Type::pushOnPushOff, Type::toggle, Type::switchButton, Type::radio, Type::onOff})
        EXPECT_EQ(stateAfterClick(type), State::on);
}

TEST(NSButton, ClicksGoRoundTheStates)
{
    const auto example = button("Title", Type::switchButton);
    std::vector<State> states;
    example->setOnAction([&] { states.push_back(example->state()); });
    const auto clickOften = [&](int count) {
        states.clear();
        for (int i = 0; i < count; ++i)
            example->performClick();
        return states;
    };
    EXPECT_THAT(clickOften(3), ElementsAre(State::on, State::off, State::on));
    example->setAllowsMixedState(true);
    EXPECT_THAT(clickOften(4), ElementsAre(State::off, State::mixed, State::on, State::off));
}

TEST(NSButton, MixedCountsAsOnWhereItIsNotAllowed)
{
    const auto example = button("Title", Type::switchButton);
    example->setState(State::mixed);
    EXPECT_EQ(example->state(), State::on);
    example->setAllowsMixedState(true);
    example->setState(State::mixed);
    EXPECT_EQ(example->state(), State::mixed);
    example->setAllowsMixedState(false);
    EXPECT_EQ(example->state(), State::on);
}

TEST(NSButton, SettingTheStateSendsNoAction)
{
    const auto example = button("Title", Type::switchButton);
    int count = 0;
    example->setOnAction([&] { ++count; });
    example->setState(State::on);
    EXPECT_EQ(count, 0);
}

TEST_F(NSButtonInWindow, TheActionIsSentOnReleaseInside)
{
    const auto ok = add("OK");
    sendMouse(NSEventType::leftMouseDown, *ok, {5, 5});
    EXPECT_TRUE(ok->isHighlighted());
    EXPECT_THAT(log, ElementsAre());
    sendMouse(NSEventType::leftMouseUp, *ok, {5, 5});
    EXPECT_FALSE(ok->isHighlighted());
    EXPECT_THAT(log, ElementsAre("OK"));
}

TEST_F(NSButtonInWindow, OutsideItIsNotPressedAndReleasingThereDoesNothing)
{
    const auto box = add("Check", Type::switchButton);
    sendMouse(NSEventType::leftMouseDown, *box, {5, 5});
    sendMouse(NSEventType::leftMouseDragged, *box, {5, -20});
    EXPECT_FALSE(box->isHighlighted());
    sendMouse(NSEventType::leftMouseDragged, *box, {5, 5});
    EXPECT_TRUE(box->isHighlighted());
    sendMouse(NSEventType::leftMouseDragged, *box, {500, 5});
    sendMouse(NSEventType::leftMouseUp, *box, {500, 5});
    EXPECT_FALSE(box->isHighlighted());
    EXPECT_EQ(box->state(), State::off);
    EXPECT_THAT(log, ElementsAre());
    sendMouse(NSEventType::leftMouseUp, *box, {5, 5});
    EXPECT_THAT(log, ElementsAre()) << "a release without a press";
}

TEST_F(NSButtonInWindow, ADisabledButtonTakesNoClickAndNoKey)
{
    const auto ok = add("OK");
    ok->setKeyEquivalent("\r");
    ok->setEnabled(false);
    click(*ok);
    EXPECT_FALSE(ok->isHighlighted());
    press("\r");
    ok->performClick();
    ok->keyDown(*keyEvent(" "));
    EXPECT_THAT(log, ElementsAre());
    EXPECT_FALSE(window->makeFirstResponder(ok.get()));
}

TEST_F(NSButtonInWindow, DisablingItWhileItIsPressedCallsThePressOff)
{
    const auto ok = add("OK");
    sendMouse(NSEventType::leftMouseDown, *ok, {5, 5});
    ok->setEnabled(false);
    EXPECT_FALSE(ok->isHighlighted());
    ok->setEnabled(true);
    sendMouse(NSEventType::leftMouseUp, *ok, {5, 5});
    EXPECT_THAT(log, ElementsAre());
}

TEST_F(NSButtonInWindow, AnActionMayTakeTheButtonAway)
{
    auto ok = add("OK");
    const std::weak_ptr<NSButton> watched = ok;
    ok->setOnAction([&] {
        ok->removeFromSuperview();
        ok.reset();
    });
    click(*ok);
    EXPECT_TRUE(watched.expired());
}

TEST_F(NSButtonInWindow, SpaceAndReturnPressIt)
{
    const auto ok = add("OK");
    EXPECT_TRUE(window->makeFirstResponder(ok.get()));
    press(" ");
    press("\r");
    press(NSKey::enter);
    EXPECT_EQ(log.size(), 3U);
    press(" ", NSEventModifierFlags::option);
    press("x");
    window->sendEvent(*repeatedKeyEvent(" "));
    EXPECT_EQ(log.size(), 3U) << "other keys do not, nor does one that is held";
}

TEST_F(NSButtonInWindow, TheKeyboardFocusIsSeen)
{
    const auto ok = add("OK");
    const auto box = add("Check", Type::switchButton);
    const auto plain = add("");
    plain->setBordered(false);
    plain->setImage(image(16, 16));
    plain->setFrameSize({16, 16});
    window->makeFirstResponder(ok.get());
    EXPECT_THAT(drawn(*ok), StartsWith("push button, focused in (0, 0)"));
    EXPECT_EQ(lookOf(*box), "check box in (0, 0) 43 × 14");
    window->makeFirstResponder(box.get());
    EXPECT_THAT(drawn(*box), StartsWith("check box in (0, 0) 43 × 14\n"));
    EXPECT_THAT(drawn(*box), HasSubstr("focus ring in (16, 0) 27 × 13")) << "around the title";
    window->makeFirstResponder(plain.get());
    EXPECT_THAT(drawn(*plain), HasSubstr("stroke (0, 0) 16 × 16 width 2 rgba(0, 0, 1, 1)\n"
                                         "stroke (2, 2) 12 × 12 width 1 rgba(1, 1, 1, 1)\n"))
        << "around what has no look of its own";
    const auto other = make<NSWindow>();
    other->makeKeyAndOrderFront();
    EXPECT_THAT(drawn(*ok), StartsWith("push button, in the background in"));
    other->close();
}

TEST_F(NSButtonInWindow, TheLookFollowsThePointer)
{
    const auto ok = add("OK");
    ASSERT_EQ(ok->trackingAreas().size(), 1U);
    sendMouse(NSEventType::mouseMoved, *ok, {5, 5});
    EXPECT_EQ(lookOf(*ok), "push button, hovered in (0, 0) 60 × 21");
    sendMouse(NSEventType::mouseMoved, *ok, {5, -5});
    EXPECT_EQ(lookOf(*ok), "push button in (0, 0) 60 × 21");
    ok->setBordered(false);
    EXPECT_TRUE(ok->trackingAreas().empty()) << "without a look there is nothing to change";
    ok->setBordered(true);
    EXPECT_EQ(ok->trackingAreas().size(), 1U);
}

TEST_F(NSButtonInWindow, ReturnPressesTheDefaultButton)
{
    const auto cancel = add("Cancel");
    const auto ok = add("OK");
    cancel->setKeyEquivalent(NSKey::escape);
    ok->setKeyEquivalent("\r");
    EXPECT_EQ(lookOf(*ok), "push button, default in (0, 0) 60 × 21");
    EXPECT_EQ(lookOf(*cancel), "push button in (0, 0) 60 × 21");
    press("\r");
    press(NSKey::enter);
    press(NSKey::escape);
    EXPECT_THAT(log, ElementsAre("OK", "OK", "Cancel"));
    ok->setHidden(true);
    press("\r");
    EXPECT_EQ(log.size(), 3U) << "not one that cannot be seen";
}

TEST_F(NSButtonInWindow, AKeyEquivalentTakesExactlyItsModifiers)
{
    using Flags = NSEventModifierFlags;
    const auto save = add("Save");
    save->setKeyEquivalent("s");
    save->setKeyEquivalentModifierMask(Flags::command);
    press("s");
    press("s", Flags::command | Flags::shift);
    press("t", Flags::command);
    EXPECT_THAT(log, ElementsAre());
    press("s", Flags::command);
    press("s", Flags::command | Flags::capsLock);
    EXPECT_EQ(log.size(), 2U);
    save->setKeyEquivalent("S");
    press("s", Flags::command);
    EXPECT_EQ(log.size(), 2U) << "an upper-case letter takes Shift";
    press("S", Flags::command | Flags::shift);
    EXPECT_EQ(log.size(), 3U);
    EXPECT_FALSE(save->performKeyEquivalent(*keyEvent("")));
}

TEST_F(NSButtonInWindow, RadioButtonsOfOneSuperviewAndActionExcludeEachOther)
{
    const auto a = add("A", Type::radio), b = add("B", Type::radio), c = add("C", Type::radio);
    const auto box = add("Box", Type::switchButton);
    box->setState(State::on);
    click(*a);
    click(*b);
    EXPECT_EQ(a->state(), State::off);
    EXPECT_EQ(b->state(), State::on);
    EXPECT_EQ(box->state(), State::on) << "a check box is in no group";
    c->setState(State::on);
    EXPECT_EQ(b->state(), State::off) << "in code as well";
    click(*c);
    EXPECT_EQ(c->state(), State::on) << "one that is on stays so";
    EXPECT_THAT(log, ElementsAre("A", "B", "C"));
}

TEST(NSButton, RadioButtonsOfOtherSuperviewsOrActionsAreInOtherGroups)
{
    const auto host = make<NSView>(), other = make<NSView>();
    const auto add = [](NSView& superview, const char* action) {
        const auto radio = button("R", Type::radio);
        radio->setAction(Selector(action));
        superview.addSubview(radio);
        radio->setState(State::on);
        return radio;
    };
    const auto first = add(*host, "choose:"), second = add(*host, "pick:"), third = add(*other, "choose:");
    EXPECT_EQ(first->state(), State::on);
    EXPECT_EQ(second->state(), State::on);
    EXPECT_EQ(third->state(), State::on);
    add(*host, "choose:");
    EXPECT_EQ(first->state(), State::off);
    EXPECT_EQ(second->state(), State::on);
}

TEST_F(NSButtonInWindow, ArrowKeysChooseInsideARadioGroup)
{
    const auto a = add("A", Type::radio), b = add("B", Type::radio), c = add("C", Type::radio);
    const auto d = add("D", Type::radio);
    b->setEnabled(false);
    c->setHidden(true);
    window->makeFirstResponder(a.get());
    press(NSKey::down);
    EXPECT_EQ(window->firstResponder(), d.get()) << "past what cannot be chosen";
    EXPECT_EQ(d->state(), State::on);
    c->setHidden(false);
    press(NSKey::left);
    EXPECT_EQ(c->state(), State::on);
    EXPECT_EQ(d->state(), State::off);
    press(NSKey::right);
    press(NSKey::right);
    EXPECT_EQ(a->state(), State::on) << "and round at the end";
    press(NSKey::up);
    EXPECT_THAT(log, ElementsAre("D", "C", "D", "A", "D"));
}

TEST_F(NSButtonInWindow, ArrowKeysOfALoneRadioButtonDoNothing)
{
    const auto a = add("A", Type::radio);
    window->makeFirstResponder(a.get());
    press(NSKey::down);
    EXPECT_THAT(log, ElementsAre());
    EXPECT_EQ(window->firstResponder(), a.get());
}

TEST_F(NSButtonInWindow, IsReadAndPressedByAssistiveTechnology)
{
    const auto ok = add("OK");
    const auto box = add("Wrap", Type::switchButton);
    const auto radio = add("Left", Type::radio);
    const auto picture = add("");
    picture->setImage(image(16, 16));
    picture->setAccessibilityLabel("Delete");
    box->setAllowsMixedState(true);
    box->setState(State::mixed);
    radio->setState(State::on);
    ok->setEnabled(false);
    EXPECT_EQ(accessibilityTree(*window), "window ''\n"
                                          "  button 'Delete'\n"
                                          "  radio button 'Left' checked\n"
                                          "  check box 'Wrap' mixed\n"
                                          "  button 'OK' disabled\n");
    EXPECT_TRUE(box->accessibilityState().isPressable);
    EXPECT_TRUE(box->accessibilityState().isCheckable);
    EXPECT_FALSE(ok->accessibilityState().isCheckable);
    EXPECT_TRUE(box->accessibilityPerformPress());
    EXPECT_FALSE(ok->accessibilityPerformPress());
    EXPECT_EQ(box->state(), State::on);
    EXPECT_THAT(log, ElementsAre("Wrap"));
}

TEST_F(NSButtonInWindow, AKeyPressesNoButtonThatIsTransparentOrInATransparentView)
{
    const auto outer = make<NSView>(CGRect(0, 0, 300, 200));
    window->contentView()->addSubview(outer);
    const auto ok = add("OK");
    outer->addSubview(ok);
    ok->setKeyEquivalent("\r");
    outer->setAlphaValue(0);
    press("\r");
    outer->setAlphaValue(1);
    ok->setAlphaValue(0);
    press("\r");
    EXPECT_THAT(log, ElementsAre());
    ok->setAlphaValue(0.5);
    press("\r");
    EXPECT_THAT(log, ElementsAre("OK"));
}

TEST_F(NSButtonInWindow, ArrowKeysPassOverATransparentRadioButton)
{
    const auto first = add("first", Type::radio), second = add("second", Type::radio);
    const auto third = add("third", Type::radio);
    second->setAlphaValue(0);
    window->makeFirstResponder(first.get());
    press(NSKey::down);
    EXPECT_EQ(third->state(), State::on);
}

TEST_F(NSButtonInWindow, TakenOutWhileItIsPressedItCallsThePressOff)
{
    const auto ok = add("OK");
    sendMouse(NSEventType::leftMouseDown, *ok, {5, 5});
    EXPECT_TRUE(ok->isHighlighted());
    const CGPoint place = ok->convertPointTo({5, 5}, nullptr);
    ok->removeFromSuperview();
    ok->setFrameOrigin({place.x - 5, place.y - 5}); // where a window's coordinates would find it
    NSEventContent content;
    content.type = NSEventType::leftMouseUp;
    content.locationInWindow = place;
    window->sendEvent(*make<NSEvent>(content));
    EXPECT_THAT(log, ElementsAre());
    EXPECT_FALSE(ok->isHighlighted());
}

TEST_F(NSButtonInWindow, AWindowThatLeavesTheScreenCallsThePressOff)
{
    const auto ok = add("OK");
    sendMouse(NSEventType::leftMouseDown, *ok, {5, 5});
    window->orderOut();
    EXPECT_FALSE(ok->isHighlighted());
}

TEST_F(NSButtonInWindow, TakenOutUnderThePointerItLooksAsUsual)
{
    const auto ok = add("OK");
    sendMouse(NSEventType::mouseMoved, *ok, {5, 5});
    ASSERT_EQ(lookOf(*ok), "push button, hovered in (0, 0) 60 × 21");
    ok->removeFromSuperview();
    EXPECT_EQ(lookOf(*ok), "push button in (0, 0) 60 × 21");
}

TEST(NSButton, AnEqualValueChangesNothing)
{
    class Counting : public NSButton {
    public:
        void invalidateIntrinsicContentSize() override
        {
            ++count;
            NSButton::invalidateIntrinsicContentSize();
        }
        int count = 0;
    };
    const auto example = make<Counting>();
    const auto picture = image(3, 3);
    const auto set = [&] {
        example->setButtonType(Type::toggle);
        example->setBordered(false);
        example->setBezelStyle(NSBezelStyle::regularSquare);
        example->setTitle("Title");
        example->setAlternateTitle("Other");
        example->setFont(systemFontOfSize(10));
        example->setImage(picture);
        example->setAlternateImage(picture);
        example->setImagePosition(NSCellImagePosition::imageBelow);
        example->setState(State::on);
    };
    set();
    EXPECT_EQ(example->count, 11); // the image also took its position
    set();
    EXPECT_EQ(example->count, 11);
}

TEST(NSButton, AnUnknownNumberIsRefused)
{
    const auto example = button("Title");
    EXPECT_EQ(raised([&] { send(example, "setButtonType:", 8); }),
              "NSInvalidArgumentException: NSButton.setButtonType:: takes 0 to 7, got 8");
    EXPECT_EQ(raised([&] { send(example, "setBezelStyle:", 0); }),
              "NSInvalidArgumentException: NSButton.setBezelStyle:: takes 1, 2 or 11, got 0");
    EXPECT_EQ(raised([&] { send(example, "setImagePosition:", 7); }),
              "NSInvalidArgumentException: NSButton.setImagePosition:: takes 0 to 6, got 7");
    EXPECT_EQ(raised([&] { send(example, "setImageScaling:", 4); }),
              "NSInvalidArgumentException: NSButton.setImageScaling:: takes 0 to 3, got 4");
    EXPECT_EQ(raised([&] { send(example, "setState:", -2); }),
              "NSInvalidArgumentException: NSButton.setState:: takes -1 to 1, got -2");
    EXPECT_THAT(raised([&] { example->setFont(nullptr); }), HasSubstr("NSButton.setFont:: there is no font"));
    EXPECT_EQ(example->buttonType(), Type::momentaryPushIn);
    EXPECT_EQ(example->state(), State::off);
}

TEST(NSButton, EveryPropertyIsReadAndWrittenByName)
{
    const auto example = make<NSButton>();
    const auto readsBack = [&](const char* property, const Value& value) {
        send(example, Selector::setterFor(property), value);
        EXPECT_EQ(send(example, property), value) << property;
    };
    readsBack("buttonType", 3);
    readsBack("bezelStyle", 2);
    readsBack("title", "Title");
    readsBack("alternateTitle", "Other");
    readsBack("font", boldSystemFontOfSize(9));
    readsBack("image", image(1, 1));
    readsBack("alternateImage", image(2, 2));
    readsBack("imagePosition", 6);
    readsBack("imageScaling", 1);
    readsBack("allowsMixedState", true);
    readsBack("state", -1);
    readsBack("keyEquivalent", "k");
    readsBack("keyEquivalentModifierMask", 1 << 20);
    send(example, "setBordered:", true);
    EXPECT_TRUE(send(example, "isBordered").as<bool>());
    send(example, "setHighlighted:", true);
    EXPECT_TRUE(send(example, "isHighlighted").as<bool>());
    EXPECT_EQ(send(example, "nextState").as<int>(), 1);
    int count = 0;
    example->setOnAction([&] { ++count; });
    send(example, "performClick:", Value());
    EXPECT_EQ(count, 1);
    EXPECT_EQ(example->state(), State::on);
}

TEST(NSButton, ComesBackFromAnArchiveWithoutItsImages)
{
    const auto example = button("Title", Type::pushOnPushOff);
    example->setBezelStyle(NSBezelStyle::regularSquare);
    example->setAlternateTitle("Other");
    example->setImage(image(3, 3));
    example->setImagePosition(NSCellImagePosition::imageAbove);
    example->setImageScaling(NSImageScaling::none);
    example->setAllowsMixedState(true);
    example->setState(State::mixed);
    example->setKeyEquivalent("k");
    example->setKeyEquivalentModifierMask(NSEventModifierFlags::option);
    example->setAction("save:");
    const auto copy = std::dynamic_pointer_cast<NSButton>(unarchivedObject(archivedObject(*example)));
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->buttonType(), Type::pushOnPushOff);
    EXPECT_TRUE(copy->isBordered());
    EXPECT_EQ(copy->bezelStyle(), NSBezelStyle::regularSquare);
    EXPECT_EQ(copy->title(), "Title");
    EXPECT_EQ(copy->alternateTitle(), "Other");
    EXPECT_TRUE(copy->font()->isEqual(*systemFontOfSize(10)));
    EXPECT_EQ(copy->image(), nullptr);
    EXPECT_EQ(copy->imagePosition(), NSCellImagePosition::imageAbove);
    EXPECT_EQ(copy->imageScaling(), NSImageScaling::none);
    EXPECT_EQ(copy->state(), State::mixed);
    EXPECT_EQ(copy->keyEquivalent(), "k");
    EXPECT_EQ(copy->keyEquivalentModifierMask(), NSEventModifierFlags::option);
    EXPECT_EQ(copy->action(), Selector("save:"));
}

} // namespace
} // namespace RVCore::NSButtonTests
