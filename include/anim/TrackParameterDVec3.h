#pragma once

#include "anim/TrackParameterDouble.h"
#include "anim/TrackParameterVector.h"
#include "kit/jMath.h"

// A double vector property (a node's absolute world position) with three double components.
class TrackParameterDVec3 : public TrackParameterVector<TrackParameterDouble, dvec3> {
public:
    TrackParameterDVec3() = default;
    ~TrackParameterDVec3() override = default;

    TRACK_PARAMETER_TYPE getType() const override { return TRACK_PARAMETER_DVEC3; }
};
