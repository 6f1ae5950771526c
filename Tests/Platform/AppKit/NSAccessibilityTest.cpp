#include "InputTesting.h"

#include <AppKit/NSAccessibility.h>
#include <AppKit/NSTextField.h>
#include <Foundation/NSException.h>

#include <gmock/gmock.h>

namespace RVCore::NSAccessibilityTests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class ButtonLikeView : public ListeningView {
public:
    AccessibleRole accessibilityRole() const override { return AccessibleRole::button; }
    std::string accessibilityLabel() const override
    {
        const std::string set = NSView::accessibilityLabel();
        return set.empty() ? title : set;
    }
    bool accessibilityPerformPress() override
    {
        ++pressCount;
        return true;
    }
    std::string title;
    int pressCount = 0;
};

class FieldLikeView : public ListeningView {
public:
    AccessibleRole accessibilityRole() const override { return AccessibleRole::textField; }
    std::string accessibilityValue() const override { return text; }
    bool setAccessibilityValue(const std::string& value) override
    {
        text = value;
        return true;
    }
    AccessibleState accessibilityState() const override
    {
        AccessibleState state = NSView::accessibilityState();
        state.isEditable = true;
        return state;
    }
    std::string text;
};

class NSAccessibilityTest : public WindowInputTest {
protected:
    NSAccessibilityTest() { window->setTitle("Person"); }
    template <class T> std::shared_ptr<T> put(const CGRect& frame, NSView* superview = nullptr)
    {
        auto view = make<T>(frame);
        (superview ? *superview : content()).addSubview(view);
        return view;
    }
    std::shared_ptr<NSTextField> label(const std::string& text, const CGRect& frame)
    {
        const auto view = plainLabel(text);
        view->setFrame(frame);
        content().addSubview(view);
        return view;
    }
    std::shared_ptr<AccessibleElement> first() { return accessibleElementsIn(content()).at(0); }
};

TEST_F(NSAccessibilityTest, theTreeIsInTheOrderOfReading)
{
    const auto save = put<ButtonLikeView>({100, 60, 50, 20});
    save->title = "Save";
    label("Name", {0, 0, 50, 20});
    const auto field = put<FieldLikeView>({60, 0, 100, 20});
    field->accepts = true;
    field->text = "Ada";
    window->makeFirstResponder(field.get());
    EXPECT_EQ(accessibilityTree(*window), "window 'Person'\n"
                                          "  static text 'Name' \"Name\"\n"
                                          "  text field 'Name' \"Ada\" focused editable\n"
                                          "  button 'Save'\n");
}

TEST_F(NSAccessibilityTest, aViewWithoutARoleGivesWayToWhatIsInIt)
{
    const auto plain = put<NSView>({0, 0, 100, 50});
    put<ButtonLikeView>({0, 0, 10, 10}, plain.get())->title = "Inner";
    EXPECT_EQ(accessibilityTree(*window), "window 'Person'\n  button 'Inner'\n");
    EXPECT_EQ(first()->parent(), nullptr);
    plain->setAccessibilityLabel("Tools");
    EXPECT_EQ(accessibilityTree(*window), "window 'Person'\n  group 'Tools'\n    button 'Inner'\n");
    EXPECT_EQ(first()->children().at(0)->parent()->identity(), first()->identity());
}

TEST_F(NSAccessibilityTest, anEmptyTextSaysNothing)
{
    label("", {0, 0, 50, 20});
    EXPECT_THAT(accessibleElementsIn(content()), IsEmpty());
}

TEST_F(NSAccessibilityTest, hiddenViewsCannotBeReached)
{
    const auto outer = put<NSView>({0, 0, 100, 50});
    put<ButtonLikeView>({0, 0, 10, 10}, outer.get());
    outer->setHidden(true);
    EXPECT_THAT(accessibleElementsIn(content()), IsEmpty());
}

TEST_F(NSAccessibilityTest, whatAModalViewCoversCannotBeReached)
{
    put<ButtonLikeView>({0, 0, 10, 10})->title = "Below";
    const auto cover = put<NSView>({0, 0, 200, 100});
    put<ButtonLikeView>({0, 0, 10, 10}, cover.get())->title = "On it";
    put<ButtonLikeView>({0, 50, 10, 10})->title = "Above";
    cover->setAccessibilityModal(true);
    EXPECT_EQ(accessibilityTree(*window), "window 'Person'\n  button 'On it'\n  button 'Above'\n");
    cover->setHidden(true);
    EXPECT_EQ(accessibilityTree(*window), "window 'Person'\n  button 'Below'\n  button 'Above'\n");
}

TEST_F(NSAccessibilityTest, aModalViewThatHasFadedOutCoversNothing)
{
    put<ButtonLikeView>({0, 0, 50, 20})->title = "below";
    const auto cover = put<ListeningView>({0, 0, 200, 100});
    cover->setAccessibilityModal(true);
    EXPECT_EQ(accessibilityTree(*window), "window 'Person'\n");
    cover->setAlphaValue(0);
    EXPECT_EQ(accessibilityTree(*window), "window 'Person'\n  button 'below'\n");
}

TEST_F(NSAccessibilityTest, whatIsTransparentCannotBeReached)
{
    const auto button = put<ButtonLikeView>({0, 0, 50, 20});
    button->setAlphaValue(0);
    EXPECT_EQ(accessibilityTree(*window), "window 'Person'\n");
}

TEST_F(NSAccessibilityTest, aTransparentLabelNamesNothing)
{
    label("Old", {0, 0, 50, 20})->setAlphaValue(0);
    put<FieldLikeView>({60, 0, 100, 20});
    EXPECT_EQ(first()->name(), "");
}

TEST_F(NSAccessibilityTest, aFieldIsNamedByTheLabelBeforeIt)
{
    label("Name", {0, 0, 50, 20});
    const auto wrapper = put<NSView>({60, 0, 100, 20});
    const auto field = put<FieldLikeView>({0, 0, 100, 20}, wrapper.get());
    EXPECT_EQ(accessibilityName(*field), "Name");
    field->setAccessibilityLabel("Full name");
    EXPECT_EQ(accessibilityName(*field), "Full name");
    const auto second = put<FieldLikeView>({0, 50, 100, 20});
    EXPECT_EQ(accessibilityName(*second), "") << "the label belongs to the field that follows it";
}

TEST_F(NSAccessibilityTest, aButtonsTitleComesBeforeTheLabelNextToIt)
{
    label("Colour", {0, 0, 50, 20});
    const auto button = put<ButtonLikeView>({60, 0, 100, 20});
    EXPECT_EQ(accessibilityName(*button), "Colour");
    button->title = "Choose";
    EXPECT_EQ(accessibilityName(*button), "Choose");
}

TEST_F(NSAccessibilityTest, anElementActsAsTheUserWould)
{
    const auto button = put<ButtonLikeView>({10, 20, 30, 40});
    button->accepts = true;
    const auto element = first();
    EXPECT_TRUE(element->isValid());
    EXPECT_EQ(element->frame(), CGRect(10, 20, 30, 40));
    EXPECT_TRUE(element->state().isFocusable);
    EXPECT_FALSE(element->state().isFocused);
    EXPECT_TRUE(element->press());
    EXPECT_EQ(button->pressCount, 1);
    EXPECT_TRUE(element->focus());
    EXPECT_EQ(window->firstResponder(), button.get());
    EXPECT_TRUE(element->state().isFocused);
    EXPECT_FALSE(element->setValue("x"));
    const auto field = put<FieldLikeView>({0, 60, 10, 10});
    EXPECT_TRUE(accessibleElementsIn(content()).at(1)->setValue("typed"));
    EXPECT_EQ(field->text, "typed");
}

TEST_F(NSAccessibilityTest, anElementOutlivesItsViewAndSaysNothing)
{
    auto button = put<ButtonLikeView>({10, 20, 30, 40});
    button->title = "Gone";
    const auto element = first();
    button->removeFromSuperview();
    EXPECT_FALSE(element->isValid());
    EXPECT_EQ(element->frame(), CGRect());
    button.reset();
    EXPECT_EQ(element->name(), "");
    EXPECT_EQ(element->role(), AccessibleRole::none);
    EXPECT_THAT(element->children(), IsEmpty());
    EXPECT_EQ(element->parent(), nullptr);
    EXPECT_FALSE(element->press() || element->focus() || element->setValue("x"));
    EXPECT_FALSE(element->state().isEnabled);
}

TEST_F(NSAccessibilityTest, changesAreToldToTheDesktop)
{
    const auto button = put<ButtonLikeView>({10, 20, 30, 40});
    button->title = "Save";
    button->accepts = true;
    const auto text = label("1 of 3", {0, 0, 50, 20});
    screen().takeAccessibilityChanges();
    window->makeFirstResponder(button.get());
    button->setAccessibilityLabel("Save it");
    button->setAccessibilityLabel("Save it");
    text->setStringValue("2 of 3");
    button->setAccessibilityModal(true);
    EXPECT_THAT(screen().takeAccessibilityChanges(),
                ElementsAre(Pair("Save", AccessibleChange::focus), Pair("Save it", AccessibleChange::name),
                            Pair("2 of 3", AccessibleChange::value), Pair("Save it", AccessibleChange::children)));
}

TEST_F(NSAccessibilityTest, theFocusIsInTheKeyWindowAndToldWhenAnotherWindowGetsTheKeys)
{
    const auto field = put<FieldLikeView>({0, 0, 100, 20});
    field->accepts = true;
    window->makeFirstResponder(field.get());
    const auto other = make<NSWindow>(CGSize{50, 50});
    other->makeKeyAndOrderFront();
    EXPECT_FALSE(first()->state().isFocused);
    screen().takeAccessibilityChanges();
    other->close();
    EXPECT_TRUE(first()->state().isFocused);
    EXPECT_THAT(screen().takeAccessibilityChanges(), ElementsAre(Pair("", AccessibleChange::focus)));
}

TEST_F(NSAccessibilityTest, whatAPressRaisesIsPrinted)
{
    class RaisingView : public ButtonLikeView {
    public:
        bool accessibilityPerformPress() override { raiseInvalidArgument("fly:", "nobody answers it"); }
    };
    put<RaisingView>({0, 0, 50, 20});
    testing::internal::CaptureStderr();
    EXPECT_FALSE(first()->press());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "NSInvalidArgumentException: fly:: nobody answers it\n");
}

} // namespace
} // namespace RVCore::NSAccessibilityTests
