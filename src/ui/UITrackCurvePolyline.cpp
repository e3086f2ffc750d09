#include "ui/UITrackCurvePolyline.h"

#include <algorithm>
#include <cmath>

#include "anim/TrackCurveKernel.h"
#include "anim/TrackSegment.h"
#include "ui/UITrackCurveMapping.h"

namespace {

// A chord's distance from the curve, measured as strays does, is a cubic in the curve parameter
// that vanishes at both ends of the chord, so its values a third and two thirds of the way along
// bound it everywhere between to within a factor of 1.3.
constexpr double CUBIC_BOUND = 4.0 / 3.0;
// Up to this slope (pixels down per pixel across) a chord's distance from the curve is measured
// straight up or down at the same x, as a reader of the value at a time sees it; a steeper chord
// is held to the distance across it times this, so that a near-vertical stretch still gets a
// sharp line without being split into ever narrower columns.
constexpr double STEEP = 4.0;
// A chord narrower than this (in pixels across) is not split further: within one pixel column the
// painter draws it as the column's run from one end to the other.
constexpr double MIN_RUN = 1.0;

} // namespace

UITrackCurvePolyline::UITrackCurvePolyline(const UITrackCurveMapping& mapping, jVector<vec3>& points)
    : m_mapping(mapping), m_points(points)
{
}

template <class Value>
void UITrackCurvePolyline::append(const TrackCurveData<Value>& curve, Value flat, int x0, int x1)
{
    if (x0 > x1)
        return;
    const double ta = m_mapping.timeOfX(x0);
    const double tb = m_mapping.timeOfX(x1);
    const int count = curve.times.size();
    if (count == 0) {
        const double y = m_mapping.yOfValue(flat);
        add(dvec3(x0, y, 0.0));
        add(dvec3(x1, y, 0.0));
        return;
    }
    const float* times = curve.times.data();
    const TrackCurveSegment<Value>* segments = curve.segments.data();
    int cursor = 0;
    int first = TrackSegment::find(times, count, static_cast<float>(ta), cursor);
    while (first >= 0 && times[first] > ta)
        --first; // ta was rounded up onto a key
    for (int i = first; i < count && (i < 0 || times[i] <= tb); ++i) {
        const TrackCurveShape<Value> shape =
            i < 0 ? TrackCurve::before(segments[0], times[0]) : TrackCurve::shape(segments[i], times[i]);
        if (shape.t0 < shape.t1) // a key at the time of the next one is never played
            piece(shape, std::max<double>(shape.t0, ta), std::min<double>(shape.t1, tb));
    }
}

template <class Value>
void UITrackCurvePolyline::piece(const TrackCurveShape<Value>& shape, double ta, double tb)
{
    if (ta > tb)
        return;
    if (shape.mode == TrackCurveSegment<Value>::CONSTANT) {
        const double y = m_mapping.yOfValue(shape.v0);
        add(dvec3(m_mapping.xOfTime(ta), y, 0.0));
        add(dvec3(m_mapping.xOfTime(tb), y, 0.0));
        return;
    }
    const double sa = parameter(shape, ta);
    const double sb = parameter(shape, tb);
    const dvec3 pa(m_mapping.xOfTime(ta), m_mapping.yOfValue(TrackCurve::value(shape, sa)), 0.0);
    const dvec3 pb(m_mapping.xOfTime(tb), m_mapping.yOfValue(TrackCurve::value(shape, sb)), 0.0);
    add(pa);
    split(shape, sa, sb, pa, pb, 0);
}

template <class Value>
void UITrackCurvePolyline::split(const TrackCurveShape<Value>& shape, double sa, double sb, const dvec3& pa,
                                 const dvec3& pb, int depth)
{
    if (depth < MAX_DEPTH && std::fabs(pb.x - pa.x) >= MIN_RUN && strays(shape, sa, sb, pa, pb)) {
        const double sm = 0.5 * (sa + sb);
        const dvec3 pm = at(shape, sm);
        split(shape, sa, sm, pa, pm, depth + 1);
        split(shape, sm, sb, pm, pb, depth + 1);
        return;
    }
    add(pb);
}

template <class Value>
bool UITrackCurvePolyline::strays(const TrackCurveShape<Value>& shape, double sa, double sb, const dvec3& pa,
                                  const dvec3& pb) const
{
    const double dx = pb.x - pa.x;
    const double dy = pb.y - pa.y;
    // |cross| / run is the distance at the same x where |dx| is the larger, else STEEP times the
    // distance across the chord; never less than the distance across.
    const double run = std::max(std::fabs(dx), std::sqrt(dx * dx + dy * dy) / STEEP);
    if (run == 0.0)
        return false; // time only moves on along the curve: a chord of no length has nothing beside it
    for (const double f : {1.0 / 3.0, 2.0 / 3.0}) {
        const dvec3 p = at(shape, sa + f * (sb - sa));
        const double off = std::fabs((p.y - pa.y) * dx - (p.x - pa.x) * dy) / run;
        if (off * CUBIC_BOUND > TOLERANCE)
            return true;
    }
    return false;
}

template <class Value>
dvec3 UITrackCurvePolyline::at(const TrackCurveShape<Value>& shape, double s) const
{
    const bool timed = shape.mode == TrackCurveSegment<Value>::BEZIER;
    const double u = timed ? TrackCurveKernel::time(shape.ax, shape.bx, shape.cx, s) : s;
    const double t = shape.t0 + u * (static_cast<double>(shape.t1) - shape.t0);
    return dvec3(m_mapping.xOfTime(t), m_mapping.yOfValue(TrackCurve::value(shape, s)), 0.0);
}

template <class Value>
double UITrackCurvePolyline::parameter(const TrackCurveShape<Value>& shape, double t)
{
    const double u = std::clamp(TrackCurve::normalised(shape, static_cast<float>(t)), 0.0, 1.0);
    if (shape.mode != TrackCurveSegment<Value>::BEZIER || u == 0.0 || u == 1.0)
        return u; // the timing polynomial runs from 0 to 1 with the curve parameter
    return TrackCurveKernel::solve(shape.ax, shape.bx, shape.cx, u);
}

void UITrackCurvePolyline::add(const dvec3& p)
{
    const vec3 point(static_cast<float>(p.x), static_cast<float>(p.y), 0.0f);
    if (m_points.empty() || !(m_points.back() == point))
        m_points.append(point);
}

template void UITrackCurvePolyline::append<float>(const TrackCurveData<float>&, float, int, int);
template void UITrackCurvePolyline::append<double>(const TrackCurveData<double>&, double, int, int);
