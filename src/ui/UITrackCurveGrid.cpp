#include "ui/UITrackCurveGrid.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "ui/UICanvas.h"
#include "ui/UITrackCurveMapping.h"

namespace {

// Beneath the curves (UITrackCurve draws at 10).
constexpr int ORDER_LINE = 0;
constexpr int ORDER_LABEL = 1;
constexpr int ORDER_CURSOR = 2;

const vec4 VALUE_LINE_COLOR{0.3f, 0.3f, 0.3f, 1.0f};
const vec4 TIME_LINE_COLOR{0.26f, 0.26f, 0.26f, 1.0f};
const vec4 LABEL_COLOR{0.6f, 0.6f, 0.6f, 1.0f};
const vec4 CURSOR_COLOR{0.85f, 0.85f, 0.85f, 0.8f};
constexpr int LABEL_FONT = 11;
constexpr float LABEL_LEFT = 2.0f;
// The most significant digits a double tells apart.
constexpr int MAX_DIGITS = 17;
// Below this magnitude a label keeps every digit before the point.
constexpr double PLAIN_LIMIT = 1e6;

int decade(double v)
{
    return static_cast<int>(std::floor(std::log10(std::fabs(v))));
}

// The multiples of step between lo and hi: first (the multiplier of the lowest) and count, at
// most max.
void multiples(double lo, double hi, double step, int max, double& first, int& count)
{
    count = 0;
    if (!(step > 0.0))
        return;
    first = std::ceil(lo / step);
    const double n = std::floor(hi / step) - first + 1.0;
    if (n > 0.0)
        count = static_cast<int>(std::min(n, static_cast<double>(max)));
}

} // namespace

void UITrackCurveGrid::attach(UICanvas* canvas)
{
    if (m_canvas == canvas)
        return;
    clearShapes();
    if (!canvas)
        return;
    m_canvas = canvas;
    m_cursor = canvas->addLine(ORDER_CURSOR);
    m_canvas->setLineColor(m_cursor, CURSOR_COLOR);
}

void UITrackCurveGrid::clearShapes()
{
    if (!m_canvas)
        return;
    fit_lines(m_value_lines, 0, VALUE_LINE_COLOR);
    fit_labels(0);
    fit_lines(m_time_lines, 0, TIME_LINE_COLOR);
    m_canvas->removeLine(m_cursor);
    m_cursor = -1;
    m_canvas = nullptr;
}

void UITrackCurveGrid::render(const UITrackCurveMapping& mapping, double time)
{
    if (!m_canvas)
        return;
    render_values(mapping);
    render_times(mapping);
    render_cursor(mapping, time);
}

void UITrackCurveGrid::render_values(const UITrackCurveMapping& mapping)
{
    const double step = UITrackCurveMapping::gridStep(mapping.valuePerPixel(), VALUE_PIXELS);
    const int height = mapping.getHeight();
    double first = 0.0;
    int count = 0;
    multiples(mapping.valueOfY(height), mapping.valueOfY(0), step, height / VALUE_PIXELS + 2, first, count);
    fit_lines(m_value_lines, count, VALUE_LINE_COLOR);
    fit_labels(count);
    for (int i = 0; i < count; ++i) {
        const double value = (first + i) * step;
        const double y = mapping.yOfValue(value);
        set_line(m_value_lines[i], 0.0, y, mapping.getWidth(), y);
        m_canvas->setText(m_labels[i], formatValue(value, step).c_str());
        m_canvas->setTextPosition(m_labels[i], LABEL_LEFT, float(y) - float(m_canvas->getTextHeight(m_labels[i])));
    }
}

void UITrackCurveGrid::render_times(const UITrackCurveMapping& mapping)
{
    const double step = UITrackCurveMapping::gridStep(mapping.timePerPixel(), TIME_PIXELS);
    const int width = mapping.getWidth();
    double first = 0.0;
    int count = 0;
    multiples(mapping.timeOfX(0), mapping.timeOfX(width), step, width / TIME_PIXELS + 2, first, count);
    fit_lines(m_time_lines, count, TIME_LINE_COLOR);
    for (int i = 0; i < count; ++i) {
        const double x = mapping.xOfTime((first + i) * step);
        set_line(m_time_lines[i], x, 0.0, x, mapping.getHeight());
    }
}

void UITrackCurveGrid::render_cursor(const UITrackCurveMapping& mapping, double time)
{
    const double x = mapping.xOfTime(time);
    set_line(m_cursor, x, 0.0, x, mapping.getHeight());
}

void UITrackCurveGrid::set_line(int id, double x0, double y0, double x1, double y1)
{
    const vec3 ends[2] = {vec3(float(x0), float(y0), 0.0f), vec3(float(x1), float(y1), 0.0f)};
    m_canvas->setLinePoints(id, ends, 2, false);
}

void UITrackCurveGrid::fit_lines(jVector<int>& ids, int count, const vec4& color)
{
    for (; ids.size() > count; ids.remove(ids.size() - 1))
        m_canvas->removeLine(ids.back());
    while (ids.size() < count) {
        ids.append(m_canvas->addLine(ORDER_LINE));
        m_canvas->setLineColor(ids.back(), color);
    }
}

void UITrackCurveGrid::fit_labels(int count)
{
    for (; m_labels.size() > count; m_labels.remove(m_labels.size() - 1))
        m_canvas->removeText(m_labels.back());
    while (m_labels.size() < count) {
        m_labels.append(m_canvas->addText(ORDER_LABEL));
        m_canvas->setTextColor(m_labels.back(), LABEL_COLOR);
        m_canvas->setTextFontSize(m_labels.back(), LABEL_FONT);
    }
}

jString UITrackCurveGrid::formatValue(double value, double step)
{
    if (value == 0.0)
        return jString("0");
    int digits = 6;
    if (std::isfinite(value) && step > 0.0 && std::isfinite(step)) {
        digits = decade(value) - decade(step) + 1;
        if (std::fabs(value) < PLAIN_LIMIT)
            digits = std::max(digits, decade(value) + 1);
    }
    char text[32];
    std::snprintf(text, sizeof(text), "%.*g", std::clamp(digits, 1, MAX_DIGITS), value);
    return jString(text);
}
