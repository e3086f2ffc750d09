#pragma once

#include "anim/TrackKey.h"
#include "anim/TrackParameterKeyed.h"
#include "kit/jMath.h"

// A colour property (red, green, blue, alpha). Between keys each channel is interpolated linearly.
class TrackParameterColor : public TrackParameterKeyed<TrackKeyColor> {
public:
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

    void apply(float t) override;

private:
    vec4 m_value;
};
