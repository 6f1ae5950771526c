#include <Contacts/ColorPalette.h>
#include <Contacts/ColorText.h>
#include <Contacts/ContactForm.h>
#include <Contacts/Icons.h>

namespace Contacts {

using namespace RVCore;

namespace {

constexpr CGFloat margin = 16; // a part of the form, so that what covers it does not end at its fields
constexpr CGFloat rowSpacing = 10;
constexpr CGFloat columnSpacing = 8;
constexpr CGFloat helpWidth = 240;
constexpr const char* helpText =
    "What you type is in the list at once. It is in the file when you save: with the button above or with Control+S. "
    "The colour is the dot beside the name. Favourites have a star.";

// Gives `content` a margin all around.
std::shared_ptr<NSView> padded(const std::shared_ptr<NSView>& content)
{
    auto group = makeGroupView({content});
    group->setPadding(makeEdgeInsets({.horizontal = 12, .vertical = 12}));
    group->setAlignment(group->alignment());
    return group;
}

} // namespace

Class& ContactForm::staticClass()
{
    static Class& theClass =
        defineClass<ContactForm>("Contacts.ContactForm", RVBaseView::staticClass(), [](auto& publish) {
            publish.method("changed", &ContactForm::changed);
            publish.method("showPalette", &ContactForm::showPalette);
            publish.method("showHelp", &ContactForm::showHelp);
        });
    return theClass;
}

void ContactForm::init()
{
    RVBaseView::init();
    setTranslatesAutoresizingMaskIntoConstraints(false);
    setIdentifier("form");
    makeControls();
    const std::vector<Labelled> rows{
        makeRow("Name", m_name),
        makeRow("E-mail", m_email),
        makeRow("Phone", m_phone),
        makeRow("Kind", makeGroupView({m_person, m_company},
                                      {.spacing = 16, .resizePolicy = RVGroupView::ResizePolicy::trailingEdge})),
        makeRow("Colour", makeGroupView({m_color}, {.resizePolicy = RVGroupView::ResizePolicy::trailingEdge})),
        makeRow("", makeGroupView({m_favourite, m_help},
                                  {.spacing = 16, .resizePolicy = RVGroupView::ResizePolicy::trailingEdge}))};
    RVGroupView::Views members;
    for (const Labelled& row : rows)
        members.push_back(row.row);
    const auto group = makeGroupView(members, {.orientation = RVGroupView::Orientation::vertical,
                                               .spacing = rowSpacing,
                                               .alignment = RVGroupView::Edge::fillParent(),
                                               .resizePolicy = RVGroupView::ResizePolicy::trailingEdge});
    addSubview(group);
    for (const LayoutEdge edge : {LayoutEdge::top, LayoutEdge::left, LayoutEdge::bottom, LayoutEdge::right})
        autoPinEdgeToSuperviewEdge(*group, edge, margin);
    // One column: every label ends where the first one does, and that is as wide as the widest.
    for (const Labelled& row : rows)
        if (row.label != rows.front().label)
            autoPinEdge(*row.label, LayoutEdge::right, LayoutEdge::right, *rows.front().label);
    show(nullptr);
}

void ContactForm::makeControls()
{
    m_name = makeField("name", "First and last name");
    m_email = makeField("email", "name@example.org");
    m_phone = makeField("phone", "+49 30 1234567");
    const auto self = shared(*this);
    m_person = makeRadio({.title = "Person", .target = self, .action = "changed"});
    m_company = makeRadio({.title = "Company", .target = self, .action = "changed"});
    m_favourite = makeCheckbox({.title = "Favourite", .target = self, .action = "changed"});
    m_color = make<RVColorButton>(colorWithCGColor(colorFromText(Contact().colour)));
    m_color->setAccessibilityLabel("Colour");
    m_color->setTarget(self);
    m_color->setAction("showPalette");
    m_help = makeImageButton({.image = makeIcon(Icon::help), .target = self, .action = "showHelp"});
    m_help->setAccessibilityLabel("Help");
}

std::shared_ptr<NSTextField> ContactForm::makeField(const std::string& identifier, const std::string& placeholder)
{
    auto field = makeTextField({.placeholder = placeholder});
    field->setIdentifier(identifier);
    field->setDelegate(std::static_pointer_cast<ContactForm>(shared(*this)));
    return field;
}

ContactForm::Labelled ContactForm::makeRow(const std::string& label, const std::shared_ptr<NSView>& content) const
{
    auto text = makeLabel(label);
    text->setAlignment(NSTextAlignment::right);
    return {text, makeGroupView({text, content}, {.spacing = columnSpacing})};
}

std::vector<std::shared_ptr<NSControl>> ContactForm::controls() const
{
    return {m_name, m_email, m_phone, m_person, m_company, m_color, m_favourite};
}

void ContactForm::show(const Contact* contact)
{
    m_contact = contact ? *contact : Contact();
    const auto showText = [](NSTextField& field, const std::string& text) {
        if (field.stringValue() != text) // what is being edited keeps its caret and its undo
            field.setStringValue(text);
    };
    showText(*m_name, m_contact.name);
    showText(*m_email, m_contact.email);
    showText(*m_phone, m_contact.phone);
    (m_contact.kind == ContactKind::company ? m_company : m_person)->setState(NSControlStateValue::on);
    m_favourite->setState(m_contact.isFavourite ? NSControlStateValue::on : NSControlStateValue::off);
    m_color->setColor(colorWithCGColor(colorFromText(m_contact.colour)));
    for (const auto& control : controls())
        control->setEnabled(contact != nullptr);
}

void ContactForm::beginEditing()
{
    if (NSWindow* theWindow = window())
        theWindow->makeFirstResponder(m_name.get());
    m_name->perform(TextCommand::selectAll);
}

void ContactForm::controlTextDidChange(NSTextField&)
{
    changed();
}

void ContactForm::controlTextDidEndEditing(NSTextField&)
{
    if (m_onEditingEnd)
        m_onEditingEnd();
}

void ContactForm::changed()
{
    m_contact.name = m_name->stringValue();
    m_contact.email = m_email->stringValue();
    m_contact.phone = m_phone->stringValue();
    m_contact.kind = m_company->state() == NSControlStateValue::on ? ContactKind::company : ContactKind::person;
    m_contact.isFavourite = m_favourite->state() == NSControlStateValue::on;
    if (m_onChange)
        m_onChange(m_contact);
}

void ContactForm::showPalette()
{
    auto palette = make<ColorPalette>();
    palette->setOnChoose([this](const std::shared_ptr<NSColor>& color) { chooseColor(color); });
    m_popover = makePopover({.view = padded(palette), .behavior = NSPopoverBehavior::transient});
    RVCore::show(*m_popover, *m_color, NSRectEdge::maxX);
}

void ContactForm::chooseColor(const std::shared_ptr<NSColor>& color)
{
    m_popover->close();
    m_color->setColor(color);
    m_contact.colour = textFromColor(color->cgColor());
    changed();
}

void ContactForm::showHelp()
{
    auto text = makeLabel(helpText);
    text->setLineBreakMode(NSLineBreakMode::wordWrapping);
    text->setPreferredMaxLayoutWidth(helpWidth);
    m_popover = makePopover({.view = padded(text), .behavior = NSPopoverBehavior::transient});
    RVCore::show(*m_popover, *m_help, NSRectEdge::maxX);
}

} // namespace Contacts
