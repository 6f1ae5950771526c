#include "ContactsDesktop.h"

#include <Dispatch/ManualDispatchClock.h>

namespace Contacts::ContactsWindowTests {
namespace {

using namespace RVCore;
using testing::EndsWith;
using testing::HasSubstr;

using ContactsWindow = ContactsDesktop;

TEST_F(ContactsWindow, HoldsWhatIsTypedAfterSavingAndReopening)
{
    open();
    shortcut("n");
    typeLetters("Ada");
    type(NSKey::tab);
    typeLetters("ada@example.org");
    type(NSKey::tab);
    typeLetters("123");
    type(NSKey::tab); // person
    type(NSKey::right);
    type(NSKey::tab);
    shortcut("s");
    EXPECT_THAT(field("status").stringValue(), EndsWith(", saved"));
    window().performClose();
    EXPECT_FALSE(window().isVisible());

    const ContactList list = readContacts(path);
    ASSERT_EQ(list.contacts.size(), 1U);
    EXPECT_EQ(list.contacts[0].name, "Ada");
    EXPECT_EQ(list.contacts[0].email, "ada@example.org");
    EXPECT_EQ(list.contacts[0].phone, "123");
    EXPECT_EQ(list.contacts[0].kind, ContactKind::company);
    open();
    EXPECT_EQ(field("name").stringValue(), "Ada");
}

TEST_F(ContactsWindow, WithoutAContactTheFormCannotBeOperated)
{
    open();
    EXPECT_FALSE(field("name").isEnabled());
    EXPECT_FALSE(button("Favourite").isEnabled());
    EXPECT_EQ(field("status").stringValue(), "0 contacts");
    shortcut("n");
    EXPECT_TRUE(field("name").isEditing());
    EXPECT_EQ(field("status").stringValue(), "1 contact, not saved");
}

TEST_F(ContactsWindow, TheListFollowsWhatIsTyped)
{
    open({{.name = "Ada"}, {.name = "Grace"}});
    click(view("row 1"));
    EXPECT_EQ(field("name").stringValue(), "Grace");
    window().makeFirstResponder(&field("name"));
    field("name").perform(TextCommand::selectAll);
    typeLetters("Zoe");
    EXPECT_EQ(button("row 1").title(), "Zoe");
    field("name").perform(TextCommand::selectAll);
    type(NSKey::backspace);
    EXPECT_EQ(button("row 1").title(), "No Name");
    EXPECT_EQ(button("row 0").title(), "Ada");
}

TEST_F(ContactsWindow, AsksForNothingWhileNobodyDoesAnything)
{
    const ManualDispatchClock clock; // by which nothing takes long, so that nothing is put off
    open({{.name = "Ada"}});
    EXPECT_EQ(desktop->flushFrames(), 0);
    EXPECT_FALSE(desktop->runPending());
    EXPECT_FALSE(desktop->hasWakeUp());
}

TEST_F(ContactsWindow, AClickIsDrawnInTheNextFrame)
{
    open({{.name = "Ada"}});
    const CGRect bounds = view("Favourite").bounds();
    CGPoint place = view("Favourite").convertPointTo({bounds.midX(), bounds.midY()}, nullptr);
    place.y = front().contentSize().height - place.y;
    front().userInput({.kind = InputKind::buttonPressed, .location = place});
    front().userInput({.kind = InputKind::buttonReleased, .location = place});
    EXPECT_EQ(desktop->flushFrames(), 1);
    EXPECT_THAT(front().lastFrame().text(), HasSubstr("check box, on"));
}

TEST_F(ContactsWindow, ArrowKeysInTheListChoose)
{
    open({{.name = "Ada"}, {.name = "Grace"}});
    window().makeFirstResponder(&view("row 0"));
    type(NSKey::down);
    EXPECT_EQ(field("name").stringValue(), "Grace");
    EXPECT_EQ(document->selection(), 1U);
}

TEST_F(ContactsWindow, LongListsAreTurnedPageByPage)
{
    std::vector<Contact> contacts;
    for (int i = 1; i <= 25; ++i)
        contacts.push_back({.name = "person " + std::to_string(i)});
    open(contacts);
    EXPECT_FALSE(button("Previous Page").isEnabled());
    click(button("Next Page"));
    EXPECT_EQ(field("name").stringValue(), "person 11");
    EXPECT_EQ(button("row 9").title(), "person 20");
    view("row 0").window()->makeFirstResponder(&view("row 0"));
    type(NSKey::pageDown);
    EXPECT_EQ(field("name").stringValue(), "person 21");
    EXPECT_FALSE(button("Next Page").isEnabled());
    type(NSKey::pageDown);
    EXPECT_EQ(field("name").stringValue(), "person 21") << "there is no further page";
    type(NSKey::pageUp);
    EXPECT_EQ(field("name").stringValue(), "person 11");
    front().userInput({.kind = InputKind::scrolled, .location = {100, 100}, .scroll = {0, 45}});
    EXPECT_EQ(field("name").stringValue(), "person 1");
}

TEST_F(ContactsWindow, ColoursAreChosenFromAPopoverThatThenCloses)
{
    open({{.name = "Ada"}});
    click(view("Colour"));
    ASSERT_EQ(NSApplication::shared().windows().size(), 2U);
    NSView& green = *find(*NSApplication::shared().windows().back()->contentView(), "Green");
    dynamic_cast<NSButton&>(green).performClick();
    settle();
    EXPECT_EQ(NSApplication::shared().windows().size(), 1U);
    EXPECT_EQ(document->contacts()[0].colour, "#4aa564");
    EXPECT_TRUE(document->isModified());
}

TEST_F(ContactsWindow, EscapeClosesTheHelp)
{
    open({{.name = "Ada"}});
    click(view("Help"));
    ASSERT_EQ(NSApplication::shared().windows().size(), 2U);
    type(NSKey::escape);
    EXPECT_EQ(NSApplication::shared().windows().size(), 1U);
}

TEST_F(ContactsWindow, AsksBeforeItClosesWithChanges)
{
    open({{.name = "Ada"}});
    click(view("Favourite"));
    window().performClose();
    EXPECT_TRUE(window().isVisible());
    EXPECT_EQ(view("Cancel").superview()->alphaValue(), 1);
    type(NSKey::escape); // Cancel
    EXPECT_TRUE(window().isVisible());

    window().performClose();
    type(NSKey::carriageReturn); // Save
    EXPECT_FALSE(window().isVisible());
    EXPECT_TRUE(readContacts(path).contacts[0].isFavourite);
}

TEST_F(ContactsWindow, DiscardingLeavesTheFileAsItWas)
{
    open({{.name = "Ada"}});
    click(view("Favourite"));
    window().performClose();
    settle();
    click(view("Discard"));
    EXPECT_FALSE(window().isVisible());
    EXPECT_FALSE(readContacts(path).contacts[0].isFavourite);
}

TEST_F(ContactsWindow, StaysOpenAndSaysWhyWhenItCannotBeSaved)
{
    open({{.name = "Ada"}});
    click(view("Favourite"));
    std::filesystem::remove(path);
    std::filesystem::create_directory(path); // no file can take its place
    window().performClose();
    type(NSKey::carriageReturn);
    EXPECT_TRUE(window().isVisible());
    EXPECT_THAT(field("status").stringValue(), HasSubstr("people.json\" cannot be saved: "));
    EXPECT_TRUE(document->isModified());
}

TEST_F(ContactsWindow, PreferencesAreShownAboveItAndTakeEffectAtOnce)
{
    open({{.name = "b", .email = "b@example.org"}, {.name = "a"}});
    shortcut(",");
    NSWindow& preferences = *NSApplication::shared().keyWindow();
    ASSERT_NE(&preferences, &window());
    EXPECT_EQ(preferences.title(), "Preferences");
    EXPECT_EQ(preferences.parentWindow(), &window());
    button("By name").performClick();
    EXPECT_EQ(dynamic_cast<NSButton&>(*find(*window().contentView(), "row 0")).title(), "a");
    button("Show e-mail addresses").performClick();
    EXPECT_FALSE(document->preferences().showsEmail);
    shortcut(",");
    EXPECT_EQ(NSApplication::shared().windows().size(), 2U) << "the same window again";
    window().close();
    EXPECT_TRUE(NSApplication::shared().windows().empty());
}

TEST_F(ContactsWindow, PreferencesGrowWithTheSectionThatIsShown)
{
    ManualDispatchClock clock;
    open();
    shortcut(",");
    NSWindow& preferences = *NSApplication::shared().keyWindow();
    const CGSize small = preferences.contentSize();
    const CGFloat top = preferences.frame().maxY();
    const auto toggle = [&] {
        button("More").performClick();
        clock.advance(preferences.animationResizeTime(preferences.frame()) + 1);
        settle();
    };
    toggle();
    EXPECT_EQ(preferences.contentSize().width, small.width);
    EXPECT_GT(preferences.contentSize().height, small.height + 40);
    EXPECT_EQ(preferences.contentSize().height, preferences.contentView()->fittingSize().height);
    EXPECT_EQ(preferences.frame().maxY(), top);
    EXPECT_TRUE(button("Persons").window());
    toggle();
    EXPECT_EQ(preferences.contentSize(), small);
}

} // namespace
} // namespace Contacts::ContactsWindowTests
