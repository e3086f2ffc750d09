#include "data/FParameterStringMaterial.h"

const FParameterTags& FParameterStringMaterial::tags() const
{
    static constexpr FParameterTags TAGS{"FParameterStringMaterial::create", "FParameterStringMaterial::createNew",
                                         "FParameterString::createKey", "FParameterStringMaterial::release",
                                         "FParameterStringMaterial::onDelete"};
    return TAGS;
}
