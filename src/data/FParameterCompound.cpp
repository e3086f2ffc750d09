#include "data/FParameterCompound.h"

#include "anim/Track.h"
#include "anim/TrackParameter.h"
#include "data/FTrack.h"
#include "kit/jAllocator.h"
#include "kit/jLog.h"
#include "ui/UITrackLine.h"
#include "ui/UITrackRow.h"

namespace {
// Pixels a component's row band starts right of a top-level row's.
constexpr int COMPONENT_INDENT = 8;
} // namespace

bool FParameterCompound::begin_create(FTrack* track, TrackParameter* param, const jString& name, const char* check)
{
    if (!check_create(track, param, check))
        return false;
    m_data = param;
    param->setName(name);
    if (!name.empty() && !param->getTypeName().empty() && !display_text(param, m_display)) {
        jLog::error("%s:%s", tags().create, "r");
        return false;
    }
    if (m_display.empty())
        m_display = name;
    return true;
}

void FParameterCompound::adopt(FParameterSingle* component, int index)
{
    m_components.append(component);
    if (!component)
        return;
    component->setDetachOnRelease(false);
    component->setComponentIndex(index);
    component->setParent(this);
    label(component, index);
    component->showSwitches();
    if (component->getRow())
        component->getRow()->setIndent(COMPONENT_INDENT);
    if (component->getLine())
        component->getLine()->setComponent(index);
}

void FParameterCompound::retitle()
{
    if (m_data->getName().empty() || !display_text(m_data, m_display))
        return;
    for (int i = 0; i < m_components.size(); ++i)
        if (m_components[i])
            label(m_components[i], i);
}

void FParameterCompound::sortKeys()
{
    for (FParameterSingle* component : m_components)
        if (component)
            component->sortKeys();
}

void FParameterCompound::applyKeys()
{
    for (FParameterSingle* component : m_components)
        if (component)
            component->applyKeys();
}

void FParameterCompound::markDirty()
{
    for (FParameterSingle* component : m_components)
        if (component)
            component->markDirty();
}

void FParameterCompound::collectUI(jVector<UITrackRow*>& rows, jVector<UITrackLine*>& lines,
                                   jVector<UITrackCurve*>& curves)
{
    for (FParameterSingle* component : m_components)
        if (component)
            component->collectUI(rows, lines, curves);
}

void FParameterCompound::release()
{
    for (FParameterSingle* component : m_components) {
        if (!component)
            continue;
        component->release();
        jDelete(component, "src/data/FParameterCompound", __LINE__, tags().release);
    }
    m_components.release();
    FTrack* owner = getOwner();
    if (owner && isDetachOnRelease() && m_data) {
        owner->getEngineTrack()->removeParameter(m_data);
        free_engine_parameter(m_data, tags().release);
    }
    m_data = nullptr;
    if (owner)
        owner->removeParameter(this);
    setOwner(nullptr);
}
