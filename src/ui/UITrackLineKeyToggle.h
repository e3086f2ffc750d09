#pragma once

#include "ui/UITrackLineKey.h"

// The mark of a switch key: the line's light shade when on, its dark shade when off; a double
// click flips the key.
class UITrackLineKeyToggle : public UITrackLineKey {
public:
    using UITrackLineKey::UITrackLineKey;
    vec4 getColor() const override;
    // Flips the key's value (in the engine too), redraws the line and posts message 197.
    void onDClick() override;
};
