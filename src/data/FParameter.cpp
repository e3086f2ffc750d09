#include "data/FParameter.h"

#include "anim/Track.h"
#include "anim/TrackParameter.h"
#include "data/AppData.h"
#include "data/FTrack.h"
#include "kit/jAllocator.h"
#include "kit/jLog.h"

bool FParameter::createNew(FTrack* track, const jString& name, bool addToTrack)
{
    if (!track || !track->getEngineTrack()) {
        jLog::error("%s:%s", tags().createNew, "track");
        return false;
    }
    TrackParameter* param = Track::CreateParameter(getType());
    if (!param) {
        jLog::error("%s:%s", tags().createNew, "param");
        return false;
    }
    if (addToTrack)
        track->getEngineTrack()->addParameter(param);
    if (create(track, param, name)) {
        AppData::get()->getEdits().made(param);
        return true;
    }
    if (param->getTrack())
        param->getTrack()->removeParameter(param);
    free_engine_parameter(param, tags().createNew);
    return false;
}

bool FParameter::accepts(const TrackParameter* param) const
{
    return param->getType() == getType();
}

bool FParameter::check_create(FTrack* track, const TrackParameter* param, const char* check) const
{
    if (getTrackParameter()) {
        jLog::error("%s:%s", tags().create, "already bound");
        return false;
    }
    if (track && param && accepts(param))
        return true;
    jLog::error("%s:%s", tags().create, check);
    return false;
}

bool FParameter::display_text(const TrackParameter* param, jString& text)
{
    const TrackReg* reg = Track::GetRegByName(param->getTypeName());
    if (!reg)
        return false;
    text = reg->isShowDisplayName() ? param->getDisplayName() : reg->getName();
    const int dot = text.rfind(".");
    if (dot >= 0 && dot + 1 < text.length())
        text = text.substr(dot + 1);
    return true;
}

void FParameter::touch() const
{
    AppData::get()->getEdits().touch(this);
}

void FParameter::free_engine_parameter(TrackParameter* param, const char* tag) const
{
    if (!param)
        return;
    param->release();
    jDelete(param, "src/data/FParameter", __LINE__, tag);
}

int FParameter::getNodeIndex() const
{
    if (m_parent)
        return m_parent->getNodeIndex();
    const TrackParameter* param = getTrackParameter();
    return param ? param->getNodeID() : -1;
}

jString FParameter::getNodeName() const
{
    if (m_parent)
        return m_parent->getNodeName();
    const TrackParameter* param = getTrackParameter();
    return param ? param->getNodeName() : jString();
}

jString FParameter::getTypeName() const
{
    if (m_parent)
        return m_parent->getTypeName();
    const TrackParameter* param = getTrackParameter();
    return param ? param->getTypeName() : jString();
}

bool FParameter::isForMaterial() const
{
    if (m_parent)
        return m_parent->getType() == 4 && m_parent->isForMaterial();
    const TrackParameter* param = getTrackParameter();
    return param && param->isForMaterial();
}

bool FParameter::isMaterialHierarchy() const
{
    if (m_parent)
        return m_parent->isMaterialHierarchy();
    const TrackParameter* param = getTrackParameter();
    return param && param->isMaterialHierarchy();
}

void FParameter::setMaterialHierarchy(bool hierarchy)
{
    if (m_parent) {
        m_parent->setMaterialHierarchy(hierarchy);
        return;
    }
    if (TrackParameter* param = getTrackParameter()) {
        touch();
        param->setMaterialHierarchy(hierarchy);
    }
}
