#pragma once

#include <Contacts/Contact.h>
#include <RVCore.h>

namespace Contacts {

// A contact in the list: one of several buttons that exclude each other, with a look of its own.
//
//     ● Ada Lovelace      ★
//       ada@example.org
class ContactRow : public RVCore::NSButton {
    RVCORE_CLASS(ContactRow)

public:
    using NSButton::init;
    void init(const RVCore::CGRect& frame) override;

    void show(const Contact& contact, bool showsEmail);

    RVCore::CGSize intrinsicContentSize() const override;
    void draw(RVCore::Canvas& canvas, const RVCore::CGRect& dirtyRect) override;

private:
    void drawTexts(RVCore::Canvas& canvas, const RVCore::CGColor& color) const;

    std::string m_email;
    RVCore::CGColor m_color;
    bool m_isFavourite = false;
    bool m_showsEmail = true;
};

} // namespace Contacts
