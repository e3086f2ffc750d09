#include "ui/UITimeRuler.h"

#include <algorithm>
#include <cmath>

#include "ui/TimeUnits.h"
#include "ui/UICanvas.h"
#include "ui/UITrackLinePanel.h"

namespace {

constexpr int SIDE_MARGIN = 6;
constexpr int TICK_LENGTH = 5;
constexpr int LABEL_FONT = 10;
constexpr int LABEL_LEFT = 2;
// A wider label than the first guess asks for a larger step; a few rounds always settle it.
constexpr int FIT_ROUNDS = 4;
// Light labels in a dark rim read on the bar's dark frame and on its grey band alike.
const vec4 TICK_COLOR{0.85f, 0.85f, 0.85f, 1.0f};
const vec4 LABEL_COLOR{0.92f, 0.92f, 0.92f, 1.0f};
const vec4 LABEL_RIM{0.08f, 0.08f, 0.08f, 1.0f};

} // namespace

void UITimeRuler::attach(UICanvas* canvas, int order)
{
    if (m_canvas == canvas)
        return;
    clearShapes();
    m_canvas = canvas;
    m_order = order;
}

void UITimeRuler::clearShapes()
{
    if (m_canvas)
        fit(0);
    m_canvas = nullptr;
    m_step = 0.0;
    m_width = -1;
}

void UITimeRuler::render(float from, float to, int width, int top, float fps)
{
    if (!m_canvas || (from == m_from && to == m_to && width == m_width && top == m_top && fps == m_fps))
        return;
    m_top = top;
    m_from = from;
    m_to = to;
    m_width = width;
    m_fps = fps;
    const double secondsPerPixel = double(to - from) / double(width - 2 * SIDE_MARGIN);
    int least = MIN_TICK_PIXELS;
    m_step = 0.0;
    for (int round = 0; round < FIT_ROUNDS && width > 2 * SIDE_MARGIN && to > from; ++round) {
        m_step = TimeUnits::rulerStep(secondsPerPixel, fps, least);
        const int widest = place(from, to, width, top, fps, m_step);
        if (LABEL_LEFT + widest + LABEL_GAP < int(m_step / secondsPerPixel))
            return;
        least = LABEL_LEFT + widest + LABEL_GAP + 1;
    }
    if (m_step == 0.0)
        fit(0);
}

int UITimeRuler::place(float from, float to, int width, int top, float fps, double step)
{
    const double first = std::ceil(double(from) / step);
    const int count = step > 0.0 ? int(std::clamp(std::floor(double(to) / step) - first + 1.0, 0.0, double(width))) : 0;
    fit(count);
    int widest = 0;
    for (int i = 0; i < count; ++i) {
        const double t = (first + i) * step;
        const int x = UITrackLinePanel::timeToPixel(float(t), from, to, width);
        const vec3 tick[2] = {vec3(float(x), float(top), 0.0f), vec3(float(x), float(top + TICK_LENGTH), 0.0f)};
        m_canvas->setLinePoints(m_ticks[i], tick, 2, false);
        m_texts[i] = TimeUnits::label(t, step, fps);
        m_canvas->setText(m_labels[i], m_texts[i].c_str());
        m_canvas->setTextPosition(m_labels[i], float(x + LABEL_LEFT), float(top));
        widest = std::max(widest, m_canvas->getTextWidth(m_labels[i]));
    }
    return widest;
}

void UITimeRuler::fit(int count)
{
    while (m_ticks.size() > count) {
        const int last = m_ticks.size() - 1;
        m_canvas->removeLine(m_ticks[last]);
        m_canvas->removeText(m_labels[last]);
        m_ticks.remove(last);
        m_labels.remove(last);
        m_texts.remove(last);
    }
    while (m_ticks.size() < count) {
        m_ticks.append(m_canvas->addLine(m_order));
        m_canvas->setLineColor(m_ticks.back(), TICK_COLOR);
        m_labels.append(m_canvas->addText(m_order));
        m_canvas->setTextColor(m_labels.back(), LABEL_COLOR);
        m_canvas->setTextFontSize(m_labels.back(), LABEL_FONT);
        m_canvas->setTextOutline(m_labels.back(), 1);
        m_canvas->setTextOutlineColor(m_labels.back(), LABEL_RIM);
        m_texts.append(jString());
    }
}
