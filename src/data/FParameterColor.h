#pragma once

#include "anim/TrackParameterColor.h"
#include "data/FKeyColor.h"
#include "data/FParameterDiscrete.h"
#include "ui/UITrackLineColor.h"
#include "ui/UITrackLineKeyColor.h"

// A colour parameter: keys holding a whole colour, shown as coloured marks over a strip of the
// animated colour.
class FParameterColor : public FParameterDiscrete<TrackParameterColor, FKeyColor, UITrackLineColor, UITrackLineKeyColor> {
public:
    int getType() const override { return 3; }
    // Makes a key at t holding the parameter's current colour; null (logged) without an engine
    // parameter.
    FKeyColor* createKey(float t);
    using FParameterDiscrete::createKey;

protected:
    const FParameterTags& tags() const override;
    const char* check_text() const override { return "track && param && param->getType() == TRACK_PARAMETER_COLOR"; }
};
