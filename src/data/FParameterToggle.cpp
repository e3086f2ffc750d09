#include "data/FParameterToggle.h"

const FParameterTags& FParameterToggle::tags() const
{
    static constexpr FParameterTags TAGS{"FParameterToggle::create", "FParameterToggle::createNew",
                                         "FParameterToggle::createKey", "FParameterToggle::release",
                                         "FParameterToggle::onDelete"};
    return TAGS;
}

FKeyToggle* FParameterToggle::createKey(float t)
{
    if (!engine_parameter()) {
        jLog::error("%s:%s", tags().createKey, "m_data");
        return nullptr;
    }
    bool found = false;
    const int value = engine_parameter()->getTrackValue(t, found);
    return createKey(t, found ? value != 0 : engine_parameter()->getValue());
}
