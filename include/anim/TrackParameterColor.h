#pragma once

#include "anim/TrackCurve.h"
#include "anim/TrackKey.h"
#include "anim/TrackParameterKeyed.h"
#include "kit/jMath.h"

// A colour property (red, green, blue, alpha). Between keys each channel is interpolated linearly.
// The keys are compiled into one linear float curve per channel, so that a track plays the four
// channels with its float curves (TrackPlayback) and the parameter's own evaluation gives exactly
// what was played.
class TrackParameterColor : public TrackParameterKeyed<TrackKeyColor> {
public:
    static constexpr int CHANNELS = 4;

    TrackParameterColor() = default;
    ~TrackParameterColor() override = default;

    TRACK_PARAMETER_TYPE getType() const override { return TRACK_PARAMETER_COLOR; }

    // Returns the colour at t; found is false (and the result zero) only when there are no keys.
    vec4 getTrackValue(float t, bool& found) const;
    // Returns the live value: the bound property's current colour, else the colour last played.
    vec4 getValue() const;
    // Appends a key record; the caller keeps the array sorted by time.
    void appendKey(float time, const vec4& color);
    using TrackParameterKeyed<TrackKeyColor>::appendKey;
    // Returns the compiled curve of channel c (0 red, 1 green, 2 blue, 3 alpha), compiling the
    // channels first when the keys changed. Compiling again (after any change of the keys) moves it.
    const TrackCurveData<float>& getChannel(int c) const;

    void update() override { compile(); }
    void release() override;
    void apply(float t) override;

private:
    // Track playback keeps the colour played last while it plays the channels, and hands it back.
    friend class TrackPlayback;

    // Compiling moves the channels' segments, so the track's playback (which reads them) is rebuilt.
    void compile() const;

    mutable TrackCurveData<float> m_channels[CHANNELS];
    vec4 m_value;
};
