#include "ui/UITrackCurve.h"

#include <algorithm>

#include "anim/TrackCurveKernel.h"
#include "data/AppData.h"
#include "data/FKey.h"
#include "data/FParameterDouble.h"
#include "data/FParameterFloat.h"
#include "data/SortKeyByTime.h"
#include "ui/UICanvas.h"
#include "ui/UITrackCurveKey.h"
#include "ui/UITrackCurveMapping.h"
#include "ui/UITrackCurvePanel.h"
#include "ui/UITrackCurvePolyline.h"

namespace {

// Over the grid (0 to 2), under the keys' handles and marks (11 to 13).
constexpr int ORDER_CURVE = 10;
// One pixel: wider lines take the painter's slow path, a hundred times the cost on long tracks.
constexpr float CURVE_WIDTH = 1.0f;
// How far beyond the drawn columns a key's mark still shows.
constexpr double MARK_REACH = 4.0;
// Pixels between two marks of a curve below which only the first is drawn (a selected key's mark
// always is): a box around the drawn mark still selects the keys it stands for.
constexpr double MIN_MARK_SPACING = 4.0;

// Whether the segment from key i to key i + 1 of curve is a Bezier segment.
template <class Value>
bool isBezier(const TrackCurveData<Value>& curve, int i)
{
    return i >= 0 && i + 1 < curve.segments.size() &&
           curve.segments[i].mode >= TrackCurveSegment<Value>::BEZIER_EVEN;
}

// The handle of key i on side (UITrackCurveKey::SIDE_IN reaches into the segment before the key,
// SIDE_OUT into the one after it), in canvas pixels: its time clamped into the segment and its
// value offset scaled with it, as the engine compiles the segment.
template <class Key>
vec3 handlePoint(const Key* keys, int i, int side, const UITrackCurveMapping& mapping)
{
    const bool in = side == UITrackCurveKey::SIDE_IN;
    const Key& a = keys[in ? i - 1 : i];
    const Key& b = keys[in ? i : i + 1];
    const double d = static_cast<double>(b.time) - a.time;
    double h1 = 0.0, h2 = 0.0;
    TrackCurveKernel::handleTimes(a.tangents.z, b.tangents.x, 1.0 / d, h1, h2);
    const double t = a.time + (in ? h2 : h1) * d;
    const double v = in ? b.value + TrackCurveKernel::handleValue(b.tangents.y, -static_cast<double>(b.tangents.x), d)
                        : a.value + TrackCurveKernel::handleValue(a.tangents.w, a.tangents.z, d);
    return vec3(float(mapping.xOfTime(t)), float(mapping.yOfValue(v)), 0.0f);
}

// Draws the point of key i of engine, or hides it when it lies beyond the columns x0 to x1; a
// chosen (selected) point shows its handles on its Bezier sides.
template <class Engine>
void drawPoint(const Engine* engine, int i, UITrackCurveKey* point, const vec4& color,
               const UITrackCurveMapping& mapping, int x0, int x1, bool chosen)
{
    const auto* keys = engine->getKeys().data();
    const double x = mapping.xOfTime(keys[i].time);
    if (x < x0 - MARK_REACH || x > x1 + MARK_REACH) {
        point->hide();
        return;
    }
    const vec3 at(float(x), float(mapping.yOfValue(keys[i].value)), 0.0f);
    const bool in = chosen && isBezier(engine->getCurve(), i - 1);
    const bool out = chosen && isBezier(engine->getCurve(), i);
    const vec3 handles[2] = {in ? handlePoint(keys, i, UITrackCurveKey::SIDE_IN, mapping) : at,
                             out ? handlePoint(keys, i, UITrackCurveKey::SIDE_OUT, mapping) : at};
    point->render(at, color, chosen, in ? &handles[0] : nullptr, out ? &handles[1] : nullptr);
}

} // namespace

void UITrackCurve::setColor(const vec4& color)
{
    m_color = color;
    m_dirty = true;
}

vec4 UITrackCurve::bright_color() const
{
    return vec4((1.0f + m_color.x) * 0.5f, (1.0f + m_color.y) * 0.5f, (1.0f + m_color.z) * 0.5f, 1.0f);
}

void UITrackCurve::clearRender()
{
    if (UITrackCurvePanel* panel = UITrackCurvePanel::get())
        panel->forgetCurve(this);
    clearShapes();
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
    if (!m_keys.removeValue(key))
        return false;
    key->hide();
    return true;
}

void UITrackCurve::sortKeys()
{
    std::sort(m_keys.begin(), m_keys.end(), SortKeyByTime<UITrackCurveKey>::Compare);
    m_dirty = true;
}

void UITrackCurve::attach(UICanvas* canvas)
{
    if (m_canvas == canvas)
        return;
    clearShapes();
    if (!canvas)
        return;
    m_canvas = canvas;
    m_polyline = canvas->addLine(ORDER_CURVE);
    m_canvas->setLineWidth(m_polyline, CURVE_WIDTH);
    m_dirty = true;
}

void UITrackCurve::clearShapes()
{
    if (!m_canvas)
        return;
    for (UITrackCurveKey* key : m_keys)
        key->hide();
    m_canvas->removeLine(m_polyline);
    m_canvas = nullptr;
    m_polyline = -1;
}

void UITrackCurve::render(const UITrackCurveMapping& mapping, int x0, int x1, const jSet<UITrackCurveKey*>& selected)
{
    if (!m_canvas || !m_data)
        return;
    m_points.clear();
    if (m_data->getType() == TRACK_PARAMETER_DOUBLE)
        render_as(static_cast<const FParameterDouble*>(m_data), mapping, x0, x1, selected);
    else
        render_as(static_cast<const FParameterFloat*>(m_data), mapping, x0, x1, selected);
    m_canvas->setLinePoints(m_polyline, m_points.data(), m_points.size(), false);
    m_canvas->setLineColor(m_polyline, has_selected(selected) ? bright_color() : m_color);
    m_dirty = false;
}

bool UITrackCurve::has_selected(const jSet<UITrackCurveKey*>& selected) const
{
    for (const UITrackCurveKey* key : selected) {
        if (key->getCurve() == this)
            return true;
    }
    return false;
}

template <class Parameter>
void UITrackCurve::render_as(const Parameter* parameter, const UITrackCurveMapping& mapping, int x0, int x1,
                             const jSet<UITrackCurveKey*>& selected)
{
    const auto* engine = parameter->engine_parameter();
    using Value = typename Parameter::Value;
    const Value flat = engine->getNumKeys() ? Value(0) : parameter->valueAt(AppData::get()->getTime());
    UITrackCurvePolyline(mapping, m_points).append(engine->getCurve(), flat, x0, x1);
    render_keys(engine, mapping, x0, x1, selected);
}

// The engine's key records and the editor's keys are in the same order (applyKeys writes them so).
template <class Engine>
void UITrackCurve::render_keys(const Engine* engine, const UITrackCurveMapping& mapping, int x0, int x1,
                               const jSet<UITrackCurveKey*>& selected)
{
    const jVector<FKey*>& owners = m_data->getKeys();
    const int count = std::min(engine->getNumKeys(), owners.size());
    double drawn = -MIN_MARK_SPACING;
    for (int i = 0; i < owners.size(); ++i) {
        UITrackCurveKey* point = owners[i]->getCurveKey();
        if (!point)
            continue;
        const bool chosen = selected.contains(point);
        const double x = i < count ? mapping.xOfTime(engine->getKeys()[i].time) : drawn;
        if (i >= count || (!chosen && x - drawn < MIN_MARK_SPACING)) {
            point->hide(); // crowded out: the mark drawn just before stands for it, as in the key lines
            continue;
        }
        drawPoint(engine, i, point, m_color, mapping, x0, x1, chosen);
        drawn = x;
    }
}
