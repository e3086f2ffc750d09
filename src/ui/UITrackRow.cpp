#include "ui/UITrackRow.h"

#include "ui/UICanvas.h"
#include "ui/UIRect.h"
#include "ui/UITrackRowPanel.h"

namespace {

const vec4 OUTLINE_COLOR{0.0f, 0.0f, 0.0f, 1.0f};
const vec4 BUTTON_ON_COLOR{0.5f, 0.5f, 0.5f, 1.0f};
const vec4 BUTTON_OFF_COLOR{0.25f, 0.25f, 0.25f, 1.0f};

// Draw orders: bands under their outlines, texts over both, buttons on top.
constexpr int ORDER_BAND = 0;
constexpr int ORDER_BAND_LINE = 1;
constexpr int ORDER_TEXT = 2;
constexpr int ORDER_BUTTON = 3;
constexpr int ORDER_BUTTON_LINE = 4;
constexpr int ORDER_BUTTON_TEXT = 5;

void setRect(UICanvas* canvas, int line, int polygon, int x0, int y0, int x1, int y1)
{
    const UIRect rect{float(x0), float(y0), float(x1), float(y1)};
    canvas->setLinePoints(line, rect.corners, 4, true);
    canvas->setPolygonPoints(polygon, rect.corners, 4);
}

int makeText(UICanvas* canvas, int order)
{
    int id = canvas->addText(order);
    canvas->setTextOutline(id, 1);
    return id;
}

int makeLine(UICanvas* canvas, int order)
{
    int id = canvas->addLine(order);
    canvas->setLineColor(id, OUTLINE_COLOR);
    return id;
}

} // namespace

UITrackRow::UITrackRow(const jVector<RowData>& columns)
    : m_columns(columns)
{
    reset_ids();
}

UITrackRow::~UITrackRow() = default;

void UITrackRow::reset_ids()
{
    m_name_text = m_value_text = m_band_line = m_band_polygon = -1;
    for (jVector<int>* ids : {&m_column_texts, &m_column_lines, &m_column_polygons}) {
        ids->clear();
        for (int k = 0; k < m_columns.size(); ++k)
            ids->append(-1);
    }
}

void UITrackRow::clearRender()
{
    if (m_panel) {
        m_panel->removeRow(this);
        m_panel = nullptr;
    }
    if (m_canvas) {
        m_canvas->removeText(m_name_text);
        m_canvas->removeText(m_value_text);
        m_canvas->removeLine(m_band_line);
        m_canvas->removePolygon(m_band_polygon);
        for (int k = 0; k < m_columns.size(); ++k) {
            m_canvas->removeText(m_column_texts[k]);
            m_canvas->removeLine(m_column_lines[k]);
            m_canvas->removePolygon(m_column_polygons[k]);
        }
        m_canvas = nullptr;
    }
    reset_ids();
    m_dirty = false;
}

void UITrackRow::forgetRender()
{
    m_panel = nullptr;
    m_canvas = nullptr;
    reset_ids();
}

void UITrackRow::setName(const jString& name)
{
    m_name = name;
    m_dirty = true;
}

void UITrackRow::setText(const jString& text)
{
    m_text = text;
    m_dirty = true;
}

void UITrackRow::setIndent(int indent)
{
    m_indent = indent;
    m_dirty = true;
}

void UITrackRow::setColor(const vec4& color)
{
    m_color = color;
    m_dirty = true;
}

bool UITrackRow::getState(int k) const
{
    return k >= 0 && k < m_columns.size() && m_columns[k].state;
}

void UITrackRow::setState(int k, bool on)
{
    if (k < 0 || k >= m_columns.size() || m_columns[k].state == on)
        return;
    m_columns[k].state = on;
    m_dirty = true;
}

void UITrackRow::toggleColumn(int k)
{
    if (k < 0 || k >= m_columns.size())
        return;
    m_columns[k].state = !m_columns[k].state;
    m_dirty = true;
    for (const Function<void()>& handler : m_changed)
        handler();
    for (const Function<void(UITrackRow*&&)>& handler : m_row_changed)
        handler(this);
}

void UITrackRow::attach(UICanvas* canvas)
{
    if (m_canvas == canvas)
        return;
    if (m_canvas)
        clearRender();
    m_canvas = canvas;
    m_name_text = makeText(canvas, ORDER_TEXT);
    m_value_text = makeText(canvas, ORDER_TEXT);
    m_band_line = makeLine(canvas, ORDER_BAND_LINE);
    m_band_polygon = canvas->addPolygon(ORDER_BAND);
    for (int k = 0; k < m_columns.size(); ++k) {
        m_column_texts[k] = makeText(canvas, ORDER_BUTTON_TEXT);
        m_column_lines[k] = makeLine(canvas, ORDER_BUTTON_LINE);
        m_column_polygons[k] = canvas->addPolygon(ORDER_BUTTON);
    }
    m_dirty = true;
}

void UITrackRow::layout(int y, bool selected, int width, int fontSize)
{
    m_dirty = false;
    if (!m_canvas)
        return;
    const int right = width - BUTTON_WIDTH * m_columns.size();
    setRect(m_canvas, m_band_line, m_band_polygon, m_indent, y, right, y + BAND_HEIGHT);
    m_canvas->setPolygonColor(m_band_polygon, selected ? m_selected_color : m_color);

    m_canvas->setText(m_name_text, m_name.c_str());
    m_canvas->setTextPosition(m_name_text, float(m_indent + fontSize / 2), float(y));
    m_canvas->setText(m_value_text, m_text.c_str());
    m_canvas->setTextPosition(m_value_text, float(right - fontSize / 2 - m_canvas->getTextWidth(m_value_text)),
                              float(y));
    for (int k = 0; k < m_columns.size(); ++k)
        layout_column(k, right + BUTTON_WIDTH * k, y);
}

void UITrackRow::layout_column(int k, int x, int y)
{
    setRect(m_canvas, m_column_lines[k], m_column_polygons[k], x, y, x + BUTTON_WIDTH, y + BAND_HEIGHT);
    m_canvas->setPolygonColor(m_column_polygons[k], m_columns[k].state ? BUTTON_ON_COLOR : BUTTON_OFF_COLOR);
    m_canvas->setText(m_column_texts[k], m_columns[k].text.c_str());
    const int label = m_canvas->getTextWidth(m_column_texts[k]);
    m_canvas->setTextPosition(m_column_texts[k], float(x + (BUTTON_WIDTH - label) / 2), float(y));
}

int UITrackRow::findColumn(int polygon) const
{
    if (polygon < 0)
        return -1;
    for (int k = 0; k < m_column_polygons.size(); ++k)
        if (m_column_polygons[k] == polygon)
            return k;
    return -1;
}
