#include "ui/UIRubberBand.h"

#include <algorithm>

#include "ui/UICanvas.h"
#include "ui/UIRect.h"

namespace {

const vec4 FILL{0.5f, 0.5f, 0.8f, 0.25f};
const vec4 OUTLINE{0.8f, 0.8f, 1.0f, 1.0f};

} // namespace

UIRubberBand::UIRubberBand(UICanvas* canvas, int order)
    : m_canvas(canvas), m_fill(canvas->addPolygon(order)), m_outline(canvas->addLine(order + 1))
{
    m_canvas->setPolygonColor(m_fill, FILL);
    m_canvas->setLineColor(m_outline, OUTLINE);
}

void UIRubberBand::show(int x0, int y0, int x1, int y1, int& left, int& top, int& right, int& bottom)
{
    left = std::min(x0, x1);
    right = std::max(x0, x1);
    top = std::min(y0, y1);
    bottom = std::max(y0, y1);
    const UIRect box{float(left), float(top), float(right), float(bottom)};
    m_canvas->setLinePoints(m_outline, box.corners, 4, true);
    m_canvas->setPolygonPoints(m_fill, box.corners, 4);
}

void UIRubberBand::hide()
{
    m_canvas->clearLinePoints(m_outline);
    m_canvas->clearPolygonPoints(m_fill);
}

void UIRubberBand::raise(int order)
{
    m_canvas->setOrder(m_fill, order);
    m_canvas->setOrder(m_outline, order + 1);
}
