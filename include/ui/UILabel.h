#pragma once

#include "kit/jString.h"
#include "ui/UIElement.h"

// A line of read-only text.
class UILabel : public UIElement {
public:
    explicit UILabel(UIRoot* root, const char* text = "");

    // Sets the text (null means empty).
    void setText(const char* text);
    const jString& getText() const { return m_text; }
    // Sets the colour of the text.
    void setTextColor(const vec4& color);

private:
    jString m_text;
};
