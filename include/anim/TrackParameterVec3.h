#pragma once

#include "anim/TrackParameterFloat.h"
#include "anim/TrackParameterVector.h"
#include "kit/jMath.h"

// A float vector property (position, rotation in Euler degrees, scale, a material vector) with
// three float components.
class TrackParameterVec3 : public TrackParameterVector<TrackParameterFloat, vec3> {
public:
    TrackParameterVec3() = default;
    ~TrackParameterVec3() override = default;

    TRACK_PARAMETER_TYPE getType() const override { return TRACK_PARAMETER_VEC3; }
};
