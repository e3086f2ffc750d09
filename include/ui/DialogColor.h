#pragma once

#include "kit/jMath.h"
#include "kit/jString.h"
#include "ui/UIElement.h"

// The colour chooser (red, green, blue and alpha). modality() runs it; when the user accepts, the
// colour is stored and sigChanged is raised with the dialog as the sender, so the handler reads
// getColor(). A colour answer queued on the automation hook is taken instead of asking; without a
// display and without an answer the dialog closes as cancelled with a warning.
class DialogColor : public UIElement {
public:
    explicit DialogColor(UIRoot* root, const char* title = "Color");

    // Sets the colour the chooser starts from (and getColor returns).
    void setColor(const vec4& color);
    const vec4& getColor() const { return m_color; }
    // Sets the chooser window's title.
    void setTitle(const char* title);
    // Runs the chooser modally; returns true when a colour was accepted (sigChanged was raised).
    bool modality();

    // Raised after a colour was accepted.
    UISlot<UIEventChanged> sigChanged;

private:
    bool accept(const vec4& color);

    vec4 m_color{1.0f, 1.0f, 1.0f, 1.0f};
    jString m_title;
};
