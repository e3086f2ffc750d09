#pragma once

#include "anim/TrackParameterFloat.h"
#include "data/FKeyFloat.h"
#include "data/FParameterScalar.h"
#include "ui/UITrackLineFloat.h"
#include "ui/UITrackLineKeyFloat.h"

// A float parameter: a top-level one, a component of a vec3, or the time of a nested track.
class FParameterFloat : public FParameterScalar<TrackParameterFloat, FKeyFloat, UITrackLineFloat, UITrackLineKeyFloat> {
public:
    int getType() const override { return 1; }

protected:
    const FParameterTags& tags() const override;
    const char* check_text() const override { return "track && param && param->getType() == TRACK_PARAMETER_FLOAT"; }
    bool starts_hello_world() const override { return false; }
    // A top-level parameter reads its curve (or its current value off the curve); a vec3
    // component reads its element of the vector; the time of a nested track reads 0 where the
    // nested track has a time there and the returned time elsewhere.
    bool value_at(float t, float& value) const override;
};
