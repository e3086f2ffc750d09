#include "ui/UITrackCurveKey.h"

#include "data/FKey.h"
#include "ui/UITrackCurve.h"

void UITrackCurveKey::clearRender()
{
    if (m_curve)
        m_curve->removeKey(this);
    m_curve = nullptr;
}

float UITrackCurveKey::getTime() const
{
    return m_key ? m_key->getTime() : 0.0f;
}
