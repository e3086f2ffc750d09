#include "anim/TrackParameterToggle.h"

int TrackParameterToggle::getTrackValue(float t, bool& found) const
{
    found = !m_keys.empty();
    if (!found)
        return 0;
    int i = findKey(t);
    return m_keys[i < 0 ? 0 : i].value ? 1 : 0;
}

bool TrackParameterToggle::getValue() const
{
    TrackValue current;
    if (readTarget(current))
        return current.n[0] != 0.0;
    return m_value;
}

void TrackParameterToggle::appendKey(float time, bool value)
{
    TrackKeyToggle key;
    key.time = time;
    key.value = value;
    TrackParameterKeyed<TrackKeyToggle>::appendKey(key);
}

void TrackParameterToggle::apply(float t)
{
    bool found = false;
    int on = getTrackValue(t, found);
    if (!found)
        return;
    m_value = on != 0;
    TrackValue out;
    out.n[0] = on;
    writeTarget(out);
}
