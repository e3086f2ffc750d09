#pragma once

#include "anim/TrackParameterFloat.h"
#include "anim/TrackParameterString.h"

// Plays another track inside this one: a file component ("Name", the .anim path relative to the
// data folder, keyed like a string) and a time component ("Time", the time inside the nested track,
// keyed like a float). Nested tracks are loaded once per path and shared through the track that
// holds this parameter.
class TrackParameterTrack : public TrackParameter {
public:
    TrackParameterTrack();
    ~TrackParameterTrack() override = default;

    TRACK_PARAMETER_TYPE getType() const override { return TRACK_PARAMETER_TRACK; }

    // The file component and the time component.
    TrackParameterString* getNameParameter() { return &m_file; }
    const TrackParameterString* getNameParameter() const { return &m_file; }
    TrackParameterFloat* getTimeParameter() { return &m_time; }
    const TrackParameterFloat* getTimeParameter() const { return &m_time; }

    // Returns the nested track's time at t; found is false (and the result 0) when the time
    // component has no keys.
    float getTrackValueTime(float t, bool& found) const;
    // Returns the nested file at t; found is false (and the text empty) when it has no keys.
    const jString& getTrackValueName(float t, bool& found) const;

    int getNumKeys() const override;
    void release() override;
    void update() override;
    // "file": string key records (a path inside the engine's data folder is written relative to
    // it, others as they are); "time": float key records.
    void readBody(TrackReader& reader, const Package* object) override;
    void writeBody(Package* object) const override;
    // Sets the nested track named at t to the evaluated time (t itself when the time has no keys).
    // A track that would play itself is refused with an error, once per file.
    void apply(float t) override;

private:
    TrackParameterString m_file;
    TrackParameterFloat m_time;
    jString m_refused;
};
