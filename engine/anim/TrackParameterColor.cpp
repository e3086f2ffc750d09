#include "anim/TrackParameterColor.h"

vec4 TrackParameterColor::getTrackValue(float t, bool& found) const
{
    found = !m_keys.empty();
    if (!found)
        return vec4_zero;
    int i = findKey(t);
    if (i < 0)
        return m_keys[0].value;
    if (i + 1 >= m_keys.size())
        return m_keys[i].value;
    const TrackKeyColor& a = m_keys[i];
    const TrackKeyColor& b = m_keys[i + 1];
    float u = (t - a.time) / (b.time - a.time);
    vec4 c;
    for (int k = 0; k < 4; ++k)
        c[k] = a.value[k] + (b.value[k] - a.value[k]) * u;
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

void TrackParameterColor::apply(float t)
{
    bool found = false;
    vec4 c = getTrackValue(t, found);
    if (!found)
        return;
    m_value = c;
    TrackValue out;
    for (int k = 0; k < 4; ++k)
        out.n[k] = c[k];
    writeTarget(out);
}
