#pragma once

#include "ui/UITrackLineKey.h"

class UIElement;
struct UIEventChanged;

// The mark of a colour key: filled with the key's colour; a double click opens the colour chooser.
class UITrackLineKeyColor : public UITrackLineKey {
public:
    using UITrackLineKey::UITrackLineKey;
    vec4 getColor() const override;
    // Runs the colour chooser on the key's colour; an accepted colour is stored in the key and the
    // engine, and message 197 is posted.
    void onDClick() override;

private:
    void on_color_changed(const UIEventChanged* e, UIElement* sender);
};
