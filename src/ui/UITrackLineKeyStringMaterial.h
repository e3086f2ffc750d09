#pragma once

#include "ui/UITrackLineKeyString.h"

// The mark of a material key. A double click on a key that names a material clears it (the key
// then sets nothing); on an empty key it runs the material picker for the parameter's type.
class UITrackLineKeyStringMaterial : public UITrackLineKeyString {
public:
    using UITrackLineKeyString::UITrackLineKeyString;
    // Clears a named key; on an empty key a chosen material is stored in the key and the engine
    // and message 197 posted, and a cancel changes nothing.
    void onDClick() override;
};
