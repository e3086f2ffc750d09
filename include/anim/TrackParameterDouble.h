#pragma once

#include "anim/TrackKey.h"
#include "anim/TrackParameterCurve.h"

// A 64-bit float property (a global render setting, a component of a dvec3); times stay 32-bit.
class TrackParameterDouble : public TrackParameterCurve<TrackKeyDouble> {
public:
    TrackParameterDouble() = default;
    ~TrackParameterDouble() override = default;

    TRACK_PARAMETER_TYPE getType() const override { return TRACK_PARAMETER_DOUBLE; }
};
