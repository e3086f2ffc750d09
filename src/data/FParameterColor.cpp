#include "data/FParameterColor.h"

const FParameterTags& FParameterColor::tags() const
{
    static constexpr FParameterTags TAGS{"FParameterColor::create", "FParameterColor::createNew",
                                         "FParameterColor::createKey", "FParameterColor::release",
                                         "FParameterColor::onDelete"};
    return TAGS;
}

vec4 FParameterColor::value_at(float) const
{
    return engine_parameter()->getValue();
}

bool FParameterColor::value_there(float t, vec4& value) const
{
    value = played_value(t);
    return true;
}
