#include "ui/UITrackCurve.h"

#include <algorithm>

#include "data/SortKeyByTime.h"
#include "ui/UITrackCurveKey.h"
#include "ui/UITrackCurvePanel.h"

void UITrackCurve::setColor(const vec4& color)
{
    m_color = color;
    m_dirty = true;
}

void UITrackCurve::clearRender()
{
    if (UITrackCurvePanel* panel = UITrackCurvePanel::get())
        panel->forgetCurve(this);
}

void UITrackCurve::addKey(UITrackCurveKey* key)
{
    m_keys.append(key);
    key->setCurve(this);
    m_dirty = true;
}

bool UITrackCurve::removeKey(UITrackCurveKey* key)
{
    m_dirty = true;
    if (UITrackCurvePanel* panel = UITrackCurvePanel::get())
        panel->forgetKey(key);
    return m_keys.removeValue(key);
}

void UITrackCurve::sortKeys()
{
    std::sort(m_keys.begin(), m_keys.end(), SortKeyByTime<UITrackCurveKey>::Compare);
    m_dirty = true;
}
