#include "ui/TimeRangeView.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double FRAME_MARGIN = 0.05;
constexpr double SINGLE_TIME_SPAN = 1.0;

} // namespace

TimeRangeView::TimeRangeView(float begin, float end, float lo, float hi)
    : m_begin(std::min(begin, end)), m_end(std::max(begin, end)), m_lo(std::min(lo, hi)), m_hi(std::max(lo, hi))
{
}

void TimeRangeView::zoom(float pivot, int notches)
{
    const double factor = std::pow(double(NOTCH_ZOOM), notches);
    const double span = double(m_end) - m_begin;
    const double newSpan = std::clamp(span * factor, double(MIN_SPAN), double(m_hi) - m_lo);
    // The pivot keeps its share of the range, so the time under the pointer stays under it.
    const double share = span > 0.0 ? (double(pivot) - m_begin) / span : 0.5;
    place(double(pivot) - share * newSpan, newSpan);
}

void TimeRangeView::pan(float seconds)
{
    place(double(m_begin) + seconds, double(m_end) - m_begin);
}

void TimeRangeView::frame(float from, float to)
{
    const double low = std::min(from, to), high = std::max(from, to);
    if (high - low <= 0.0) {
        place(low - SINGLE_TIME_SPAN / 2.0, SINGLE_TIME_SPAN);
        return;
    }
    const double margin = (high - low) * FRAME_MARGIN;
    place(low - margin, high - low + 2.0 * margin);
}

void TimeRangeView::frameAll()
{
    place(m_lo, double(m_hi) - m_lo);
}

void TimeRangeView::place(double begin, double span)
{
    const double room = double(m_hi) - m_lo;
    span = std::min(std::max(span, double(MIN_SPAN)), room);
    begin = std::clamp(begin, double(m_lo), double(m_hi) - span);
    m_begin = float(begin);
    m_end = std::min(float(begin + span), m_hi);
    if (!(m_end > m_begin)) // a track of no length shows its one time
        m_end = m_begin;
}
