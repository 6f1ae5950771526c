#pragma once

#include <Contacts/ContactForm.h>
#include <Contacts/ContactListView.h>

namespace Contacts {

// The content of the main window, and what can be done with the document:
//
//     ┌──────────┬──────────────────┐
//     │ list     │ form             │
//     ├──────────┴──────────────────┤
//     │ status or question          │
//     └─────────────────────────────┘
class ContactsViewController : public RVCore::NSViewController {
    RVCORE_CLASS(ContactsViewController)

public:
    using NSViewController::init;
    void init(const std::shared_ptr<ContactDocument>& document);

    // Called after every change of the document.
    void setOnChange(std::function<void()> closure) { m_onChange = std::move(closure); }

    void addContact();
    void removeContact();
    // Returns whether the document is now saved; when it is not, the status says why.
    bool save();
    void setPreferences(const Preferences& preferences);

    // Asks whether to save before the window closes; it closes unless the user decides otherwise or saving fails.
    void askBeforeClosing();

    void loadView() override;

private:
    void makeStatus();
    void makeQuestion();
    void endQuestion();
    void showDocument();
    void showStatus(const std::string& text, bool isProblem = false);
    std::string summary() const;

    std::shared_ptr<ContactDocument> m_document;
    std::shared_ptr<ContactListView> m_list;
    std::shared_ptr<ContactForm> m_form;
    std::shared_ptr<RVCore::RVGroupView> m_footer;
    std::shared_ptr<RVCore::NSTextField> m_status;
    std::shared_ptr<RVCore::RVGroupView> m_question;
    std::shared_ptr<RVCore::NSButton> m_saveAnswer;
    std::weak_ptr<RVCore::NSResponder> m_interrupted; // had the keyboard focus when the question came up
    std::function<void()> m_onChange;
};

} // namespace Contacts
