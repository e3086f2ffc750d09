#include "data/FKey.h"

#include "data/FParameterSingle.h"
#include "kit/jAllocator.h"
#include "ui/UITrackCurveKey.h"
#include "ui/UITrackLineKey.h"

void FKey::releaseUI()
{
    if (m_line_key) {
        m_line_key->clearRender();
        jDelete(m_line_key, "src/data/FKey", __LINE__, "FKey::releaseUI");
    }
    if (m_curve_key) {
        m_curve_key->clearRender();
        jDelete(m_curve_key, "src/data/FKey", __LINE__, "FKey::releaseUI");
    }
    m_line_key = nullptr;
    m_curve_key = nullptr;
}

void FKey::detach()
{
    if (m_parameter && m_parameter->removeKey(this))
        m_parameter->sortKeys();
    m_parameter = nullptr;
}
