#pragma once

#include "ui/UITrackLineLabeled.h"

// The key line of a string parameter.
class UITrackLineString : public UITrackLineLabeled {
protected:
    const char* text_function() const override { return "UITrackLineString::getText"; }
};
