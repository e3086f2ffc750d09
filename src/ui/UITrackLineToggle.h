#pragma once

#include "ui/UITrackLineLabeled.h"

// The key line of a toggle parameter.
class UITrackLineToggle : public UITrackLineLabeled {
protected:
    const char* text_function() const override { return "UITrackLineToggle::getText"; }
};
