#pragma once

#include "data/FParameterSingle.h"

// A parameter shown through component parameters that it makes and owns (the three axes of a
// vector, the file and time of a nested track). It has no keys, row, line or curve of its own; key
// and view requests go to the components.
class FParameterCompound : public FParameter {
public:
    void setColor(const vec4&) override {}
    void sortKeys() override;
    void release() override;
    void onDelete() override {}
    void applyKeys() override;
    void markDirty() override;
    void collectUI(jVector<UITrackRow*>& rows, jVector<UITrackLine*>& lines, jVector<UITrackCurve*>& curves) override;
    void retitle() override;
    TrackParameter* getTrackParameter() const override { return m_data; }

    int getNumComponents() const { return m_components.size(); }
    // Component i, or null when it failed to create.
    FParameterSingle* getComponent(int i) const { return m_components[i]; }

protected:
    // Binds the engine parameter and names it; false (logged as "<create>:<check>") on a wrong
    // parameter, false (logged as "<create>:r") when a named parameter's type is not registered.
    bool begin_create(FTrack* track, TrackParameter* param, const jString& name, const char* check);
    // Makes component i a child of this parameter: it keeps its engine parameter when released,
    // its row is indented and labelled under the compound's name, shows the switches it is to show
    // and its key line knows which axis it shows.
    void adopt(FParameterSingle* component, int index);
    // Writes the compound's name (the display text) and the component's own into component i's row.
    virtual void label(FParameterSingle* component, int index) const = 0;
    const jString& getDisplayText() const { return m_display; }

private:
    TrackParameter* m_data = nullptr;
    jVector<FParameterSingle*> m_components;
    jString m_display;
};
