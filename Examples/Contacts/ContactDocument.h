#pragma once

#include <Contacts/Contact.h>

#include <filesystem>
#include <memory>
#include <optional>

namespace Contacts {

// A list of contacts with the file that it is kept in, and the one of them that is chosen. It writes nothing itself.
class ContactDocument {
public:
    // Reads the file; one that does not exist is an empty list. Throws ContactFileError.
    explicit ContactDocument(std::filesystem::path path);

    const std::filesystem::path& path() const { return m_path; }
    const std::vector<Contact>& contacts() const { return m_list.contacts; }
    const Preferences& preferences() const { return m_list.preferences; }
    // The contacts' indexes in the order in which the list shows them.
    const std::vector<std::size_t>& order() const { return m_order; }
    // The index of the contact that is chosen; nothing in an empty list.
    std::optional<std::size_t> selection() const { return m_selection; }
    // Whether there is anything in it that the file does not have.
    bool isModified() const { return m_list != *m_saved; }
    // A copy of all that belongs into the file, for whoever writes it, on any thread.
    std::shared_ptr<const ContactList> copy() const { return std::make_shared<const ContactList>(m_list); }
    // The file has this list now.
    void setSaved(const std::shared_ptr<const ContactList>& list) { m_saved = list; }

    void select(std::size_t index);
    // Puts a contact at the end of the list and chooses it.
    void add();
    // Takes the chosen one out and chooses the one that the list shows in its place; does nothing in an empty list.
    void removeSelected();
    // Takes the place of the chosen one. The order stays until `sort`, so that the list stands still while somebody
    // types.
    void changeSelected(const Contact& contact);
    void sort();
    void setPreferences(const Preferences& preferences);

private:
    std::filesystem::path m_path;
    ContactList m_list;
    std::shared_ptr<const ContactList> m_saved; // as the file has it; never null
    std::vector<std::size_t> m_order;
    std::optional<std::size_t> m_selection;
};

} // namespace Contacts
