#pragma once

#include "anim/TrackCurve.h"
#include "anim/TrackKey.h"
#include "anim/TrackParameterKeyed.h"
#include "kit/jMath.h"

// A colour property (red, green, blue, alpha). Between keys each channel is interpolated linearly.
// Update compiles the keys into one linear float curve per channel, so that a track plays the four
// channels with its float curves (TrackPlayback) and the parameter's own evaluation gives exactly
// what was played.
class TrackParameterColor : public TrackParameterKeyed<TrackKeyColor> {
public:
    static constexpr int CHANNELS = 4;

    TrackParameterColor() = default;
    ~TrackParameterColor() override = default;

    TRACK_PARAMETER_TYPE getType() const override { return TRACK_PARAMETER_COLOR; }

    // Returns the colour at t of the channels compiled by the last update; found is false (and the
    // result zero) only when there are no keys.
    vec4 getTrackValue(float t, bool& found) const;
    // Returns the live value: the bound property's current colour, else the colour last played.
    vec4 getValue() const;
    // Appends a key record; the caller keeps the array sorted by time and calls update.
    void appendKey(float time, const vec4& color);
    using TrackParameterKeyed<TrackKeyColor>::appendKey;
    // Returns the curve of channel c (0 red, 1 green, 2 blue, 3 alpha) compiled by the last update;
    // the next update moves it.
    const TrackCurveData<float>& getChannel(int c) const;

    // Compiles the channels. Compiling moves their segments, so the track's playback (which reads
    // them) is rebuilt.
    void update() override;
    void release() override;
    void apply(float t) override;

private:
    // Track playback keeps the colour played last while it plays the channels, and hands it back.
    friend class TrackPlayback;

    TrackCurveData<float> m_channels[CHANNELS];
    vec4 m_value;
};
