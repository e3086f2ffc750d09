#include "ui/UITrackLineKey.h"

#include "TrackEditorMsg.h"
#include "data/FKey.h"
#include "data/FParameterSingle.h"
#include "msg/MsgMngr.h"
#include "ui/UICanvas.h"
#include "ui/UIRect.h"
#include "ui/UITrackLine.h"

static_assert(sizeof(UITrackLineKey) <= 48, "a mark per key of a large track: keep it in the allocator's 48-byte class");

namespace {

const vec4 OUTLINE_COLOR{0.6f, 0.6f, 0.6f, 1.0f};
const vec4 SELECTED_COLOR{1.0f, 1.0f, 1.0f, 1.0f};
const vec4 HIT_COLOR{0.0f, 0.0f, 0.0f, 0.0f};

// Marks lie over the line bands; the hit area is on top so that a press finds the key.
constexpr int ORDER_MARK = 2;
constexpr int ORDER_OUTLINE = 3;
constexpr int ORDER_TEXT = 4;
constexpr int ORDER_HIT = 5;

} // namespace

UITrackLineKey::UITrackLineKey(FKey* key)
    : m_key(key)
{
}

UITrackLineKey::~UITrackLineKey() = default;

void UITrackLineKey::commit_edit()
{
    if (m_key && m_key->getParameter())
        m_key->getParameter()->applyKeys();
    if (m_line)
        m_line->setDirty(true);
    MsgMngr::get()->notifyHelper(TRACK_MSG_KEYS_CHANGED);
}

float UITrackLineKey::getTime() const
{
    return m_key ? m_key->getTime() : 0.0f;
}

void UITrackLineKey::setLine(UITrackLine* line)
{
    m_line = line;
    UICanvas* canvas = line ? line->getCanvas() : nullptr;
    if (canvas == m_canvas)
        return;
    clearShapes();
    m_canvas = canvas;
}

void UITrackLineKey::make_shapes()
{
    m_text = m_canvas->addText(ORDER_TEXT);
    m_outline = m_canvas->addLine(ORDER_OUTLINE);
    m_mark_polygon = m_canvas->addPolygon(ORDER_MARK);
    m_hit_polygon = m_canvas->addPolygon(ORDER_HIT);
    m_canvas->setLineColor(m_outline, OUTLINE_COLOR);
    m_canvas->setPolygonColor(m_hit_polygon, HIT_COLOR);
}

void UITrackLineKey::hide()
{
    if (m_canvas && m_hit_polygon != INVALID_INDEX) {
        m_canvas->removeText(m_text);
        m_canvas->removeLine(m_outline);
        m_canvas->removePolygon(m_mark_polygon);
        m_canvas->removePolygon(m_hit_polygon);
    }
    m_text = m_outline = m_mark_polygon = m_hit_polygon = INVALID_INDEX;
}

void UITrackLineKey::conceal()
{
    if (!m_canvas || m_hit_polygon == INVALID_INDEX || m_concealed)
        return; // a covered mark stays covered through a pan: its shapes are empty already
    m_concealed = true;
    m_canvas->setText(m_text, "");
    m_canvas->clearLinePoints(m_outline);
    m_canvas->clearPolygonPoints(m_mark_polygon);
    m_canvas->clearPolygonPoints(m_hit_polygon);
}

void UITrackLineKey::clearShapes()
{
    hide();
    m_canvas = nullptr;
}

void UITrackLineKey::forgetRender()
{
    m_canvas = nullptr;
    m_text = m_outline = m_mark_polygon = m_hit_polygon = INVALID_INDEX;
}

void UITrackLineKey::clearRender()
{
    if (m_line) {
        m_line->removeKey(this);
        m_line = nullptr;
    }
    clearShapes();
}

void UITrackLineKey::render(int x, int y, bool selected)
{
    if (!m_canvas)
        return;
    if (m_hit_polygon == INVALID_INDEX)
        make_shapes();
    m_concealed = false;
    draw_text(x, y);
    const float l = float(x - 6), c = float(x), r = float(x + 6);
    const vec3 up[5] = {{l, float(y + 14), 0}, {c, float(y + 8), 0}, {r, float(y + 14), 0},
                        {r, float(y + 21), 0}, {l, float(y + 21), 0}};
    const vec3 down[5] = {{l, float(y + 8), 0}, {r, float(y + 8), 0}, {r, float(y + 15), 0},
                          {c, float(y + 21), 0}, {l, float(y + 15), 0}};
    const vec3* mark = isEmptyMark() ? down : up;
    m_canvas->setLinePoints(m_outline, mark, 5, true);
    m_canvas->setPolygonPoints(m_mark_polygon, mark, 5);
    m_canvas->setPolygonColor(m_mark_polygon, selected ? SELECTED_COLOR : getColor());
    m_canvas->setPolygonPoints(m_hit_polygon, UIRect(l, float(y), r, float(y + 21)).corners, 4);
}

void UITrackLineKey::draw_text(int x, int y)
{
    const jString text = getText();
    m_canvas->setText(m_text, text.c_str());
    if (text.empty())
        return;
    const int h = m_canvas->getTextHeight(m_text);
    m_canvas->setTextPosition(m_text, float(x + 6), float(y + 22 - (3 * h / 2 + 30) / 2));
}
