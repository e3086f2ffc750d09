#include "data/FParameterFloat.h"

#include "anim/TrackParameterTrack.h"
#include "anim/TrackParameterVec3.h"

const FParameterTags& FParameterFloat::tags() const
{
    static constexpr FParameterTags TAGS{"FParameterFloat::create", "FParameterFloat::createNew",
                                         "FParameterFloat::createKey", "FParameterFloat::release",
                                         "FParameterFloat::onDelete"};
    return TAGS;
}

bool FParameterFloat::value_at(float t, float& value) const
{
    bool found = false;
    const FParameter* parent = getParent();
    if (!parent) {
        value = engine_parameter()->getTrackValue(t, found);
        if (!found)
            value = engine_parameter()->getValue();
        return true;
    }
    if (parent->getType() == 4) {
        const auto* vector = static_cast<const TrackParameterVec3*>(parent->getTrackParameter());
        value = vector->getTrackValue(t, found)[getComponentIndex()];
        return true;
    }
    if (parent->getType() == 7) {
        const auto* nested = static_cast<const TrackParameterTrack*>(parent->getTrackParameter());
        const float time = nested->getTrackValueTime(t, found);
        value = found ? 0.0f : time; // kept as the nested-track editing has always behaved
        return true;
    }
    jLog::error("%s:%s", "FParameterFloat::createKey", "0");
    return false;
}
