#include <Contacts/ContactDocument.h>
#include <Contacts/ContactFile.h>

#include <algorithm>
#include <numeric>
#include <utility>

namespace Contacts {

namespace {

// Only the letters of ASCII lose their case: others would take a table of them.
char withoutCase(char letter)
{
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool comesBefore(const std::string& left, const std::string& right)
{
    return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                        [](char one, char other) { return withoutCase(one) < withoutCase(other); });
}

} // namespace

ContactDocument::ContactDocument(std::filesystem::path path)
    : m_path(std::move(path)), m_list(readContacts(m_path)), m_saved(copy())
{
    sort();
    if (!m_order.empty())
        m_selection = m_order.front();
}

void ContactDocument::select(std::size_t index)
{
    m_selection = index;
}

void ContactDocument::add()
{
    m_list.contacts.push_back({.kind = preferences().newContactKind});
    m_selection = contacts().size() - 1;
    sort();
}

void ContactDocument::removeSelected()
{
    if (!m_selection)
        return;
    const auto place = std::find(m_order.begin(), m_order.end(), *m_selection) - m_order.begin();
    m_list.contacts.erase(m_list.contacts.begin() + static_cast<std::ptrdiff_t>(*m_selection));
    sort();
    m_selection.reset();
    if (!m_order.empty())
        m_selection = m_order[std::min(static_cast<std::size_t>(place), m_order.size() - 1)];
}

void ContactDocument::changeSelected(const Contact& contact)
{
    m_list.contacts.at(m_selection.value()) = contact;
}

void ContactDocument::sort()
{
    m_order.resize(contacts().size());
    std::iota(m_order.begin(), m_order.end(), std::size_t(0));
    if (preferences().isSortedByName)
        std::stable_sort(m_order.begin(), m_order.end(), [this](std::size_t left, std::size_t right) {
            return comesBefore(contacts()[left].name, contacts()[right].name);
        });
}

void ContactDocument::setPreferences(const Preferences& preferences)
{
    m_list.preferences = preferences;
    sort();
}

} // namespace Contacts
