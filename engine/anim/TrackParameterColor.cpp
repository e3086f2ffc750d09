#include "anim/TrackParameterColor.h"

vec4 TrackParameterColor::getTrackValue(float t, bool& found) const
{
    found = !m_channels[0].times.empty();
    if (!found)
        return vec4_zero;
    // The channels share the keys' times, so the key cursor finds each channel's segment at once.
    vec4 c;
    for (int k = 0; k < CHANNELS; ++k) {
        const TrackCurveData<float>& channel = m_channels[k];
        c[k] = TrackCurve::evaluate(channel.times.data(), channel.segments.data(), channel.times.size(), t, m_cursor);
    }
    return c;
}

vec4 TrackParameterColor::getValue() const
{
    TrackValue current;
    if (!readTarget(current))
        return m_value;
    return vec4(static_cast<float>(current.n[0]), static_cast<float>(current.n[1]), static_cast<float>(current.n[2]),
                static_cast<float>(current.n[3]));
}

void TrackParameterColor::appendKey(float time, const vec4& color)
{
    TrackKeyColor key;
    key.time = time;
    key.value = color;
    TrackParameterKeyed<TrackKeyColor>::appendKey(key);
}

const TrackCurveData<float>& TrackParameterColor::getChannel(int c) const
{
    return m_channels[c];
}

void TrackParameterColor::update()
{
    jVector<TrackKeyFloat> keys;
    keys.reserve(m_keys.size());
    for (int c = 0; c < CHANNELS; ++c) {
        keys.clear();
        for (const TrackKeyColor& colour : m_keys) {
            TrackKeyFloat key;
            key.time = colour.time;
            key.value = colour.value[c];
            key.type = TRACK_KEY_LINEAR;
            keys.append(key);
        }
        TrackCurve::compile(keys.data(), keys.size(), m_channels[c]);
    }
    changed();
}

void TrackParameterColor::release()
{
    TrackParameterKeyed<TrackKeyColor>::release();
    for (TrackCurveData<float>& channel : m_channels)
        channel.release();
}

void TrackParameterColor::apply(float t)
{
    bool found = false;
    vec4 c = getTrackValue(t, found);
    if (!found)
        return;
    m_value = c;
    TrackValue out;
    for (int k = 0; k < CHANNELS; ++k)
        out.n[k] = c[k];
    writeTarget(out);
}
