#include "data/FParameterToggle.h"

const FParameterTags& FParameterToggle::tags() const
{
    static constexpr FParameterTags TAGS{"FParameterToggle::create", "FParameterToggle::createNew",
                                         "FParameterToggle::createKey", "FParameterToggle::release",
                                         "FParameterToggle::onDelete"};
    return TAGS;
}

bool FParameterToggle::value_at(float t) const
{
    return played_value(t);
}

bool FParameterToggle::value_there(float t, bool& value) const
{
    value = value_at(t);
    return true;
}
