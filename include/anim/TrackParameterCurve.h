#pragma once

#include "anim/TrackCurve.h"
#include "anim/TrackCurveCursor.h"
#include "anim/TrackParameterKeyed.h"

// A float or double parameter: keys with tangents and a key type, evaluated as TrackCurve says.
// The keys are compiled into curve segments on update, or at the first evaluation after they
// changed. Playback asks for times that stay inside one segment for several frames, so a cursor
// inside the parameter keeps that segment ready for sampling: while the time stays in it, a sample
// reads nothing but the parameter itself.
template <class Key>
class TrackParameterCurve : public TrackParameterKeyed<Key> {
public:
    using Value = decltype(Key::value);

    TrackParameterCurve() { m_play.attach(&m_curve); }

    // Returns the value at t; found is false (and the result 0) only when there are no keys.
    Value getTrackValue(float t, bool& found) const
    {
        if (m_play.holds(t)) {
            found = true;
            return m_play.sample(t);
        }
        return lookup(t, found);
    }

    // Returns the compiled curve, compiling it first when the keys changed. Compiling again (after
    // any change of the keys) moves it.
    const TrackCurveData<Value>& getCurve() const
    {
        if (this->m_changed)
            compile();
        return m_curve;
    }

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

    // Recomputes the tangents of smooth keys from their neighbours and compiles the curve.
    void update() override { compile(); }

    void release() override
    {
        TrackParameterKeyed<Key>::release();
        m_curve.release();
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
        found = !this->m_keys.empty();
        if (!found)
            return 0;
        getCurve();
        m_play.seek(t);
        return m_play.sample(t);
    }

    // Compiling moves the segments, so the track's playback (which reads them) is rebuilt.
    void compile() const
    {
        auto& keys = const_cast<jVector<Key>&>(this->m_keys);
        TrackCurve::smoothTangents(keys.data(), keys.size());
        TrackCurve::compile(keys.data(), keys.size(), m_curve);
        this->m_changed = false;
        m_play.reset();
        this->changed();
    }

    mutable TrackCurveCursor<Value> m_play;
    mutable TrackCurveData<Value> m_curve;
    Value m_value = 0;
};
