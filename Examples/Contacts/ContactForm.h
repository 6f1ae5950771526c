#pragma once

#include <Contacts/Contact.h>
#include <RVCore.h>

namespace Contacts {

// The fields of one contact:
//
//        Name  [                    ]
//      E-mail  [                    ]
//       Phone  [                    ]
//        Kind  (•) Person ( ) Company
//      Colour  [swatch]
//              [x] Favourite         (?)
class ContactForm : public RVCore::RVBaseView, public RVCore::NSTextFieldDelegate {
    RVCORE_CLASS(ContactForm)

public:
    using RVBaseView::init;
    void init() override;

    // Without a contact the form is empty, and nothing in it can be operated.
    void show(const Contact* contact);
    // Called after every change that the user makes, and once more when he has done with a text.
    void setOnChange(std::function<void(const Contact&)> closure) { m_onChange = std::move(closure); }
    void setOnEditingEnd(std::function<void()> closure) { m_onEditingEnd = std::move(closure); }
    // Puts the keyboard focus into the name, all of it selected.
    void beginEditing();

    void controlTextDidChange(RVCore::NSTextField& field) override;
    void controlTextDidEndEditing(RVCore::NSTextField& field) override;

private:
    struct Labelled {
        std::shared_ptr<RVCore::NSView> label;
        std::shared_ptr<RVCore::RVGroupView> row;
    };

    void makeControls();
    std::shared_ptr<RVCore::NSTextField> makeField(const std::string& identifier, const std::string& placeholder);
    Labelled makeRow(const std::string& label, const std::shared_ptr<RVCore::NSView>& content) const;
    std::vector<std::shared_ptr<RVCore::NSControl>> controls() const;
    void changed();
    void showPalette();
    void chooseColor(const std::shared_ptr<RVCore::NSColor>& color);
    void showHelp();

    std::shared_ptr<RVCore::NSTextField> m_name;
    std::shared_ptr<RVCore::NSTextField> m_email;
    std::shared_ptr<RVCore::NSTextField> m_phone;
    std::shared_ptr<RVCore::NSButton> m_person;
    std::shared_ptr<RVCore::NSButton> m_company;
    std::shared_ptr<RVCore::NSButton> m_favourite;
    std::shared_ptr<RVCore::RVColorButton> m_color;
    std::shared_ptr<RVCore::NSButton> m_help;
    std::shared_ptr<RVCore::NSPopover> m_popover; // the palette or the help, whichever was shown last
    Contact m_contact;
    std::function<void(const Contact&)> m_onChange;
    std::function<void()> m_onEditingEnd;
};

} // namespace Contacts
