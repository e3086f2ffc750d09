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
    // Makes a key at t holding the engine's value there, or the bound object's current value where
    // the parameter has no key; null (logged) without an engine parameter.
    FKeyToggle* createKey(float t);
    using FParameterDiscrete::createKey;

protected:
    const FParameterTags& tags() const override;
    const char* check_text() const override { return "track && param && param->getType() == TRACK_PARAMETER_TOGGLE"; }
};
