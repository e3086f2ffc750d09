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
    const FParameter* parent = getParent();
    if (!parent) {
        value = own_value(t);
        return true;
    }
    if (parent->getType() == TRACK_PARAMETER_DVEC3) {
        value = axis_value<TrackParameterDVec3>(t);
        return true;
    }
    jLog::error("%s:%s", "FParameterDouble::createKey", "0");
    return false;
}
