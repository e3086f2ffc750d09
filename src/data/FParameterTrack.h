#pragma once

#include "data/FParameterCompound.h"

// A nested track: another animation file played inside this one. It shows two component rows:
// "Name", the file to play (a string-file parameter limited to ".anim" files), and "Time", the
// time inside the nested animation (a float parameter). Both rows show and set the nested track's
// own switches: its parts' switches are neither saved nor read by playback.
class FParameterTrack : public FParameterCompound {
public:
    int getType() const override { return 7; }
    bool create(FTrack* track, TrackParameter* param, const jString& name) override;
    TrackParameter* getSharedSwitches() const override { return getTrackParameter(); }

protected:
    const FParameterTags& tags() const override;
    // "Name" or "Time", with the nested track's name ("Anim" when it has none) beside it.
    void label(FParameterSingle* component, int index) const override;
};
