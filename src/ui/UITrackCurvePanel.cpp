#include "ui/UITrackCurvePanel.h"

#include "ui/UITrackCurve.h"

namespace {
UITrackCurvePanel* g_instance = nullptr;
}

UITrackCurvePanel::UITrackCurvePanel()
{
    g_instance = this;
}

UITrackCurvePanel::~UITrackCurvePanel()
{
    if (g_instance == this)
        g_instance = nullptr;
}

UITrackCurvePanel* UITrackCurvePanel::get()
{
    return g_instance;
}

void UITrackCurvePanel::showCurve(UITrackCurve* curve)
{
    if (!m_shown.contains(curve))
        m_shown.append(curve);
    curve->setDirty(true);
}

void UITrackCurvePanel::hideCurve(UITrackCurve* curve)
{
    m_shown.removeValue(curve);
}

bool UITrackCurvePanel::isShown(const UITrackCurve* curve) const
{
    return m_shown.contains(const_cast<UITrackCurve*>(curve));
}

void UITrackCurvePanel::setSelectedCurves(const jVector<UITrackCurve*>& curves)
{
    m_selected_curves.clear();
    for (UITrackCurve* curve : curves)
        m_selected_curves.insert(curve);
    setDirty();
}

void UITrackCurvePanel::setSelectedKeys(const jVector<UITrackCurveKey*>& keys)
{
    m_selected_keys.clear();
    for (UITrackCurveKey* key : keys)
        m_selected_keys.insert(key);
    setDirty();
}

void UITrackCurvePanel::setDirty()
{
    for (UITrackCurve* curve : m_shown)
        curve->setDirty(true);
}

void UITrackCurvePanel::forgetCurve(UITrackCurve* curve)
{
    m_shown.removeValue(curve);
    m_selected_curves.erase(curve);
}

void UITrackCurvePanel::forgetKey(UITrackCurveKey* key)
{
    m_selected_keys.erase(key);
}
