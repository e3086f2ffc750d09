#include "data/FParameterTrack.h"

#include "anim/TrackParameterTrack.h"
#include "data/FParameterFloat.h"
#include "data/FParameterStringFile.h"
#include "data/FTrack.h"

const FParameterTags& FParameterTrack::tags() const
{
    static constexpr FParameterTags TAGS{"FParameterTrack::create", "FParameterTrack::createNew",
                                         "FParameterTrack::createKey", "FParameterTrack::release",
                                         "FParameterTrack::onDelete"};
    return TAGS;
}

bool FParameterTrack::create(FTrack* track, TrackParameter* param, const jString& name)
{
    if (!begin_create(track, param, name, "track && param && param->getType() == TRACK_PARAMETER_TRACK"))
        return false;
    auto* nested = static_cast<TrackParameterTrack*>(param);
    FParameterStringFile* file = track->createParameterStringFile(nested->getNameParameter(), "Name");
    if (file)
        file->setFilter(".anim");
    adopt(file, 0);
    adopt(track->createParameterFloat(nested->getTimeParameter(), "Time"), 1);
    setOwner(track);
    return true;
}

void FParameterTrack::label(FParameterSingle* component, int index) const
{
    component->setRowText(index == 0 ? "Name" : "Time");
    component->setRowSubText(getDisplayText().empty() ? jString("Anim") : getDisplayText());
}
