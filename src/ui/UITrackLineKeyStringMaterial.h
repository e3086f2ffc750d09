#pragma once

#include "ui/UITrackLineKeyString.h"

// The mark of a material key. A double click on a key that names a material clears it (the key
// then sets nothing); on an empty key it asks for a material.
class UITrackLineKeyStringMaterial : public UITrackLineKeyString {
public:
    using UITrackLineKeyString::UITrackLineKeyString;
    void onDClick() override;
};
