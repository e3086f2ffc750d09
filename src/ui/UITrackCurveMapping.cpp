#include "ui/UITrackCurveMapping.h"

#include <algorithm>
#include <cmath>

void UITrackCurveMapping::setSize(int width, int height)
{
    m_width = std::max(width, 0);
    m_height = std::max(height, 0);
    rescale();
}

void UITrackCurveMapping::setTimeRange(double begin, double end)
{
    m_begin = std::min(begin, end);
    m_end = std::max(begin, end);
    rescale();
}

void UITrackCurveMapping::setValueRange(double low, double high)
{
    if (!std::isfinite(low) || !std::isfinite(high))
        return;
    m_low = std::min(low, high);
    m_high = std::max(low, high);
    const double span = min_span(m_low, m_high);
    if (m_high - m_low < span) {
        const double middle = 0.5 * (m_low + m_high);
        m_low = middle - 0.5 * span;
        m_high = middle + 0.5 * span;
    }
    rescale();
}

void UITrackCurveMapping::rescale()
{
    const double span = m_end - m_begin;
    m_x_scale = span > 0.0 ? time_pixels() / span : 0.0;
    m_y_scale = value_pixels() / (m_high - m_low);
}

double UITrackCurveMapping::time_pixels() const
{
    return std::max(m_width - 2 * SIDE_MARGIN, 1);
}

double UITrackCurveMapping::value_pixels() const
{
    return std::max(m_height - 2 * VALUE_MARGIN, 1);
}

double UITrackCurveMapping::min_span(double low, double high)
{
    return MIN_SPAN_RATIO * std::max({1.0, std::fabs(low), std::fabs(high)});
}

double UITrackCurveMapping::timeOfX(double x) const
{
    return (x - SIDE_MARGIN) * timePerPixel() + m_begin;
}

double UITrackCurveMapping::valueOfY(double y) const
{
    return m_high - (y - VALUE_MARGIN) * valuePerPixel();
}

double UITrackCurveMapping::timePerPixel() const
{
    return (m_end - m_begin) / time_pixels();
}

double UITrackCurveMapping::valuePerPixel() const
{
    return (m_high - m_low) / value_pixels();
}

void UITrackCurveMapping::zoomValue(double y, double factor)
{
    if (!(factor > 0.0) || !std::isfinite(factor))
        return;
    const double v = valueOfY(y);
    const double low = v - (v - m_low) * factor;
    const double high = v + (m_high - v) * factor;
    if (std::isfinite(low) && std::isfinite(high) && high - low >= min_span(low, high))
        setValueRange(low, high);
}

void UITrackCurveMapping::panValue(double dy)
{
    const double shift = dy * valuePerPixel();
    setValueRange(m_low + shift, m_high + shift);
}

void UITrackCurveMapping::frameValues(double low, double high)
{
    const double lo = std::min(low, high);
    const double hi = std::max(low, high);
    if (hi - lo >= FLAT_RATIO * std::max({1.0, std::fabs(lo), std::fabs(hi)})) {
        setValueRange(lo, hi);
        return;
    }
    const double middle = 0.5 * (lo + hi);
    const double half = 0.5 * std::max(1.0, FLAT_SPAN * std::fabs(middle));
    setValueRange(middle - half, middle + half);
}

double UITrackCurveMapping::gridStep(double valuePerPixel, int minPixels)
{
    const double least = valuePerPixel * minPixels;
    if (!(least > 0.0) || !std::isfinite(least))
        return 0.0;
    // log10 may land a hair on either side of a power of ten: the decade below is tried as well.
    const int decade = static_cast<int>(std::floor(std::log10(least))) - 1;
    for (int e = decade;; ++e) {
        // Dividing by an exact power of ten rounds 2 x 10^-3 to the double nearest 0.002.
        const double scale = std::pow(10.0, std::abs(e));
        for (const double m : {1.0, 2.0, 5.0}) {
            const double step = e >= 0 ? m * scale : m / scale;
            if (step >= least)
                return step;
        }
    }
}
