#pragma once

#include "anim/TrackParameterString.h"
#include "data/FKeyString.h"
#include "data/FParameterDiscrete.h"
#include "ui/UITrackLineKeyString.h"
#include "ui/UITrackLineString.h"

// A string parameter: keys holding a file path or a material name. Either engine string kind can
// stand behind either editor kind; the kinds differ in how the user picks a key's text.
template <class Mark>
class FParameterString : public FParameterDiscrete<TrackParameterString, FKeyString, UITrackLineString, Mark> {
protected:
    bool accepts(const TrackParameter* param) const override
    {
        return param->getType() == TRACK_PARAMETER_STRING_FILE || param->getType() == TRACK_PARAMETER_STRING_MATERIAL;
    }
    const char* check_text() const override
    {
        return "track && param && (param->getType() == TRACK_PARAMETER_STRING_FILE|| param->getType() == "
               "TRACK_PARAMETER_STRING_MATERIAL)";
    }
};
