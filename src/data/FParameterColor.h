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
protected:
    // A new key takes the parameter's current colour.
    vec4 value_at(float t) const override;
    // A key made by a double click takes the colour the engine evaluates there.
    bool value_there(float t, vec4& value) const override;
    const FParameterTags& tags() const override;
    const char* check_text() const override { return "track && param && param->getType() == TRACK_PARAMETER_COLOR"; }
};
