#pragma once

#include "anim/TrackParameterDouble.h"
#include "data/FKeyDouble.h"
#include "data/FParameterScalar.h"
#include "ui/UITrackLineDouble.h"
#include "ui/UITrackLineKeyDouble.h"

// A double parameter: a top-level one or a component of a dvec3.
class FParameterDouble
    : public FParameterScalar<TrackParameterDouble, FKeyDouble, UITrackLineDouble, UITrackLineKeyDouble> {
public:
    int getType() const override { return 2; }

protected:
    const FParameterTags& tags() const override;
    const char* check_text() const override { return "track && param && param->getType() == TRACK_PARAMETER_DOUBLE"; }
    bool starts_hello_world() const override { return true; }
    // A top-level parameter reads its curve, or the bound object's current value off the curve; a
    // dvec3 component reads its element of the vector the same way.
    bool value_at(float t, double& value) const override;
};
