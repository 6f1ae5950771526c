#pragma once

#include <Contacts/ContactsViewController.h>

namespace Contacts {

// The main window: its toolbar, its shortcuts, its preferences, and the question before it closes.
class ContactsWindowController : public RVCore::NSWindowController, public RVCore::NSWindowDelegate {
    RVCORE_CLASS(ContactsWindowController)

public:
    using NSWindowController::init;
    void init(const std::shared_ptr<ContactDocument>& document);

    void newContact();
    void deleteContact();
    void save();
    void showPreferences();

    void keyDown(RVCore::NSEvent& event) override;
    bool windowShouldClose(RVCore::NSWindow& window) override;
    void windowWillClose(RVCore::NSWindow& window) override;

private:
    void makeToolbar();
    void documentChanged();

    std::shared_ptr<ContactDocument> m_document;
    std::shared_ptr<ContactsViewController> m_content;
    std::shared_ptr<RVCore::NSToolbar> m_toolbar;
    std::shared_ptr<RVCore::NSWindowController> m_preferences; // once it has been asked for
};

} // namespace Contacts
