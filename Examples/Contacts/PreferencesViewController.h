#pragma once

#include <Contacts/Contact.h>
#include <RVCore.h>

namespace Contacts {

// What is kept in Preferences, in two sections of which the second one is shown on demand; the window follows.
class PreferencesViewController : public RVCore::NSViewController {
    RVCORE_CLASS(PreferencesViewController)

public:
    using NSViewController::init;
    void init(const Preferences& preferences);

    // Called after every change that the user makes.
    void setOnChange(std::function<void(const Preferences&)> closure) { m_onChange = std::move(closure); }

    void loadView() override;

private:
    void makeControls();
    void changed();
    void sectionsChanged();

    Preferences m_preferences;
    std::shared_ptr<RVCore::NSButton> m_inOrder;
    std::shared_ptr<RVCore::NSButton> m_byName;
    std::shared_ptr<RVCore::NSButton> m_showsEmail;
    std::shared_ptr<RVCore::NSButton> m_person;
    std::shared_ptr<RVCore::NSButton> m_company;
    std::shared_ptr<RVCore::NSButton> m_more;
    std::shared_ptr<RVCore::RVGroupView> m_sections;
    std::shared_ptr<RVCore::RVGroupView> m_newContacts;
    std::function<void(const Preferences&)> m_onChange;
};

} // namespace Contacts
