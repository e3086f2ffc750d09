#pragma once

#include "kit/jString.h"
#include "ui/UIElement.h"

// A push button with a text and an optional icon; a click raises sigClick.
class UIButton : public UIElement {
public:
    // icon: a PNG file path, or null for none.
    explicit UIButton(UIRoot* root, const char* text = "", const char* icon = nullptr);

    // Sets the caption (null means empty).
    void setText(const char* text);
    const jString& getText() const { return m_text; }
    // Shows the image of a file; returns false and logs the path when it cannot be read.
    bool setIcon(const char* path);
    // Clicks the button as the user would (raises sigClick).
    void click();

    // Raised with the pointer position when the button is clicked.
    UISlot<UIEventMouse> sigClick;

private:
    jString m_text;
};
