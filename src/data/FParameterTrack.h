#pragma once

#include "data/FParameterCompound.h"

// A nested track: another animation file played inside this one. It shows two component rows:
// "Name", the file to play (a string-file parameter limited to ".anim" files), and "Time", the
// time inside the nested animation (a float parameter).
class FParameterTrack : public FParameterCompound {
public:
    int getType() const override { return 7; }
    bool create(FTrack* track, TrackParameter* param, const jString& name) override;

protected:
    const FParameterTags& tags() const override;
};
