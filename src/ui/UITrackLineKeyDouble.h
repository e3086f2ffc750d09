#pragma once

#include "ui/UITrackLineKey.h"

// The mark of a double key: a grey pentagon; the value is edited in the curve view.
class UITrackLineKeyDouble : public UITrackLineKey {
public:
    using UITrackLineKey::UITrackLineKey;
    vec4 getColor() const override { return vec4(0.4f, 0.4f, 0.4f, 1.0f); }
};
