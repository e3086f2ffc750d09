#pragma once

#include "kit/jString.h"
#include "ui/UIElement.h"

// A check box with a text. The user's toggling raises sigChanged; setChecked is silent.
class UICheckBox : public UIElement {
public:
    explicit UICheckBox(UIRoot* root, const char* text = "");

    // Sets the caption (null means empty).
    void setText(const char* text);
    const jString& getText() const { return m_text; }
    // Sets the state without raising any event.
    void setChecked(bool checked);
    // Toggles the box as the user's click would (raises sigChanged).
    void click();
    // True while the box is checked.
    bool isChecked() const;

    // Raised when the user toggles the box.
    UISlot<UIEventChanged> sigChanged;

private:
    jString m_text;
};
