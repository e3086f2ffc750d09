#include "ui/UITrackLineColor.h"

#include "anim/TrackParameterColor.h"
#include "data/AppData.h"
#include "data/FParameterSingle.h"
#include "ui/UICanvas.h"
#include "ui/UIRect.h"
#include "ui/UITrackLinePanel.h"

namespace {

// The strip is drawn in blocks of this many pixels, each the colour of its first pixel.
constexpr int STRIP_BLOCK = 4;
constexpr int STRIP_TOP = 2;
constexpr int STRIP_BOTTOM = 7;
constexpr int SIDE_MARGIN = 6;
constexpr int ORDER_STRIP = 1;

} // namespace

void UITrackLineColor::setStripWidth(int width)
{
    m_strip.clear();
    for (int i = 0; i < width; ++i)
        m_strip.append(vec4(0.0f, 0.0f, 0.0f, 1.0f));
}

void UITrackLineColor::refreshStrip(float scale, float offset)
{
    const FParameterSingle* data = getData();
    if (!data || !data->getTrackParameter())
        return;
    const auto* param = static_cast<const TrackParameterColor*>(data->getTrackParameter());
    for (int i = 0; i < m_strip.size(); ++i) {
        bool found = false;
        const vec4 color = param->getTrackValue(float(i) * scale + offset, found);
        m_strip[i] = found ? color : param->getValue();
    }
}

void UITrackLineColor::render(int y, int width, bool selected)
{
    UITrackLine::render(y, width, selected);
    if (!getCanvas() || width <= 2 * SIDE_MARGIN)
        return;
    const AppData* hub = AppData::get();
    const float begin = hub->getBeginTime(), end = hub->getEndTime();
    // Each pixel of the strip takes the time the marks' mapping gives its column.
    const float first = UITrackLinePanel::pixelToTime(SIDE_MARGIN, begin, end, width);
    setStripWidth(width - 2 * SIDE_MARGIN);
    refreshStrip(UITrackLinePanel::pixelToTime(SIDE_MARGIN + 1, begin, end, width) - first, first);
    draw_strip(y);
}

void UITrackLineColor::draw_strip(int y)
{
    UICanvas* canvas = getCanvas();
    const int blocks = (m_strip.size() + STRIP_BLOCK - 1) / STRIP_BLOCK;
    while (m_strip_polygons.size() < blocks)
        m_strip_polygons.append(canvas->addPolygon(ORDER_STRIP));
    while (m_strip_polygons.size() > blocks) {
        canvas->removePolygon(m_strip_polygons.back());
        m_strip_polygons.remove(m_strip_polygons.size() - 1);
    }
    for (int b = 0; b < blocks; ++b) {
        const int id = m_strip_polygons[b];
        const float x0 = float(SIDE_MARGIN + b * STRIP_BLOCK), x1 = x0 + STRIP_BLOCK;
        canvas->setPolygonPoints(id, UIRect(x0, float(y + STRIP_TOP), x1, float(y + STRIP_BOTTOM)).corners, 4);
        canvas->setPolygonColor(id, m_strip[b * STRIP_BLOCK]);
    }
}

void UITrackLineColor::clear_strip_shapes()
{
    if (UICanvas* canvas = getCanvas())
        for (int id : m_strip_polygons)
            canvas->removePolygon(id);
    m_strip_polygons.clear();
}

void UITrackLineColor::clearRender()
{
    clear_strip_shapes();
    UITrackLine::clearRender();
}

void UITrackLineColor::forgetRender()
{
    m_strip_polygons.clear();
    UITrackLine::forgetRender();
}
