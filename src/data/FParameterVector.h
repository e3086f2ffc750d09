#pragma once

#include "data/FParameterCompound.h"
#include "data/FTrack.h"

// A vector parameter animated per axis: three scalar component parameters named "X", "Y" and "Z",
// each with its own keys, row, key line and curve. Engine is the engine vector parameter and
// Component the editor parameter of one axis.
template <class Engine, class Component>
class FParameterVector : public FParameterCompound {
public:
    bool create(FTrack* track, TrackParameter* param, const jString& name) override
    {
        if (!begin_create(track, param, name, check_text()))
            return false;
        static const char* const AXES[3] = {"X", "Y", "Z"};
        auto* vector = static_cast<Engine*>(param);
        for (int i = 0; i < 3; ++i) {
            FParameterSingle* component = make_component(track, vector->getComponent(i), AXES[i]);
            adopt(component, i, getDisplayText(), AXES[i]);
        }
        setOwner(track);
        return true;
    }

    Engine* engine_parameter() const { return static_cast<Engine*>(getTrackParameter()); }

protected:
    // The type check logged when create is handed the wrong parameter.
    virtual const char* check_text() const = 0;
    // Has the document make the editor parameter of one axis.
    virtual FParameterSingle* make_component(FTrack* track, TrackParameter* axis, const char* name) const = 0;
};
