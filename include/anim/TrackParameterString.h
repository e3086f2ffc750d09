#pragma once

#include "anim/TrackKey.h"
#include "anim/TrackParameterKeyed.h"

// A text property: a file path (kind 8, such as a mesh or a nested track) or a material name
// (kind 9). A key holds until the next one; before the first key the first key's text.
class TrackParameterString : public TrackParameterKeyed<TrackKeyString> {
public:
    // kind is TRACK_PARAMETER_STRING_FILE or TRACK_PARAMETER_STRING_MATERIAL; a registered type
    // name of the other string kind overrides it.
    explicit TrackParameterString(TRACK_PARAMETER_TYPE kind = TRACK_PARAMETER_STRING_FILE);
    ~TrackParameterString() override = default;

    TRACK_PARAMETER_TYPE getType() const override;

    // Returns the text at t; found is false (and the text empty) only when there are no keys.
    const jString& getTrackValue(float t, bool& found) const;
    // Appends a key record; the caller keeps the array sorted by time.
    void appendKey(float time, const jString& text);
    using TrackParameterKeyed<TrackKeyString>::appendKey;

    void apply(float t) override;

private:
    TRACK_PARAMETER_TYPE m_kind;
};
