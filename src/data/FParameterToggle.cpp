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
    bool found = false;
    const int value = engine_parameter()->getTrackValue(t, found);
    return found ? value != 0 : engine_parameter()->getValue();
}
