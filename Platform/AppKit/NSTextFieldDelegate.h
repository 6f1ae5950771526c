#pragma once

namespace RVCore {

class NSTextField;

// Hears of what a user does to a text field's text; what the program itself sets is not told. Editing begins with the
// first change of the text and ends with Return or when the field is the first responder no more; both are told, or
// neither. Any of these may end the field's life in its window.
class NSTextFieldDelegate {
public:
    virtual ~NSTextFieldDelegate() = default;
    virtual void controlTextDidBeginEditing(NSTextField&) {}
    // After every change, stringValue() being the new text. The first one follows controlTextDidBeginEditing.
    virtual void controlTextDidChange(NSTextField&) {}
    virtual void controlTextDidEndEditing(NSTextField&) {}
};

} // namespace RVCore
