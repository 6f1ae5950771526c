#pragma once

#include <Contacts/ContactDocument.h>
#include <Contacts/ContactRow.h>

namespace Contacts {

// The names in the order of the document, a page at a time, with buttons to turn pages where there are several. Also
// turned by Page Up, Page Down and the wheel; a page that is turned to has its first contact chosen.
class ContactListView : public RVCore::RVBaseView {
    RVCORE_CLASS(ContactListView)

public:
    static constexpr std::size_t rowsPerPage = 10;

    using RVBaseView::init;
    void init() override;

    // Shows the page with the contact that is chosen.
    void show(const ContactDocument& document);
    // Called with the index of the contact that the user has chosen.
    void setOnSelect(std::function<void(std::size_t contact)> closure) { m_onSelect = std::move(closure); }

    void keyDown(RVCore::NSEvent& event) override;
    void scrollWheel(RVCore::NSEvent& event) override;

private:
    void makePager();
    void rowChosen(const RVCore::ObjectRef& sender);
    void turnPage(int pages);
    std::size_t pageCount() const { return (m_order.size() + rowsPerPage - 1) / rowsPerPage; }

    std::vector<std::shared_ptr<ContactRow>> m_rows;
    std::shared_ptr<RVCore::RVGroupView> m_list;
    std::shared_ptr<RVCore::RVGroupView> m_pager;
    std::shared_ptr<RVCore::NSButton> m_previous;
    std::shared_ptr<RVCore::NSButton> m_next;
    std::shared_ptr<RVCore::NSTextField> m_range;
    std::vector<std::size_t> m_order; // of the document, as it was shown last
    std::size_t m_page = 0;
    RVCore::CGFloat m_scrolled = 0; // since the last page was turned
    std::function<void(std::size_t)> m_onSelect;
};

} // namespace Contacts
