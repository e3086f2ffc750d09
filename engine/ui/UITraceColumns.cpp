#include "UITraceColumns.h"

#include <algorithm>
#include <cmath>

namespace {

// The largest whole number not above v, for v well inside the range of int: without the
// processor's rounding instruction (the baseline x86-64 has none) std::floor is a library call.
int floorOf(double v)
{
    const int i = static_cast<int>(v);
    return i - (v < i);
}

double held(double v)
{
    return std::clamp(v, -double(UITraceColumns::REACH), double(UITraceColumns::REACH));
}

} // namespace

void UITraceColumns::measure(const std::vector<QPointF>& points)
{
    m_runs.clear();
    double x0 = REACH, x1 = -REACH;
    for (const QPointF& p : points) {
        if (std::isfinite(p.x())) {
            x0 = std::min(x0, p.x());
            x1 = std::max(x1, p.x());
        }
    }
    if (x0 > x1)
        return;
    m_left = floorOf(held(x0));
    m_right = floorOf(held(x1)) + 1.0;
    for (size_t i = 1; i < points.size(); ++i) {
        const QPointF& a = points[i - 1];
        const QPointF& b = points[i];
        const bool inside = a.x() >= m_left && a.x() < m_right && b.x() >= m_left && b.x() < m_right;
        const int ca = inside ? floorOf(a.x()) : 0;
        const int cb = inside ? floorOf(b.x()) : 0;
        if (inside && ca == cb)
            cover(ca, a.y(), b.y()); // most chords of a long curve stay in one column
        else if (inside && cb == ca + 1 && std::isfinite(a.y() + b.y()))
            step(a, b, cb); // or reach into the next one
        else if (a.x() <= b.x())
            chord(a, b);
        else
            chord(b, a);
    }
    if (points.size() == 1)
        chord(points[0], points[0]);
    flush();
    // A trace is drawn in one colour, so the order of its runs changes no pixel; in the order of
    // the columns a painter finds those of a band of columns at once.
    const auto left_to_right = [](const Run& a, const Run& b) { return a.column < b.column; };
    if (!std::is_sorted(m_runs.begin(), m_runs.end(), left_to_right))
        std::stable_sort(m_runs.begin(), m_runs.end(), left_to_right);
    join_runs();
    keep_rows();
}

void UITraceColumns::keep_rows()
{
    m_rows.clear();
    for (size_t i = 0; i < m_runs.size(); ++i) {
        const Run& run = m_runs[i];
        if (run.column != m_runs.front().column + int(i) || run.top < INT16_MIN || run.bottom > INT16_MAX) {
            m_rows.clear();
            return;
        }
        m_rows.push_back(static_cast<std::int16_t>(run.top));
        m_rows.push_back(static_cast<std::int16_t>(run.bottom));
    }
}

void UITraceColumns::join_runs()
{
    size_t kept = 0;
    for (const Run& run : m_runs) {
        Run* last = kept > 0 ? &m_runs[kept - 1] : nullptr;
        if (last && last->column == run.column && run.top <= last->bottom + 1 && run.bottom + 1 >= last->top) {
            last->top = std::min(last->top, run.top);
            last->bottom = std::max(last->bottom, run.bottom);
        } else {
            m_runs[kept++] = run;
        }
    }
    m_runs.resize(kept);
}

void UITraceColumns::chord(const QPointF& a, const QPointF& b)
{
    if (b.x() < m_left || a.x() >= m_right || !std::isfinite(a.x() + a.y() + b.x() + b.y()))
        return;
    const double dx = b.x() - a.x();
    const double slope = dx > 0.0 ? (b.y() - a.y()) / dx : 0.0;
    const int c0 = floorOf(std::max(a.x(), m_left));
    const int c1 = floorOf(std::min(b.x(), m_right - 1.0));
    for (int c = c0; c <= c1; ++c) {
        if (dx <= 0.0) { // straight down or up: the whole chord in one column
            cover(c, a.y(), b.y());
            continue;
        }
        const double xa = std::max(a.x(), double(c));
        const double xb = std::min(b.x(), c + 1.0);
        cover(c, a.y() + (xa - a.x()) * slope, a.y() + (xb - a.x()) * slope);
    }
}

void UITraceColumns::step(const QPointF& a, const QPointF& b, int c)
{
    const double slope = (b.y() - a.y()) / (b.x() - a.x());
    const double y = a.y() + (c - a.x()) * slope; // where chord cuts it, to the bit
    cover(c - 1, a.y(), y);
    cover(c, y, a.y() + (b.x() - a.x()) * slope);
}

void UITraceColumns::cover(int c, double ya, double yb)
{
    if (c != m_run_column || m_run_top > m_run_bottom) {
        flush();
        m_run_column = c;
        m_run_top = std::min(ya, yb);
        m_run_bottom = std::max(ya, yb);
        return;
    }
    m_run_top = std::min({m_run_top, ya, yb});
    m_run_bottom = std::max({m_run_bottom, ya, yb});
}

void UITraceColumns::flush()
{
    if (!(m_run_top <= m_run_bottom))
        return; // nothing gathered, or a row that is not a number
    m_runs.push_back({m_run_column, floorOf(held(m_run_top)), floorOf(held(m_run_bottom))});
    m_run_bottom = m_run_top - 1.0;
}
