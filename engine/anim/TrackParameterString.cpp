#include "anim/TrackParameterString.h"

TrackParameterString::TrackParameterString(TRACK_PARAMETER_TYPE kind)
    : m_kind(kind == TRACK_PARAMETER_STRING_MATERIAL ? TRACK_PARAMETER_STRING_MATERIAL : TRACK_PARAMETER_STRING_FILE)
{
}

TRACK_PARAMETER_TYPE TrackParameterString::getType() const
{
    const TrackReg* reg = getReg();
    if (reg && (reg->getType() == TRACK_PARAMETER_STRING_FILE || reg->getType() == TRACK_PARAMETER_STRING_MATERIAL))
        return reg->getType();
    return m_kind;
}

const jString& TrackParameterString::getTrackValue(float t, bool& found) const
{
    found = !m_keys.empty();
    if (!found)
        return jString::null();
    int i = findKey(t);
    return m_keys[i < 0 ? 0 : i].value;
}

void TrackParameterString::appendKey(float time, const jString& text)
{
    TrackKeyString key;
    key.time = time;
    key.value = text;
    TrackParameterKeyed<TrackKeyString>::appendKey(key);
}

void TrackParameterString::apply(float t)
{
    bool found = false;
    const jString& text = getTrackValue(t, found);
    if (!found)
        return;
    TrackValue out;
    out.text = &text;
    writeTarget(out);
}
