#pragma once

#include "anim/TrackCurve.h"
#include "anim/TrackParameterKeyed.h"

// A float or double parameter: keys with tangents and a key type, evaluated as TrackCurve says.
// The keys are compiled into curve segments on update, or at the first evaluation after they
// changed.
template <class Key>
class TrackParameterCurve : public TrackParameterKeyed<Key> {
public:
    using Value = decltype(Key::value);

    // Returns the value at t; found is false (and the result 0) only when there are no keys.
    Value getTrackValue(float t, bool& found) const
    {
        found = !this->m_keys.empty();
        if (!found)
            return 0;
        if (this->m_changed)
            compile();
        return TrackCurve::evaluate(m_times.data(), m_segments.data(), m_times.size(), t, this->m_cursor);
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
        m_times.release();
        m_segments.release();
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

private:
    void compile() const
    {
        auto& keys = const_cast<jVector<Key>&>(this->m_keys);
        TrackCurve::smoothTangents(keys.data(), keys.size());
        TrackCurve::compile(keys.data(), keys.size(), m_times, m_segments);
        this->m_changed = false;
        this->m_cursor = 0;
    }

    mutable jVector<float> m_times;
    mutable jVector<TrackCurveSegment<Value>> m_segments;
    Value m_value = 0;
};
