#include <Contacts/ContactDocument.h>
#include <Contacts/ContactFile.h>
#include <Examples/TemporaryFolder.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace Contacts::ContactDocumentTests {
namespace {

using testing::ElementsAre;

class ContactDocumentTest : public testing::Test {
protected:
    ContactDocument documentOf(const std::vector<std::string>& names, bool isSortedByName = false) const
    {
        ContactList list;
        for (const std::string& name : names)
            list.contacts.push_back({.name = name});
        list.preferences.isSortedByName = isSortedByName;
        writeContacts(m_path, list);
        return ContactDocument(m_path);
    }
    static std::vector<std::string> shownNames(const ContactDocument& document)
    {
        std::vector<std::string> names;
        for (const std::size_t index : document.order())
            names.push_back(document.contacts()[index].name);
        return names;
    }

    Examples::TemporaryFolder m_folder;
    std::filesystem::path m_path = m_folder.path() / "people.json";
};

TEST_F(ContactDocumentTest, WithoutAFileIsAnEmptyListThatIsNotModified)
{
    const ContactDocument document(m_path);
    EXPECT_TRUE(document.contacts().empty());
    EXPECT_EQ(document.selection(), std::nullopt);
    EXPECT_FALSE(document.isModified());
    EXPECT_FALSE(std::filesystem::exists(m_path)) << "only saving makes the file";
}

TEST_F(ContactDocumentTest, BeginsWithTheFirstOneInTheListChosen)
{
    EXPECT_EQ(documentOf({"b", "a"}).selection(), 0U);
    EXPECT_EQ(documentOf({"b", "a"}, true).selection(), 1U);
}

TEST_F(ContactDocumentTest, SortsByNameWithoutRegardToCaseAndOtherwiseLeavesTheOrder)
{
    EXPECT_THAT(shownNames(documentOf({"bob", "Ada", "", "Zoe", "ada"}, true)),
                ElementsAre("", "Ada", "ada", "bob", "Zoe"));
    EXPECT_THAT(shownNames(documentOf({"bob", "Ada"})), ElementsAre("bob", "Ada"));
}

TEST_F(ContactDocumentTest, StandsStillWhileANameIsTypedUntilItIsSorted)
{
    ContactDocument document = documentOf({"a", "b"}, true);
    Contact contact = document.contacts()[0];
    contact.name = "z";
    document.changeSelected(contact);
    EXPECT_THAT(shownNames(document), ElementsAre("z", "b"));
    document.sort();
    EXPECT_THAT(shownNames(document), ElementsAre("b", "z"));
    EXPECT_EQ(document.selection(), 0U) << "the same contact is chosen";
}

TEST_F(ContactDocumentTest, IsModifiedUntilTheFileHasItOrItIsAsItWas)
{
    ContactDocument document = documentOf({"a"});
    Contact contact = document.contacts()[0];
    contact.name = "b";
    document.changeSelected(contact);
    EXPECT_TRUE(document.isModified());
    contact.name = "a";
    document.changeSelected(contact);
    EXPECT_FALSE(document.isModified());

    document.add();
    EXPECT_TRUE(document.isModified());
    document.setSaved(document.copy());
    EXPECT_FALSE(document.isModified());
}

TEST_F(ContactDocumentTest, WhatIsChangedAfterTheCopyWasTakenIsNotSaved)
{
    ContactDocument document = documentOf({"a"});
    const auto written = document.copy();
    document.add();
    document.setSaved(written);
    EXPECT_TRUE(document.isModified());
    EXPECT_EQ(written->contacts.size(), 1U);
    document.removeSelected();
    EXPECT_FALSE(document.isModified());
}

TEST_F(ContactDocumentTest, ANewContactIsChosenAndOfThePreferredKind)
{
    ContactDocument document = documentOf({"a"});
    Preferences preferences;
    preferences.newContactKind = ContactKind::company;
    document.setPreferences(preferences);
    document.add();
    EXPECT_EQ(document.selection(), 1U);
    EXPECT_EQ(document.contacts()[1].kind, ContactKind::company);
}

TEST_F(ContactDocumentTest, AfterRemovalTheNextOneInTheListIsChosenThenTheLastThenNone)
{
    ContactDocument document = documentOf({"c", "b", "a"}, true); // shown as a, b, c
    document.select(1);
    document.removeSelected();
    EXPECT_EQ(document.contacts()[document.selection().value()].name, "c");
    document.removeSelected();
    EXPECT_EQ(document.contacts()[document.selection().value()].name, "a");
    document.removeSelected();
    EXPECT_EQ(document.selection(), std::nullopt);
    document.removeSelected();
    EXPECT_TRUE(document.contacts().empty());
}

} // namespace
} // namespace Contacts::ContactDocumentTests
