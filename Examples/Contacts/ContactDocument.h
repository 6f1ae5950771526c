#pragma once

#include <Contacts/Contact.h>

#include <filesystem>
#include <functional>
#include <optional>

namespace Contacts {

// A list of contacts with the file that it is kept in, and the one of them that is chosen. Only `save` writes.
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
    bool isModified() const { return m_list != m_saved; }

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

    // Throws ContactFileError; the file and the list then stay as they were.
    void save();

private:
    std::filesystem::path m_path;
    ContactList m_list;
    ContactList m_saved; // as the file has it
    std::vector<std::size_t> m_order;
    std::optional<std::size_t> m_selection;
};

} // namespace Contacts
