#include "data/FParameterStringFile.h"

const FParameterTags& FParameterStringFile::tags() const
{
    static constexpr FParameterTags TAGS{"FParameterStringFile::create", "FParameterStringFile::createNew",
                                         "FParameterString::createKey", "FParameterStringFile::release",
                                         "FParameterStringFile::onDelete"};
    return TAGS;
}
