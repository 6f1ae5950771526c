#include <Common/ToolbarItem.h>
#include <Contacts/ContactsWindowController.h>
#include <Contacts/Icons.h>
#include <Contacts/PreferencesViewController.h>

namespace Contacts {

using namespace RVCore;
using Examples::makeToolbarItem;

Class& ContactsWindowController::staticClass()
{
    static Class& theClass = defineClass<ContactsWindowController>(
        "Contacts.ContactsWindowController", NSWindowController::staticClass(), [](auto& publish) {
            publish.method("newContact", &ContactsWindowController::newContact);
            publish.method("deleteContact", &ContactsWindowController::deleteContact);
            publish.method("save", &ContactsWindowController::save);
            publish.method("showPreferences", &ContactsWindowController::showPreferences);
        });
    return theClass;
}

void ContactsWindowController::init(const std::shared_ptr<ContactDocument>& document)
{
    NSWindowController::init(makeWindow(defaultStyleMask() | NSWindowStyleMask::resizable));
    m_document = document;
    m_content = make<ContactsViewController>(document);
    setContentViewController(m_content);
    window()->setTitle(document->path().filename().string() + " – Contacts");
    window()->setDelegate(std::static_pointer_cast<ContactsWindowController>(shared(*this)));
    makeToolbar();
    m_content->setOnChange([this] { documentChanged(); });
    documentChanged();
}

void ContactsWindowController::makeToolbar()
{
    const auto self = shared(*this);
    m_toolbar = make<NSToolbar>("contacts");
    const std::shared_ptr<NSToolbarItem> items[] = {
        makeToolbarItem("New", makeIcon(Icon::add), self, "newContact"),
        makeToolbarItem("Delete", makeIcon(Icon::remove), self, "deleteContact"),
        makeToolbarItem("Save", makeIcon(Icon::save), self, "save"),
        make<NSToolbarItem>(NSToolbarFlexibleSpaceItemIdentifier),
        makeToolbarItem("Preferences", makeIcon(Icon::preferences), self, "showPreferences")};
    for (const auto& item : items)
        m_toolbar->insertItem(item, m_toolbar->items().size());
    window()->setToolbar(m_toolbar);
}

void ContactsWindowController::documentChanged()
{
    m_toolbar->items()[1]->setEnabled(m_document->selection().has_value());
}

void ContactsWindowController::newContact()
{
    m_content->addContact();
}

void ContactsWindowController::deleteContact()
{
    m_content->removeContact();
}

void ContactsWindowController::save()
{
    m_content->save();
}

void ContactsWindowController::showPreferences()
{
    if (!m_preferences) {
        auto content = make<PreferencesViewController>(m_document->preferences());
        content->setOnChange([this](const Preferences& preferences) { m_content->setPreferences(preferences); });
        m_preferences = defaultWindowController(content);
        m_preferences->window()->setTitle(content->title());
    }
    window()->makeKeyWindow();
    showAboveKeyWindow(*m_preferences, {.stayOnTop = true});
}

// Keys that nothing in the window has taken.
void ContactsWindowController::keyDown(NSEvent& event)
{
    const std::string key = isShortcut(event) ? event.charactersIgnoringModifiers() : "";
    if (key == "n")
        newContact();
    else if (key == "s")
        save();
    else if (key == ",")
        showPreferences();
    else
        NSWindowController::keyDown(event);
}

bool ContactsWindowController::windowShouldClose(NSWindow&)
{
    if (m_content->isSaving())
        m_content->closeAfterSaving();
    else if (m_document->isModified())
        m_content->askBeforeClosing();
    else
        return true;
    return false;
}

void ContactsWindowController::windowWillClose(NSWindow&)
{
    if (m_preferences)
        m_preferences->close();
}

} // namespace Contacts
