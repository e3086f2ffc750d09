#pragma once

class Track;

// The settings of a track that are not its parameters: the limits, the loop switch, the frame
// rate and the snapping switch, as a step of the history records them before and after.
struct FTrackSettings {
    float begin = 0.0f;
    float end = 0.0f;
    float frameRate = 0.0f;
    bool loop = false;
    bool snapping = false;

    // The settings track has now.
    static FTrackSettings of(const Track& track);
    // Gives track these settings.
    void applyTo(Track& track) const;
    bool operator==(const FTrackSettings&) const = default;
};
