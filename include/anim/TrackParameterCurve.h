#pragma once

#include "anim/TrackCurve.h"
#include "anim/TrackCurveCursor.h"
#include "anim/TrackParameterKeyed.h"

// A float or double parameter: keys with tangents and a key type, evaluated as TrackCurve says.
// The keys are compiled into curve segments by update, which every edit of the keys is followed by:
// evaluation reads the curve as the last update left it. Playback asks for times that stay inside
// one segment for several frames, so a cursor inside the parameter keeps that segment ready for
// sampling: while the time stays in it, a sample reads nothing but the parameter itself.
template <class Key>
class TrackParameterCurve : public TrackParameterKeyed<Key> {
public:
    using Value = decltype(Key::value);

    TrackParameterCurve() { m_play.attach(&m_curve); }

    // Returns the value at t of the curve compiled by the last update; found is false (and the
    // result 0) only when there are no keys.
    Value getTrackValue(float t, bool& found) const
    {
        if (m_play.holds(t)) {
            found = true;
            return m_play.sample(t);
        }
        return lookup(t, found);
    }

    // Returns the curve compiled by the last update; the next update moves it.
    const TrackCurveData<Value>& getCurve() const { return m_curve; }
    // Counts the compilations (and releases) of the curve: what was drawn from it at one count
    // still shows it while the count stays.
    unsigned getCurveRevision() const { return m_revision; }

    // Returns the live value: the bound property's current value, else the value last played.
    Value getValue() const
    {
        TrackValue current;
        if (this->readTarget(current))
            return static_cast<Value>(current.n[0]);
        return m_value;
    }

    // Appends a key record; the caller keeps the array sorted by time and calls update.
    void appendKey(float time, Value value, const vec4& tangents, int type)
    {
        Key key;
        key.time = time;
        key.value = value;
        key.tangents = tangents;
        key.type = type;
        TrackParameterKeyed<Key>::appendKey(key);
    }
    using TrackParameterKeyed<Key>::appendKey;

    // Recomputes the tangents of smooth keys from their neighbours and compiles the curve. Compiling
    // moves the segments, so the track's playback (which reads them) is rebuilt.
    void update() override
    {
        TrackCurve::smoothTangents(this->m_keys.data(), this->m_keys.size());
        TrackCurve::compile(this->m_keys.data(), this->m_keys.size(), m_curve);
        ++m_revision;
        m_play.reset();
        this->changed();
    }

    void release() override
    {
        TrackParameterKeyed<Key>::release();
        m_curve.release();
        ++m_revision;
    }

    void apply(float t) override
    {
        bool found = false;
        Value v = getTrackValue(t, found);
        if (!found)
            return;
        m_value = v;
        TrackValue out;
        out.n[0] = static_cast<double>(v);
        this->writeTarget(out);
    }

protected:
    void keys_changed() override
    {
        TrackParameterKeyed<Key>::keys_changed();
        m_play.reset();
    }

private:
    // Track playback keeps the value played last while it plays the curve, and hands it back.
    friend class TrackPlayback;

    // Finds the segment that holds t and samples it.
    Value lookup(float t, bool& found) const
    {
        found = !m_curve.times.empty();
        if (!found)
            return 0;
        m_play.seek(t);
        return m_play.sample(t);
    }

    mutable TrackCurveCursor<Value> m_play;
    TrackCurveData<Value> m_curve;
    Value m_value = 0;
    unsigned m_revision = 0;
};
