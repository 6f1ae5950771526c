#include <Contacts/PreferencesViewController.h>

namespace Contacts {

using namespace RVCore;

namespace {

constexpr CGFloat width = 320;
constexpr CGFloat margin = 20;
constexpr CGFloat sectionSpacing = 16;
constexpr CGFloat rowSpacing = 8;

NSControlStateValue stateOf(bool isOn)
{
    return isOn ? NSControlStateValue::on : NSControlStateValue::off;
}

std::shared_ptr<RVGroupView> makeSection(const std::string& title, RVGroupView::Views rows)
{
    auto heading = makeLabel(title);
    heading->setFont(boldSystemFontOfSize(13));
    rows.insert(rows.begin(), heading);
    return makeGroupView(rows, {.orientation = RVGroupView::Orientation::vertical,
                                .spacing = rowSpacing,
                                .alignment = RVGroupView::Edge::leadingParent(),
                                .resizePolicy = RVGroupView::ResizePolicy::trailingEdge});
}

} // namespace

Class& PreferencesViewController::staticClass()
{
    static Class& theClass = defineClass<PreferencesViewController>(
        "Contacts.PreferencesViewController", NSViewController::staticClass(), [](auto& publish) {
            publish.method("changed", &PreferencesViewController::changed);
            publish.method("sectionsChanged", &PreferencesViewController::sectionsChanged);
        });
    return theClass;
}

void PreferencesViewController::init(const Preferences& preferences)
{
    NSViewController::init();
    setTitle("Preferences");
    m_preferences = preferences;
}

void PreferencesViewController::loadView()
{
    makeControls();
    // Radio buttons in one view exclude each other, so each choice has a view of its own.
    const auto order =
        makeGroupView({m_inOrder, m_byName}, {.orientation = RVGroupView::Orientation::vertical,
                                              .spacing = rowSpacing,
                                              .alignment = RVGroupView::Edge::leadingParent(),
                                              .resizePolicy = RVGroupView::ResizePolicy::trailingEdge});
    m_newContacts =
        makeSection("New contacts are", {makeGroupView({m_person, m_company}, {.spacing = sectionSpacing})});
    m_sections = makeGroupView({makeSection("List", {order, m_showsEmail}), m_newContacts, m_more},
                               {.orientation = RVGroupView::Orientation::vertical,
                                .spacing = sectionSpacing,
                                .alignment = RVGroupView::Edge::leadingParent(),
                                .resizePolicy = RVGroupView::ResizePolicy::trailingEdge});
    m_sections->setVisibility(m_newContacts, false);

    auto root = make<RVBaseView>();
    root->setTranslatesAutoresizingMaskIntoConstraints(false);
    root->addSubview(m_sections);
    for (const LayoutEdge edge : {LayoutEdge::top, LayoutEdge::left, LayoutEdge::bottom, LayoutEdge::right})
        autoPinEdgeToSuperviewEdge(*m_sections, edge, margin);
    autoSetDimension(*root, LayoutDimension::width, width);
    setView(root);
}

void PreferencesViewController::makeControls()
{
    const auto self = shared(*this);
    m_inOrder = makeRadio({.title = "In the order in which they were made", .target = self, .action = "changed"});
    m_byName = makeRadio({.title = "By name", .target = self, .action = "changed"});
    m_showsEmail = makeCheckbox({.title = "Show e-mail addresses", .target = self, .action = "changed"});
    m_person = makeRadio({.title = "Persons", .target = self, .action = "changed"});
    m_company = makeRadio({.title = "Companies", .target = self, .action = "changed"});
    m_more = makeButton({.title = "More", .target = self, .action = "sectionsChanged"});
    m_more->setButtonType(NSButtonType::pushOnPushOff);
    (m_preferences.isSortedByName ? m_byName : m_inOrder)->setState(NSControlStateValue::on);
    m_showsEmail->setState(stateOf(m_preferences.showsEmail));
    (m_preferences.newContactKind == ContactKind::company ? m_company : m_person)->setState(NSControlStateValue::on);
}

void PreferencesViewController::changed()
{
    m_preferences.isSortedByName = m_byName->state() == NSControlStateValue::on;
    m_preferences.showsEmail = m_showsEmail->state() == NSControlStateValue::on;
    m_preferences.newContactKind =
        m_company->state() == NSControlStateValue::on ? ContactKind::company : ContactKind::person;
    if (m_onChange)
        m_onChange(m_preferences);
}

void PreferencesViewController::sectionsChanged()
{
    m_sections->setVisibility(m_newContacts, m_more->state() == NSControlStateValue::on);
    if (NSWindow* window = view()->window())
        resizeToNewContentSize(*window, view()->fittingSize());
}

} // namespace Contacts
