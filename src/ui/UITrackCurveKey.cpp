#include "ui/UITrackCurveKey.h"

#include <cmath>
#include <numbers>

#include "data/FKeyDouble.h"
#include "data/FKeyFloat.h"
#include "ui/UICanvas.h"
#include "ui/UIRect.h"
#include "ui/UITrackCurve.h"

namespace {

const vec4 SELECTED_COLOR{1.0f, 1.0f, 1.0f, 1.0f};
const vec4 HANDLE_LINE_COLOR{0.7f, 0.7f, 0.7f, 1.0f};
const vec4 HANDLE_DOT_COLOR{0.85f, 0.85f, 0.85f, 1.0f};

// Over the curves (UITrackCurve draws at 10): handle lines, their dots, and the marks on top, so
// that a press on a key finds its mark first.
constexpr int ORDER_HANDLE_LINE = 11;
constexpr int ORDER_HANDLE_DOT = 12;
constexpr int ORDER_MARK = 13;

constexpr float MARK_HALF = 3.5f;
constexpr float DOT_RADIUS = 3.0f;
constexpr int DOT_CORNERS = 8;

} // namespace

void UITrackCurveKey::clearRender()
{
    if (m_curve)
        m_curve->removeKey(this);
    m_curve = nullptr;
}

float UITrackCurveKey::getTime() const
{
    return m_key ? m_key->getTime() : 0.0f;
}

double UITrackCurveKey::getValue() const
{
    if (const auto* f = dynamic_cast<const FKeyFloat*>(m_key))
        return f->getValue();
    if (const auto* d = dynamic_cast<const FKeyDouble*>(m_key))
        return d->getValue();
    return 0.0;
}

void UITrackCurveKey::setTimeAndValue(float time, double value)
{
    if (!m_key)
        return;
    m_key->setTime(time);
    if (auto* f = dynamic_cast<FKeyFloat*>(m_key))
        f->setValue(float(value));
    else if (auto* d = dynamic_cast<FKeyDouble*>(m_key))
        d->setValue(value);
}

int UITrackCurveKey::getHandlePolygon(int side) const
{
    return valid(side) ? m_handle_dots[side] : INVALID_INDEX;
}

vec3 UITrackCurveKey::getHandlePoint(int side) const
{
    if (!valid(side))
        return vec3();
    return m_curve ? m_handle_points[side] + m_curve->getOffset() : m_handle_points[side];
}

void UITrackCurveKey::render(const vec3& point, const vec4& color, bool selected, const vec3* in, const vec3* out)
{
    if (!m_curve || !m_curve->getCanvas())
        return;
    draw_mark(point, color, selected);
    draw_handle(SIDE_IN, point, in);
    draw_handle(SIDE_OUT, point, out);
}

void UITrackCurveKey::draw_mark(const vec3& point, const vec4& color, bool selected)
{
    UICanvas* canvas = m_curve->getCanvas();
    const vec4& fill = selected ? SELECTED_COLOR : color;
    if (m_mark == INVALID_INDEX) {
        m_mark = canvas->addPolygon(ORDER_MARK);
        canvas->followTrace(m_mark, m_curve->getPolyline());
        m_mark_color = vec4(-1.0f, -1.0f, -1.0f, -1.0f); // a new shape is white: no colour matches
    }
    const UIRect square(point.x - MARK_HALF, point.y - MARK_HALF, point.x + MARK_HALF, point.y + MARK_HALF);
    canvas->setPolygonPoints(m_mark, square.corners, 4);
    if (fill == m_mark_color)
        return; // a pan moves thousands of marks and recolours none
    canvas->setPolygonColor(m_mark, fill);
    m_mark_color = fill;
}

void UITrackCurveKey::draw_handle(int side, const vec3& point, const vec3* handle)
{
    if (!handle) {
        remove_handle(side);
        return;
    }
    UICanvas* canvas = m_curve->getCanvas();
    if (m_handle_dots[side] == INVALID_INDEX) {
        m_handle_lines[side] = canvas->addLine(ORDER_HANDLE_LINE);
        m_handle_dots[side] = canvas->addPolygon(ORDER_HANDLE_DOT);
        canvas->followTrace(m_handle_lines[side], m_curve->getPolyline());
        canvas->followTrace(m_handle_dots[side], m_curve->getPolyline());
        canvas->setLineColor(m_handle_lines[side], HANDLE_LINE_COLOR);
        canvas->setPolygonColor(m_handle_dots[side], HANDLE_DOT_COLOR);
    }
    const vec3 line[2] = {point, *handle};
    canvas->setLinePoints(m_handle_lines[side], line, 2, false);
    vec3 dot[DOT_CORNERS];
    for (int i = 0; i < DOT_CORNERS; ++i) {
        const float angle = 2.0f * std::numbers::pi_v<float> * float(i) / float(DOT_CORNERS);
        dot[i] = vec3(handle->x + DOT_RADIUS * std::cos(angle), handle->y + DOT_RADIUS * std::sin(angle), 0.0f);
    }
    canvas->setPolygonPoints(m_handle_dots[side], dot, DOT_CORNERS);
    m_handle_points[side] = *handle;
}

void UITrackCurveKey::remove_handle(int side)
{
    UICanvas* canvas = m_curve ? m_curve->getCanvas() : nullptr;
    if (canvas && m_handle_dots[side] != INVALID_INDEX) {
        canvas->removeLine(m_handle_lines[side]);
        canvas->removePolygon(m_handle_dots[side]);
    }
    m_handle_lines[side] = m_handle_dots[side] = INVALID_INDEX;
}

void UITrackCurveKey::hide()
{
    UICanvas* canvas = m_curve ? m_curve->getCanvas() : nullptr;
    if (canvas && m_mark != INVALID_INDEX)
        canvas->removePolygon(m_mark);
    m_mark = INVALID_INDEX;
    remove_handle(SIDE_IN);
    remove_handle(SIDE_OUT);
}
