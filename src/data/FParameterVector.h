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
        auto* vector = static_cast<Engine*>(param);
        for (int i = 0; i < 3; ++i)
            adopt(make_component(track, vector->getComponent(i), AXES[i]), i);
        setOwner(track);
        return true;
    }

    Engine* engine_parameter() const { return static_cast<Engine*>(getTrackParameter()); }

protected:
    static constexpr const char* AXES[3] = {"X", "Y", "Z"};

    // Each axis row reads the vector's name with the axis beside it.
    void label(FParameterSingle* component, int index) const override
    {
        component->setRowText(getDisplayText());
        component->setRowSubText(AXES[index]);
    }

    // The type check logged when create is handed the wrong parameter.
    virtual const char* check_text() const = 0;
    // Has the document make the editor parameter of one axis.
    virtual FParameterSingle* make_component(FTrack* track, TrackParameter* axis, const char* name) const = 0;
};
