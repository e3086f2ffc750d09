#include "ui/UITrackCurve.h"

#include <algorithm>
#include <cmath>

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
// How far beyond the drawn columns a key's mark still shows.
constexpr double MARK_REACH = 4.0;
// Pixels between two marks of a curve below which only the first is drawn (a selected key's mark
// always is): a mark's width, as closer marks would only cover each other. A box around the drawn
// mark still selects the keys it stands for.
constexpr double MIN_MARK_SPACING = 7.0;
// The farthest, in pixels, a flattening is moved as a whole; a view this far off has no use for it.
constexpr double MAX_SHIFT = 1 << 24;

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
    m_dirty = m_stale = true;
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
    m_dirty = m_stale = true;
}

bool UITrackCurve::removeKey(UITrackCurveKey* key)
{
    m_dirty = m_stale = true;
    if (UITrackCurvePanel* panel = UITrackCurvePanel::get())
        panel->forgetKey(key);
    if (!m_keys.removeValue(key))
        return false;
    key->hide();
    return true;
}

void UITrackCurve::removeAllKeys()
{
    UITrackCurvePanel* panel = UITrackCurvePanel::get();
    for (UITrackCurveKey* key : m_keys) {
        if (panel)
            panel->forgetKey(key);
        key->hide();
        key->setCurve(nullptr);
    }
    m_keys.clear();
    m_dirty = m_stale = true;
}

void UITrackCurve::sortKeys()
{
    std::stable_sort(m_keys.begin(), m_keys.end(), SortKeyByTime<UITrackCurveKey>::Compare);
    m_dirty = m_stale = true;
}

void UITrackCurve::attach(UICanvas* canvas)
{
    if (m_canvas == canvas)
        return;
    clearShapes();
    if (!canvas)
        return;
    m_canvas = canvas;
    m_polyline = canvas->addTrace(ORDER_CURVE);
    m_dirty = m_stale = true;
}

void UITrackCurve::clearShapes()
{
    if (!m_canvas)
        return;
    for (UITrackCurveKey* key : m_keys)
        key->hide();
    m_canvas->removeTrace(m_polyline);
    m_canvas = nullptr;
    m_polyline = -1;
    m_flat_end = m_flat_begin - 1.0;
    m_shows_flat = false;
    m_stale = true;
}

void UITrackCurve::render(const UITrackCurveMapping& mapping, int x0, int x1, const jSet<UITrackCurveKey*>& selected)
{
    if (!m_canvas || !m_data)
        return;
    if (m_data->getType() == TRACK_PARAMETER_DOUBLE)
        render_as(static_cast<const FParameterDouble*>(m_data), mapping, x0, x1, selected);
    else
        render_as(static_cast<const FParameterFloat*>(m_data), mapping, x0, x1, selected);
    m_dirty = false;
}

jVector<UITrackCurveKey*> UITrackCurve::chosen_points(const jSet<UITrackCurveKey*>& selected) const
{
    jVector<UITrackCurveKey*> chosen;
    for (UITrackCurveKey* key : selected) {
        if (key->getCurve() == this)
            chosen.append(key);
    }
    std::sort(chosen.begin(), chosen.end(), SortKeyByTime<UITrackCurveKey>::Compare);
    return chosen;
}

template <class Parameter>
void UITrackCurve::render_as(const Parameter* parameter, const UITrackCurveMapping& mapping, int x0, int x1,
                             const jSet<UITrackCurveKey*>& selected)
{
    const auto* engine = parameter->engine_parameter();
    jVector<UITrackCurveKey*> chosen = chosen_points(selected);
    Redraw redraw = Redraw::Reshaped;
    if (engine->getNumKeys() == 0) {
        using Value = typename Parameter::Value;
        const Value flat = parameter->valueAt(AppData::get()->getTime());
        m_points.clear();
        UITrackCurvePolyline(mapping, m_points).append(engine->getCurve(), flat, x0, x1);
        m_flat_end = m_flat_begin - 1.0;
        show_placed();
    } else {
        redraw = update_points(engine, mapping, x0, x1);
    }
    // The marks are placed in the pixels of the polyline's points, and the canvas moves them with
    // it: a pan that keeps the same keys in view touches none of them.
    const UITrackCurveMapping& placing = m_shows_flat ? m_flat_mapping : mapping;
    const int dx = int(m_offset.x);
    const std::pair<int, int> marked = marked_keys(engine, placing, x0 - dx, x1 - dx);
    const bool same = chosen.size() == m_chosen.size() && std::equal(chosen.begin(), chosen.end(), m_chosen.begin());
    if (redraw != Redraw::Reshaped && !m_stale && same && marked == m_marked)
        return; // what the canvas shows is still right
    m_canvas->setTraceColor(m_polyline, chosen.empty() ? m_color : bright_color());
    m_chosen = std::move(chosen);
    m_stale = false;
    m_marked = marked;
    render_keys(engine, placing, x0 - dx, x1 - dx, selected);
}

template <class Engine>
std::pair<int, int> UITrackCurve::marked_keys(const Engine* engine, const UITrackCurveMapping& mapping, int x0, int x1)
{
    const auto* keys = engine->getKeys().data();
    const auto* end = keys + engine->getNumKeys();
    const auto* first =
        std::partition_point(keys, end, [&](const auto& k) { return mapping.xOfTime(k.time) < x0 - MARK_REACH; });
    const auto* last =
        std::partition_point(first, end, [&](const auto& k) { return mapping.xOfTime(k.time) <= x1 + MARK_REACH; });
    return {int(first - keys), int(last - keys)};
}

template <class Engine>
UITrackCurve::Redraw UITrackCurve::update_points(const Engine* engine, const UITrackCurveMapping& mapping, int x0,
                                                 int x1)
{
    const bool changed =
        engine != m_flat_source || engine->getCurveRevision() != m_flat_revision || m_flat_begin > m_flat_end;
    if (!changed && mapping == m_drawn_mapping && x0 == m_drawn_x0 && x1 == m_drawn_x1)
        return Redraw::None;
    if (changed || !covers(mapping, x0, x1))
        flatten(engine, mapping, x0, x1);
    int dx = 0, dy = 0;
    Redraw redraw = Redraw::Reshaped;
    if (shift_of(mapping, dx, dy)) {
        if (m_shows_flat)
            redraw = Redraw::Moved;
        else
            m_canvas->setTracePoints(m_polyline, m_flat.data(), m_flat.size());
        m_canvas->setTraceOffset(m_polyline, dx, dy);
        m_shows_flat = true;
        m_offset = vec3(float(dx), float(dy), 0.0f);
    } else {
        place(mapping, x0, x1);
        show_placed();
    }
    m_drawn_mapping = mapping;
    m_drawn_x0 = x0;
    m_drawn_x1 = x1;
    return redraw;
}

template <class Engine>
void UITrackCurve::flatten(const Engine* engine, const UITrackCurveMapping& mapping, int x0, int x1)
{
    const int margin = std::max(x1 - x0, 0) / 4 + 1;
    m_flat.clear();
    UITrackCurvePolyline(mapping, m_flat).append(engine->getCurve(), typename Engine::Value(0), x0 - margin, x1 + margin);
    m_flat_mapping = mapping;
    m_flat_begin = mapping.timeOfX(x0 - margin);
    m_flat_end = mapping.timeOfX(x1 + margin);
    m_flat_revision = engine->getCurveRevision();
    m_flat_source = engine;
    m_flat_reach = 0.0;
    for (const vec3& p : m_flat)
        m_flat_reach = std::max({m_flat_reach, std::fabs(double(p.x)), std::fabs(double(p.y))});
    m_shows_flat = false; // the canvas holds the points of an earlier flattening
}

bool UITrackCurve::shift_of(const UITrackCurveMapping& mapping, int& dx, int& dy) const
{
    // The flattening's pixels map onto mapping's along a line in each axis; a shift is a line of
    // slope 1 that moves every point of the flattening by nearly whole pixels.
    const auto whole = [this](double a, double b, int& shift) {
        if (!(std::fabs(b) < MAX_SHIFT)) // also a degenerate view's numbers
            return false;
        shift = int(std::lround(b));
        return std::fabs(a - 1.0) * m_flat_reach + std::fabs(b - shift) <= SHIFT_TOLERANCE;
    };
    const double bx = mapping.xOfTime(m_flat_mapping.timeOfX(0.0));
    const double by = mapping.yOfValue(m_flat_mapping.valueOfY(0.0));
    return whole(mapping.xOfTime(m_flat_mapping.timeOfX(1.0)) - bx, bx, dx) &&
           whole(mapping.yOfValue(m_flat_mapping.valueOfY(1.0)) - by, by, dy);
}

void UITrackCurve::show_placed()
{
    m_canvas->setTracePoints(m_polyline, m_points.data(), m_points.size());
    m_canvas->setTraceOffset(m_polyline, 0, 0);
    m_shows_flat = false;
    m_offset = vec3();
}

bool UITrackCurve::covers(const UITrackCurveMapping& mapping, int x0, int x1) const
{
    const auto near = [](double a, double b) { return a > 0.0 && std::fabs(a - b) <= REUSE_SCALE * a; };
    return near(m_flat_mapping.timePerPixel(), mapping.timePerPixel()) &&
           near(m_flat_mapping.valuePerPixel(), mapping.valuePerPixel()) && mapping.timeOfX(x0) >= m_flat_begin &&
           mapping.timeOfX(x1) <= m_flat_end;
}

void UITrackCurve::place(const UITrackCurveMapping& mapping, int x0, int x1)
{
    // The flattening's pixels map onto mapping's along a line in each axis.
    const double bx = mapping.xOfTime(m_flat_mapping.timeOfX(0.0));
    const double ax = mapping.xOfTime(m_flat_mapping.timeOfX(1.0)) - bx;
    const double by = mapping.yOfValue(m_flat_mapping.valueOfY(0.0));
    const double ay = mapping.yOfValue(m_flat_mapping.valueOfY(1.0)) - by;
    const auto cut = [](const dvec3& a, const dvec3& b, double x) {
        const double f = b.x > a.x ? (x - a.x) / (b.x - a.x) : 1.0;
        return dvec3(x, a.y + f * (b.y - a.y), 0.0);
    };
    const auto add = [this](const dvec3& p) {
        const vec3 point(float(p.x), float(p.y), 0.0f);
        if (m_points.empty() || !(m_points.back() == point))
            m_points.append(point);
    };
    m_points.clear();
    // The flattening runs on in time, so along x: the first point at or past x0 is found by halves.
    const auto past = [&](const vec3& q, double x) { return ax * q.x + bx >= x; };
    const vec3* begin = m_flat.begin();
    const vec3* end = m_flat.end();
    const vec3* p = std::partition_point(begin, end, [&](const vec3& q) { return !past(q, x0); });
    const auto at = [&](const vec3& q) { return dvec3(ax * q.x + bx, ay * q.y + by, 0.0); };
    if (p != begin && p != end && at(*p).x > x0)
        add(cut(at(p[-1]), at(*p), x0)); // the chord entering the columns
    for (; p != end && !past(*p, x1); ++p) {
        const dvec3 q = at(*p);
        m_points.append(vec3(float(q.x), float(q.y), 0.0f));
    }
    if (p != end)
        add(p != begin ? cut(at(p[-1]), at(*p), x1) : at(*p)); // the chord leaving them
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
        const bool chosen = !m_chosen.empty() && selected.contains(point); // most curves have none
        const double x = i < count ? mapping.xOfTime(engine->getKeys()[i].time) : drawn;
        if (i >= count || (!chosen && x - drawn < MIN_MARK_SPACING)) {
            if (point->isDrawn())
                point->hide(); // crowded out: the mark drawn just before stands for it, as in the key lines
            continue;
        }
        drawPoint(engine, i, point, m_color, mapping, x0, x1, chosen);
        drawn = x;
    }
}
