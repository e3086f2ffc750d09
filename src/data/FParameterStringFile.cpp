#include "data/FParameterStringFile.h"

#include "anim/TrackTypes.h"

// The file of a nested track makes its keys on the nested track's behalf.
const FParameterTags& FParameterStringFile::tags() const
{
    static constexpr FParameterTags TAGS{"FParameterStringFile::create", "FParameterStringFile::createNew",
                                         "FParameterString::createKey", "FParameterStringFile::release",
                                         "FParameterStringFile::onDelete"};
    static constexpr FParameterTags NESTED_NAME{"FParameterStringFile::create", "FParameterStringFile::createNew",
                                                "FParameterTrack::createKeyName", "FParameterStringFile::release",
                                                "FParameterStringFile::onDelete"};
    return getParent() && getParent()->getType() == TRACK_PARAMETER_TRACK ? NESTED_NAME : TAGS;
}
