#pragma once

#include "kit/jString.h"
#include "ui/UIElement.h"

// What an edit line accepts (setMode).
enum UI_EDIT_MODE : int {
    UI_EDIT_TEXT = 0, // any text
    UI_EDIT_INTEGER = 1, // a decimal integer
    UI_EDIT_HEX = 2, // a hexadecimal integer
    UI_EDIT_NUMBER = 3, // a decimal number, with an optional exponent
};

// A one-line text field. The user's typing raises sigChanged; Enter or leaving the field raises
// sigCommit; setText changes the text silently.
class UIEditLine : public UIElement {
public:
    explicit UIEditLine(UIRoot* root, const char* text = "");

    // Replaces the text without raising any event.
    void setText(const char* text);
    const jString& getText() const { return m_text; }
    // Restricts what the user can type (UI_EDIT_MODE); an unknown mode logs and changes nothing.
    void setMode(int mode);
    int getMode() const { return m_mode; }
    // A read-only field shows its text but ignores typing.
    void setReadOnly(bool readOnly);
    bool isReadOnly() const;

    // Raised on every change the user types.
    UISlot<UIEventChanged> sigChanged;
    // Raised when the user commits the text (Enter, or the field loses the focus).
    UISlotVoid sigCommit;

protected:
    // For fields with their own native line edit.
    UIEditLine(UIRoot* root, UINative* native, const char* text);

private:
    void connect_native();

    jString m_text;
    int m_mode = UI_EDIT_TEXT;
};
