#include <Foundation/NSException.h>
#include <Platform/Backend/RecordingClient.h>

#include <QAccessible>
#include <QPointer>
#include <QtBackend/QtAccessibility.h>
#include <QtBackend/QtConversions.h>
#include <QtBackend/QtWindow.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace RVCore::QtAccessibilityTests {
namespace {

using testing::ElementsAre;

// An element that says what a test wants it to.
class SampleElement : public AccessibleElement, public std::enable_shared_from_this<SampleElement> {
public:
    SampleElement(AccessibleRole theRole, std::string theName) : m_role(theRole), m_name(std::move(theName)) {}

    bool isValid() const override { return valid; }
    const void* identity() const override { return this; }
    AccessibleRole role() const override { return m_role; }
    std::string name() const override { return m_name; }
    std::string value() const override { return text; }
    AccessibleState state() const override { return theState; }
    CGRect frame() const override { return rect; }
    std::shared_ptr<AccessibleElement> parent() const override { return around.lock(); }
    std::vector<std::shared_ptr<AccessibleElement>> children() const override { return inside; }
    bool press() override { return ++pressCount > 0; }
    bool focus() override { return ++focusCount > 0; }
    bool setValue(const std::string& value) override
    {
        text = value;
        return true;
    }

    bool valid = true;
    std::string text;
    AccessibleState theState;
    CGRect rect;
    std::weak_ptr<AccessibleElement> around;
    std::vector<std::shared_ptr<AccessibleElement>> inside;
    int pressCount = 0;
    int focusCount = 0;

private:
    AccessibleRole m_role;
    std::string m_name;
};

class QtAccessibilityTest : public testing::Test {
protected:
    QtAccessibilityTest()
    {
        m_window->setTitle("Person");
        m_client.elements = {group, field};
        group->inside = {button};
        button->around = group;
        button->theState = {.isFocusable = true, .isPressable = true};
        field->theState.isEditable = true;
        field->text = "Ada";
    }

    QtWindowSurface& surface() { return dynamic_cast<QtWindow&>(*m_window).surface(); }
    QAccessibleInterface& root() { return *surface().accessibleRoot(); }

    RecordingClient m_client;
    std::unique_ptr<WindowBackend> m_window = Backend::shared().makeWindow(m_client, {100, 50});
    std::shared_ptr<SampleElement> group = std::make_shared<SampleElement>(AccessibleRole::group, "Tools");
    std::shared_ptr<SampleElement> button = std::make_shared<SampleElement>(AccessibleRole::button, "Save");
    std::shared_ptr<SampleElement> field = std::make_shared<SampleElement>(AccessibleRole::textField, "Name");
};

TEST_F(QtAccessibilityTest, aWindowIsNamedByItsTitleAndHoldsItsElements)
{
    EXPECT_EQ(root().role(), QAccessible::Window);
    EXPECT_EQ(root().text(QAccessible::Name), "Person");
    EXPECT_EQ(root().window(), &surface());
    ASSERT_EQ(root().childCount(), 2);
    EXPECT_EQ(root().child(0)->text(QAccessible::Name), "Tools");
    EXPECT_EQ(root().child(0)->role(), QAccessible::Grouping);
    EXPECT_EQ(root().child(1)->role(), QAccessible::EditableText);
    EXPECT_EQ(root().child(2), nullptr);
    EXPECT_EQ(root().child(-1), nullptr);
    ASSERT_TRUE(root().parent()) << "the application";
    EXPECT_GE(root().parent()->indexOfChild(&root()), 0);
}

TEST_F(QtAccessibilityTest, elementsKnowTheirPlaceInTheTree)
{
    QAccessibleInterface* tools = root().child(0);
    QAccessibleInterface* save = tools->child(0);
    ASSERT_TRUE(save);
    EXPECT_EQ(save->parent(), tools);
    EXPECT_EQ(tools->parent(), &root());
    EXPECT_EQ(tools->indexOfChild(save), 0);
    EXPECT_EQ(root().indexOfChild(save), -1);
    EXPECT_EQ(root().indexOfChild(root().child(1)), 1);
    EXPECT_EQ(root().child(0), tools) << "the same element is the same interface";
}

TEST_F(QtAccessibilityTest, elementsLieWhereTheWindowIs)
{
    group->rect = {10, 5, 50, 20};
    button->rect = {20, 10, 10, 10};
    const QPoint corner = surface().mapToGlobal(QPoint(0, 0));
    EXPECT_EQ(root().child(0)->rect(), QRect(corner + QPoint(10, 5), QSize(50, 20)));
    EXPECT_EQ(root().childAt(corner.x() + 12, corner.y() + 6), root().child(0));
    EXPECT_EQ(root().childAt(corner.x() + 90, corner.y() + 40), nullptr);
    EXPECT_EQ(root().child(0)->childAt(corner.x() + 25, corner.y() + 15), root().child(0)->child(0));
}

TEST_F(QtAccessibilityTest, aButtonIsPressedAndFocusedByItsActions)
{
    QAccessibleInterface* save = root().child(0)->child(0);
    QAccessibleActionInterface* actions = save->actionInterface();
    ASSERT_TRUE(actions);
    EXPECT_THAT(actions->actionNames(),
                ElementsAre(QAccessibleActionInterface::pressAction(), QAccessibleActionInterface::setFocusAction()));
    actions->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(button->pressCount, 1);
    actions->doAction(QAccessibleActionInterface::setFocusAction());
    EXPECT_EQ(button->focusCount, 1);
    actions->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_EQ(button->pressCount, 1) << "not an action of it";
    button->theState.isEnabled = false;
    EXPECT_THAT(actions->actionNames(), ElementsAre(QAccessibleActionInterface::setFocusAction()));
    EXPECT_TRUE(save->state().disabled);
}

TEST_F(QtAccessibilityTest, aCheckBoxIsToggledAndSaysItsState)
{
    const auto box = std::make_shared<SampleElement>(AccessibleRole::checkBox, "On");
    box->theState = {.isCheckable = true, .isChecked = true, .isMixed = true, .isPressable = true};
    m_client.elements = {box};
    QAccessibleInterface* shown = root().child(0);
    EXPECT_TRUE(shown->state().checkable && shown->state().checked && shown->state().checkStateMixed);
    EXPECT_THAT(shown->actionInterface()->actionNames(), ElementsAre(QAccessibleActionInterface::toggleAction()));
}

TEST_F(QtAccessibilityTest, aFieldsTextIsReadAndEdited)
{
    QAccessibleInterface* shown = root().child(1);
    EXPECT_EQ(shown->text(QAccessible::Value), "Ada");
    EXPECT_TRUE(shown->state().editable);
    QAccessibleTextInterface* text = shown->textInterface();
    ASSERT_TRUE(text);
    EXPECT_EQ(text->characterCount(), 3);
    EXPECT_EQ(text->text(1, 3), "da");
    QAccessibleEditableTextInterface* edit = shown->editableTextInterface();
    ASSERT_TRUE(edit);
    edit->insertText(3, " Lovelace");
    EXPECT_EQ(field->text, "Ada Lovelace");
    edit->deleteText(0, 4);
    EXPECT_EQ(field->text, "Lovelace");
    shown->setText(QAccessible::Value, "Grace");
    EXPECT_EQ(field->text, "Grace");
    field->theState.isEditable = false;
    EXPECT_FALSE(shown->editableTextInterface());
    EXPECT_TRUE(shown->state().readOnly);
    EXPECT_FALSE(root().child(0)->textInterface()) << "a group has no text";
}

TEST_F(QtAccessibilityTest, theFocusIsFoundInTheTree)
{
    EXPECT_EQ(root().focusChild(), nullptr);
    button->theState.isFocused = true;
    EXPECT_EQ(root().focusChild(), root().child(0)->child(0));
}

TEST_F(QtAccessibilityTest, anElementThatIsGoneIsInvalidAndItsPlaceIsTakenByAnother)
{
    QAccessibleInterface* before = root().child(1);
    EXPECT_TRUE(before->isValid());
    field->valid = false;
    EXPECT_FALSE(before->isValid());
    const auto other = std::make_shared<SampleElement>(AccessibleRole::image, "Portrait");
    m_client.elements = {other};
    ASSERT_EQ(root().childCount(), 1);
    EXPECT_EQ(root().child(0)->role(), QAccessible::Graphic);
}

TEST_F(QtAccessibilityTest, theClientMayEndTheWindowWhenItIsAskedForItsElements)
{
    const QPointer<QtWindowSurface> asked = &surface();
    QAccessibleInterface& window = root();
    m_client.onElements = [&] {
        m_window.reset();
        EXPECT_TRUE(asked) << "not before the call is over";
    };
    EXPECT_EQ(window.childCount(), 2);
}

class RaisingElement : public SampleElement {
public:
    RaisingElement() : SampleElement(AccessibleRole::button, "") {}
    std::string name() const override { raiseInvalidArgument("name", "there is none"); }
    AccessibleState state() const override { raiseInvalidArgument("state", "there is none"); }
};

using QtAccessibilityDeathTest = QtAccessibilityTest;

TEST_F(QtAccessibilityDeathTest, anExceptionThatLeavesAnElementStopsTheProgramWithItsMessage)
{
    m_client.elements = {std::make_shared<RaisingElement>()};
    EXPECT_DEATH(root().child(0)->text(QAccessible::Name),
                 "Fatal error: an exception left a callback: NSInvalidArgumentException: name: there is none");
    EXPECT_DEATH(root().child(0)->state(),
                 "Fatal error: an exception left a callback: NSInvalidArgumentException: state: there is none");
}

TEST_F(QtAccessibilityTest, everyRoleHasOneOfTheDesktops)
{
    const std::pair<AccessibleRole, QAccessible::Role> roles[] = {
        {AccessibleRole::none, QAccessible::NoRole},
        {AccessibleRole::group, QAccessible::Grouping},
        {AccessibleRole::staticText, QAccessible::StaticText},
        {AccessibleRole::textField, QAccessible::EditableText},
        {AccessibleRole::button, QAccessible::Button},
        {AccessibleRole::checkBox, QAccessible::CheckBox},
        {AccessibleRole::radioButton, QAccessible::RadioButton},
        {AccessibleRole::image, QAccessible::Graphic},
        {AccessibleRole::progressIndicator, QAccessible::ProgressBar},
        {AccessibleRole::toolbar, QAccessible::ToolBar},
        {AccessibleRole::popover, QAccessible::Dialog},
    };
    for (const auto& [role, desktops] : roles) {
        m_client.elements = {std::make_shared<SampleElement>(role, "x")};
        EXPECT_EQ(root().child(0)->role(), desktops);
        m_client.elements.clear();
    }
}

} // namespace
} // namespace RVCore::QtAccessibilityTests
