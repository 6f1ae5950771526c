#include <Contacts/ContactListView.h>

#include <algorithm>
#include <cmath>

namespace Contacts {

using namespace RVCore;

namespace {

constexpr CGFloat scrolledForAPage = 40;

std::size_t placeOf(const std::vector<std::size_t>& order, std::size_t contact)
{
    return static_cast<std::size_t>(std::find(order.begin(), order.end(), contact) - order.begin());
}

} // namespace

Class& ContactListView::staticClass()
{
    static Class& theClass =
        defineClass<ContactListView>("Contacts.ContactListView", RVBaseView::staticClass(), [](auto& publish) {
            publish.method("rowChosen:", &ContactListView::rowChosen);
        });
    return theClass;
}

void ContactListView::init()
{
    RVBaseView::init();
    setTranslatesAutoresizingMaskIntoConstraints(false);
    setIdentifier("list");
    RVGroupView::Views rows;
    for (std::size_t i = 0; i < rowsPerPage; ++i) {
        auto row = make<ContactRow>();
        row->setTarget(shared(*this));
        row->setAction("rowChosen:");
        row->setIdentifier("row " + std::to_string(i));
        m_rows.push_back(row);
        rows.push_back(row);
    }
    m_list = makeGroupView(rows, {.orientation = RVGroupView::Orientation::vertical,
                                  .spacing = 2,
                                  .alignment = RVGroupView::Edge::fillParent(),
                                  .resizePolicy = RVGroupView::ResizePolicy::trailingEdge});
    makePager();
    addSubview(m_list);
    addSubview(m_pager);
    for (const LayoutEdge edge : {LayoutEdge::top, LayoutEdge::left, LayoutEdge::right})
        autoPinEdgeToSuperviewEdge(*m_list, edge);
    for (const LayoutEdge edge : {LayoutEdge::left, LayoutEdge::right, LayoutEdge::bottom})
        autoPinEdgeToSuperviewEdge(*m_pager, edge);
    autoPinEdge(*m_pager, LayoutEdge::top, LayoutEdge::bottom, *m_list, 4);
}

void ContactListView::makePager()
{
    const auto makeTurner = [this](const std::string& title, const std::string& label, int pages) {
        auto button = makeButton({.title = title});
        button->setBezelStyle(NSBezelStyle::regularSquare);
        button->setAccessibilityLabel(label);
        button->setOnAction([this, pages] { turnPage(pages); });
        return button;
    };
    m_previous = makeTurner("‹", "Previous Page", -1);
    m_next = makeTurner("›", "Next Page", 1);
    m_range = makeLabel("");
    m_range->setFont(systemFontOfSize(11));
    m_pager = makeGroupView({m_previous, m_next, m_range}, {.spacing = 4});
}

void ContactListView::show(const ContactDocument& document)
{
    m_order = document.order();
    m_page = document.selection() ? placeOf(m_order, *document.selection()) / rowsPerPage : 0;
    for (std::size_t i = 0; i < rowsPerPage; ++i) {
        const std::size_t place = m_page * rowsPerPage + i;
        const bool isUsed = place < m_order.size();
        m_list->setVisibility(m_rows[i], isUsed);
        if (!isUsed)
            continue;
        m_rows[i]->show(document.contacts()[m_order[place]], document.preferences().showsEmail);
        if (m_order[place] == document.selection())
            m_rows[i]->setState(NSControlStateValue::on);
    }
    m_pager->setHidden(pageCount() < 2);
    m_previous->setEnabled(m_page > 0);
    m_next->setEnabled(m_page + 1 < pageCount());
    const std::size_t first = m_page * rowsPerPage + 1;
    m_range->setStringValue(std::to_string(first) + "–" +
                            std::to_string(std::min(first + rowsPerPage - 1, m_order.size())) + " of " +
                            std::to_string(m_order.size()));
}

void ContactListView::rowChosen(const ObjectRef& sender)
{
    const auto row = std::find(m_rows.begin(), m_rows.end(), sender);
    const std::size_t place = m_page * rowsPerPage + static_cast<std::size_t>(row - m_rows.begin());
    if (place < m_order.size() && m_onSelect)
        m_onSelect(m_order[place]);
}

void ContactListView::turnPage(int pages)
{
    const auto page = static_cast<std::ptrdiff_t>(m_page) + pages;
    if (page < 0 || page >= static_cast<std::ptrdiff_t>(pageCount()))
        return;
    if (m_onSelect)
        m_onSelect(m_order[static_cast<std::size_t>(page) * rowsPerPage]);
}

void ContactListView::keyDown(NSEvent& event)
{
    if (event.characters() == NSKey::pageDown)
        turnPage(1);
    else if (event.characters() == NSKey::pageUp)
        turnPage(-1);
    else
        RVBaseView::keyDown(event);
}

void ContactListView::scrollWheel(NSEvent& event)
{
    m_scrolled += event.scrollingDeltaY();
    if (std::abs(m_scrolled) < scrolledForAPage)
        return;
    turnPage(m_scrolled < 0 ? 1 : -1);
    m_scrolled = 0;
}

} // namespace Contacts
