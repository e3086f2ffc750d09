#include "ui/UITrackRowPanel.h"

#include "TrackEditorMsg.h"
#include "kit/jAllocator.h"
#include "kit/jLog.h"
#include "msg/MsgMngr.h"
#include "ui/UICanvas.h"
#include "ui/UIScrollBox.h"

namespace {

UITrackRowPanel* g_instance = nullptr;
const vec4 BACKGROUND{0.1f, 0.1f, 0.1f, 1.0f};
// The host message the panel posts when the user changed the selection.

} // namespace

UITrackRowPanel::UITrackRowPanel(UIRoot* root, const jVector<UITrackRow::RowData>& columns)
    : UIVLayout(root, 0)
{
    setBackgroundColor(BACKGROUND);
    setMaskBackground(true);
    m_scroll = jNew<UIScrollBox>("src/ui/UITrackRowPanel", __LINE__, "UITrackRowPanel::UITrackRowPanel", root);
    addChild(m_scroll, UI_EXPAND_BOTH, -1);
    m_canvas = jNew<UICanvas>("src/ui/UITrackRowPanel", __LINE__, "UITrackRowPanel::UITrackRowPanel", root);
    m_scroll->addChild(m_canvas, UI_EXPAND_BOTH, -1);
    m_canvas->setMinWidth(UITrackRow::BUTTON_WIDTH * columns.size());
    m_canvas->setMinHeight(UITrackRow::ROW_PITCH);
    g_instance = this;
}

UITrackRowPanel::~UITrackRowPanel()
{
    for (UITrackRow* row : m_rows)
        row->forgetRender();
    if (g_instance == this)
        g_instance = nullptr;
}

UITrackRowPanel* UITrackRowPanel::get()
{
    return g_instance;
}

void UITrackRowPanel::addRow(UITrackRow* row)
{
    if (m_rows.contains(row)) {
        jLog::error("%s: row is already defined", "UITrackRowPanel::addRow");
        return;
    }
    row->setPanel(this);
    row->attach(m_canvas);
    m_rows.append(row);
    m_dirty = true;
}

void UITrackRowPanel::removeRow(UITrackRow* row)
{
    if (!m_rows.removeValue(row)) {
        jLog::error("%s: can't find row", "UITrackRowPanel::removeRow");
        return;
    }
    m_selected.erase(row);
    m_saved_selection.erase(row);
    if (m_current == row)
        m_current = nullptr;
    if (m_tooltip_row == row)
        m_tooltip_row = nullptr; // the next move over its place describes the row there now
    m_dirty = true;
}

void UITrackRowPanel::moveRow(UITrackRow* row, UITrackRow* before)
{
    if (!m_rows.removeValue(row))
        return;
    m_rows.insert(m_rows.find(before), row);
    m_dirty = true;
}

void UITrackRowPanel::setCurrent(UITrackRow* row)
{
    if (m_current == row)
        return;
    m_current = row;
    m_dirty = true;
}

void UITrackRowPanel::setSelected(const jSet<UITrackRow*>& rows)
{
    m_selected.clear();
    for (UITrackRow* row : rows)
        m_selected.insert(row);
    m_dirty = true;
}

void UITrackRowPanel::select(UITrackRow* row)
{
    m_selected.clear();
    if (row)
        m_selected.insert(row);
    m_dirty = true;
}

bool UITrackRowPanel::any_row_dirty() const
{
    for (UITrackRow* row : m_rows)
        if (row->isDirty())
            return true;
    return false;
}

void UITrackRowPanel::layout_rows()
{
    m_canvas->setFixHeight(UITrackRow::ROW_PITCH * m_rows.size());
    for (int i = 0; i < m_rows.size(); ++i)
        m_rows[i]->layout(UITrackRow::ROW_PITCH * i, m_selected.contains(m_rows[i]), m_width, FONT_SIZE);
    m_dirty = false;
}

void UITrackRowPanel::release()
{
    for (UITrackRow* row : m_rows)
        row->forgetRender();
    m_rows.clear();
    m_selected.clear();
    m_saved_selection.clear();
    m_current = nullptr;
    m_tooltip_row = nullptr;
    UIVLayout::release();
    m_scroll = nullptr;
    m_canvas = nullptr;
}

void UITrackRowPanel::update(float dt)
{
    if (!m_canvas) {
        jLog::error("%s:%s", "UITrackRowPanel::update", "m_canvas");
        UIVLayout::update(dt);
        return;
    }
    if (m_canvas->getWidth() != m_width) {
        m_width = m_canvas->getWidth();
        m_dirty = true;
    }
    if (m_dirty || any_row_dirty())
        layout_rows();
    UIVLayout::update(dt);
}

bool UITrackRowPanel::onMouseDown(const UIEventMouse* e)
{
    bool inside = isHit(e->x, e->y);
    if ((!inside && !hasFocus()) || !e->isLeft() || !m_canvas)
        return UIVLayout::onMouseDown(e);
    if (!hasFocus())
        setFocus();
    int x = e->x;
    int y = e->y;
    m_canvas->screenToLocal(x, y);
    int hit = m_canvas->getPolygonIntersection(x, y);
    if (hit == -1) {
        if (inside)
            press_empty(e->isMultiSelect());
        return UIVLayout::onMouseDown(e);
    }
    for (UITrackRow* row : m_rows) {
        if (row->getBandPolygon() == hit) {
            press_band(row, e->isMultiSelect());
            return true;
        }
        int column = row->findColumn(hit);
        if (column >= 0) {
            row->toggleColumn(column); // a button never touches the selection
            return true;
        }
    }
    return UIVLayout::onMouseDown(e);
}

bool UITrackRowPanel::onMouseMove(const UIEventMouse* e)
{
    if (!m_canvas || m_describe.empty())
        return UIVLayout::onMouseMove(e);
    int x = e->x;
    int y = e->y;
    m_canvas->screenToLocal(x, y);
    const int index = y >= 0 ? y / UITrackRow::ROW_PITCH : -1;
    const UITrackRow* row = isHit(e->x, e->y) && index >= 0 && index < m_rows.size() ? m_rows[index] : nullptr;
    if (row != m_tooltip_row) {
        m_tooltip_row = row;
        m_tooltip = row ? m_describe(row) : jString();
        m_canvas->setTooltip(m_tooltip.c_str());
    }
    return UIVLayout::onMouseMove(e);
}

// Empty space always leaves the selection empty: it is cleared before the modifier is looked at,
// so a modifier press keeps an empty copy and tells the views nothing.
void UITrackRowPanel::press_empty(bool multiSelect)
{
    m_press = 1;
    setCurrent(nullptr);
    if (!m_selected.empty())
        m_dirty = true; // the rows drawn selected must be drawn plain again
    m_selected.clear();
    m_saved_selection = m_selected;
    if (!multiSelect)
        MsgMngr::get()->notifyHelper(TRACK_MSG_ROW_SELECTION);
}

// The modifier adds a row that is not selected yet; every other press selects the row alone, so a
// modifier press on a selected row keeps it.
void UITrackRowPanel::press_band(UITrackRow* row, bool multiSelect)
{
    m_press = 2;
    setCurrent(row);
    if (multiSelect && !m_selected.contains(row))
        m_selected.insert(row);
    else
        select(row);
    m_dirty = true;
    MsgMngr::get()->notifyHelper(TRACK_MSG_ROW_SELECTION);
}
