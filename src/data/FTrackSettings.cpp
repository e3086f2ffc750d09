#include "data/FTrackSettings.h"

#include "anim/Track.h"

FTrackSettings FTrackSettings::of(const Track& track)
{
    return {track.getBeginTime(), track.getEndTime(), track.getFrameRate(), track.isLoop(), track.isSnapping()};
}

void FTrackSettings::applyTo(Track& track) const
{
    track.setBeginTime(begin);
    track.setEndTime(end);
    track.setFrameRate(frameRate);
    track.setLoop(loop);
    track.setSnapping(snapping);
}
