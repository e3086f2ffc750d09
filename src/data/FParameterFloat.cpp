#include "data/FParameterFloat.h"

#include "anim/TrackParameterTrack.h"
#include "anim/TrackParameterVec3.h"

// The time of a nested track makes its keys on the nested track's behalf.
const FParameterTags& FParameterFloat::tags() const
{
    static constexpr FParameterTags TAGS{"FParameterFloat::create", "FParameterFloat::createNew",
                                         "FParameterFloat::createKey", "FParameterFloat::release",
                                         "FParameterFloat::onDelete"};
    static constexpr FParameterTags NESTED_TIME{"FParameterFloat::create", "FParameterFloat::createNew",
                                                "FParameterTrack::createKeyTime", "FParameterFloat::release",
                                                "FParameterFloat::onDelete"};
    return getParent() && getParent()->getType() == TRACK_PARAMETER_TRACK ? NESTED_TIME : TAGS;
}

bool FParameterFloat::value_at(float t, float& value) const
{
    const FParameter* parent = getParent();
    if (!parent) {
        value = own_value(t);
        return true;
    }
    if (parent->getType() == TRACK_PARAMETER_VEC3) {
        value = axis_value<TrackParameterVec3>(t);
        return true;
    }
    if (parent->getType() == TRACK_PARAMETER_TRACK) {
        bool found = false;
        const auto* nested = static_cast<const TrackParameterTrack*>(parent->getTrackParameter());
        const float time = nested->getTrackValueTime(t, found);
        value = found ? 0.0f : time; // kept as the nested-track editing has always behaved
        return true;
    }
    jLog::error("%s:%s", "FParameterFloat::createKey", "0");
    return false;
}
