#pragma once

#include <Contacts/ContactForm.h>
#include <Contacts/ContactListView.h>

#include <thread>

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
    // A list that takes long to write has at least so many contacts. A thousand take five milliseconds, so these take
    // a tenth of a second, up to which a window seems to answer at once.
    static constexpr std::size_t largeListSize = 20'000;

    using NSViewController::init;
    void init(const std::shared_ptr<ContactDocument>& document);

    // Called after every change of the document.
    void setOnChange(std::function<void()> closure) { m_onChange = std::move(closure); }

    void addContact();
    void removeContact();
    // Writes the file; the status says how that went. A large list is written on a thread, and the form is covered
    // meanwhile. Asked for again before that is over, it writes once more afterwards, if there is anything new.
    void save();
    bool isSaving() const { return m_isSaving; }
    // Asks the window to close when the saving that goes on has succeeded.
    void closeAfterSaving() { m_closesAfterSaving = true; }
    void setPreferences(const Preferences& preferences);

    // Asks whether to save before the window closes; it closes unless the user decides otherwise or saving fails.
    void askBeforeClosing();

    void loadView() override;

private:
    void makeStatus();
    void makeQuestion();
    void endQuestion();
    void coverForm();
    void endSaving(const std::shared_ptr<const ContactList>& written, const std::string& problem);
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
    bool m_isSaving = false;
    bool m_savesAgain = false;
    bool m_closesAfterSaving = false;
    std::jthread m_writer; // last: it is waited for before the rest goes
};

} // namespace Contacts
