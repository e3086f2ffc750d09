#include "data/FParameterColor.h"

const FParameterTags& FParameterColor::tags() const
{
    static constexpr FParameterTags TAGS{"FParameterColor::create", "FParameterColor::createNew",
                                         "FParameterColor::createKey", "FParameterColor::release",
                                         "FParameterColor::onDelete"};
    return TAGS;
}

FKeyColor* FParameterColor::createKey(float t)
{
    if (!engine_parameter()) {
        jLog::error("%s:%s", tags().createKey, "m_data");
        return nullptr;
    }
    return createKey(t, engine_parameter()->getValue());
}
