#pragma once

#include "anim/TrackParameterToggle.h"
#include "data/FKeyToggle.h"
#include "data/FParameterDiscrete.h"
#include "ui/UITrackLineKeyToggle.h"
#include "ui/UITrackLineToggle.h"

// A switch parameter: keys turning a property on or off.
class FParameterToggle
    : public FParameterDiscrete<TrackParameterToggle, FKeyToggle, UITrackLineToggle, UITrackLineKeyToggle> {
public:
    int getType() const override { return 0; }
protected:
    // A new key takes the engine's value at t, or the bound object's current value where the
    // parameter has no key.
    bool value_at(float t) const override;
    // A key made by a double click takes the same value.
    bool value_there(float t, bool& value) const override;
    const FParameterTags& tags() const override;
    const char* check_text() const override { return "track && param && param->getType() == TRACK_PARAMETER_TOGGLE"; }
};
