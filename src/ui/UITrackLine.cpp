#include "ui/UITrackLine.h"

#include <algorithm>

#include "data/SortKeyByTime.h"
#include "ui/UICanvas.h"
#include "ui/UIRect.h"
#include "ui/UITrackLineKey.h"
#include "ui/UITrackLinePanel.h"

namespace {

// The band lies under every mark.
constexpr int ORDER_BAND = 0;
constexpr int ORDER_BAND_LINE = 1;
constexpr int BAND_TOP = 1;
constexpr int BAND_BOTTOM = 21;

float clamp01(float v)
{
    return std::clamp(v, 0.0f, 1.0f);
}

} // namespace

UITrackLine::~UITrackLine() = default;

void UITrackLine::setColor(const vec4& color)
{
    m_light = vec4(clamp01(color.x + 0.25f), clamp01(color.y + 0.25f), clamp01(color.z + 0.25f), 1.0f);
    m_dark = vec4(clamp01(color.x * 0.25f), clamp01(color.y * 0.25f), clamp01(color.z * 0.25f), 1.0f);
    m_dirty = true;
}

void UITrackLine::attach(UICanvas* canvas)
{
    if (m_canvas == canvas)
        return;
    clearRender();
    m_canvas = canvas;
    m_band_polygon = canvas->addPolygon(ORDER_BAND);
    m_band_line = canvas->addLine(ORDER_BAND_LINE);
    for (UITrackLineKey* key : m_keys)
        key->setLine(this);
    m_dirty = true;
}

void UITrackLine::render(int y, int width, bool selected)
{
    if (!m_canvas)
        return;
    const UIRect band(0.0f, float(y + BAND_TOP), float(width), float(y + BAND_BOTTOM));
    m_canvas->setPolygonPoints(m_band_polygon, band.corners, 4);
    m_canvas->setLinePoints(m_band_line, band.corners + 2, 2, false); // the bottom edge
    vec4 fill = m_dark;
    fill.w = selected ? 0.6f : 0.35f;
    m_canvas->setPolygonColor(m_band_polygon, fill);
    m_canvas->setLineColor(m_band_line, m_light);
}

void UITrackLine::concealBand()
{
    if (!m_canvas)
        return;
    m_canvas->clearPolygonPoints(m_band_polygon);
    m_canvas->clearLinePoints(m_band_line);
}

void UITrackLine::clearRender()
{
    if (UITrackLinePanel* panel = UITrackLinePanel::get(); panel && panel->hasLine(this))
        panel->removeLine(this);
    if (m_canvas) {
        m_canvas->removePolygon(m_band_polygon);
        m_canvas->removeLine(m_band_line);
        for (UITrackLineKey* key : m_keys)
            key->clearShapes();
    }
    m_canvas = nullptr;
    m_in_view = false;
    m_band_polygon = m_band_line = -1;
}

void UITrackLine::forgetRender()
{
    m_in_view = false;
    m_canvas = nullptr;
    m_band_polygon = m_band_line = -1;
    for (UITrackLineKey* key : m_keys)
        key->forgetRender();
}

void UITrackLine::addKey(UITrackLineKey* key)
{
    m_keys.append(key);
    key->setLine(this);
    m_dirty = true;
}

bool UITrackLine::removeKey(UITrackLineKey* key)
{
    m_dirty = true;
    if (UITrackLinePanel* panel = UITrackLinePanel::get())
        panel->forgetKey(key); // a selection must never keep a mark that is being freed
    return m_keys.removeValue(key);
}

void UITrackLine::removeAllKeys()
{
    UITrackLinePanel* panel = UITrackLinePanel::get();
    for (UITrackLineKey* key : m_keys) {
        if (panel)
            panel->forgetKey(key);
        key->clearShapes();
        key->setLine(nullptr);
    }
    m_keys.clear();
    m_dirty = true;
}

void UITrackLine::sortKeys()
{
    std::stable_sort(m_keys.begin(), m_keys.end(), SortKeyByTime<UITrackLineKey>::Compare);
    m_dirty = true;
}
