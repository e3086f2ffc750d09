#pragma once

#include "anim/TrackParameterDVec3.h"
#include "data/FParameterDouble.h"
#include "data/FParameterVector.h"

// A double vector (a position in a large world) shown as three double rows. It carries one plain
// flag of its own, off at first, for the views to use.
class FParameterDVec3 : public FParameterVector<TrackParameterDVec3, FParameterDouble> {
public:
    int getType() const override { return 5; }
    virtual bool getFlag() const { return m_flag; }
    virtual void setFlag(bool flag) { m_flag = flag; }

protected:
    const FParameterTags& tags() const override;
    const char* check_text() const override { return "track && param && param->getType() == TRACK_PARAMETER_DVEC3"; }
    FParameterSingle* make_component(FTrack* track, TrackParameter* axis, const char* name) const override
    {
        return track->createParameterDouble(axis, name);
    }

private:
    bool m_flag = false;
};
