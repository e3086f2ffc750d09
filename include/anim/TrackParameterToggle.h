#pragma once

#include "anim/TrackKey.h"
#include "anim/TrackParameterKeyed.h"

// An on/off property. A key holds until the next one; before the first key the first key's value.
class TrackParameterToggle : public TrackParameterKeyed<TrackKeyToggle> {
public:
    TrackParameterToggle() = default;
    ~TrackParameterToggle() override = default;

    TRACK_PARAMETER_TYPE getType() const override { return TRACK_PARAMETER_TOGGLE; }

    // Returns 1 or 0 at t; found is false (and the result 0) only when there are no keys.
    int getTrackValue(float t, bool& found) const;
    // Returns the live value: the bound property's current state, else the state last played.
    bool getValue() const;
    // Appends a key record; the caller keeps the array sorted by time.
    void appendKey(float time, bool value);
    using TrackParameterKeyed<TrackKeyToggle>::appendKey;

    void apply(float t) override;

private:
    bool m_value = false;
};
