#pragma once

#include "anim/TrackParameterVec3.h"
#include "data/FParameterFloat.h"
#include "data/FParameterVector.h"

// A float vector (a position, a direction) shown as three float rows.
class FParameterVec3 : public FParameterVector<TrackParameterVec3, FParameterFloat> {
public:
    int getType() const override { return 4; }

protected:
    const FParameterTags& tags() const override;
    const char* check_text() const override { return "track && param && param->getType() == TRACK_PARAMETER_VEC3"; }
    FParameterSingle* make_component(FTrack* track, TrackParameter* axis, const char* name) const override
    {
        return track->createParameterFloat(axis, name);
    }
};
