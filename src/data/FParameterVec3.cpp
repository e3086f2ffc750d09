#include "data/FParameterVec3.h"

const FParameterTags& FParameterVec3::tags() const
{
    static constexpr FParameterTags TAGS{"FParameterVec3::create", "FParameterVec3::createNew",
                                         "FParameterVec3::createKey", "FParameterVec3::release",
                                         "FParameterVec3::onDelete"};
    return TAGS;
}
