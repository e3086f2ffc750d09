#include "data/FParameterDouble.h"

#include "anim/TrackParameterDVec3.h"

const FParameterTags& FParameterDouble::tags() const
{
    static constexpr FParameterTags TAGS{"FParameterDouble::create", "FParameterDouble::createNew",
                                         "FParameterDouble::createKey", "FParameterDouble::release",
                                         "FParameterDouble::onDelete"};
    return TAGS;
}

bool FParameterDouble::value_at(float t, double& value) const
{
    bool found = false;
    const FParameter* parent = getParent();
    if (!parent) {
        value = engine_parameter()->getTrackValue(t, found);
        if (!found)
            value = engine_parameter()->getValue();
        return true;
    }
    if (parent->getType() == 5) {
        const auto* vector = static_cast<const TrackParameterDVec3*>(parent->getTrackParameter());
        value = vector->getTrackValue(t, found)[getComponentIndex()];
        return true;
    }
    jLog::error("%s:%s", "FParameterDouble::createKey", "0");
    return false;
}
