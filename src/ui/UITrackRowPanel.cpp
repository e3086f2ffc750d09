#include "ui/UITrackRowPanel.h"

#include "kit/jAllocator.h"
#include "kit/jLog.h"
#include "ui/UICanvas.h"
#include "ui/UIScrollBox.h"

namespace {

UITrackRowPanel* g_instance = nullptr;
const vec4 BACKGROUND{0.1f, 0.1f, 0.1f, 1.0f};

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
