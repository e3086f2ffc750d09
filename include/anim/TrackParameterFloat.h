#pragma once

#include "anim/TrackKey.h"
#include "anim/TrackParameterCurve.h"

// A 32-bit float property (a light's intensity, a camera's field of view, a material value, a
// component of a vec3, the time of a nested track).
class TrackParameterFloat : public TrackParameterCurve<TrackKeyFloat> {
public:
    TrackParameterFloat() = default;
    ~TrackParameterFloat() override = default;

    TRACK_PARAMETER_TYPE getType() const override { return TRACK_PARAMETER_FLOAT; }
};
