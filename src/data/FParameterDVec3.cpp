#include "data/FParameterDVec3.h"

const FParameterTags& FParameterDVec3::tags() const
{
    static constexpr FParameterTags TAGS{"FParameterDVec3::create", "FParameterDVec3::createNew",
                                         "FParameterDVec3::createKey", "FParameterDVec3::release",
                                         "FParameterDVec3::onDelete"};
    return TAGS;
}
