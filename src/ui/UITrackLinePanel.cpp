#include "ui/UITrackLinePanel.h"

#include <algorithm>

#include "data/AppData.h"
#include "kit/jAllocator.h"
#include "kit/jLog.h"
#include "ui/UICanvas.h"
#include "ui/UIScrollBox.h"
#include "ui/UITrackLine.h"
#include "ui/UITrackLineKey.h"

namespace {

constexpr const char* FILE_TAG = "src/ui/UITrackLinePanel";
UITrackLinePanel* g_instance = nullptr;

constexpr int SIDE_MARGIN = 6;

const vec4 BACKGROUND{0.1f, 0.1f, 0.1f, 1.0f};
const vec4 BOX_FILL{0.5f, 0.5f, 0.8f, 0.25f};
const vec4 BOX_OUTLINE{0.8f, 0.8f, 1.0f, 1.0f};

} // namespace

UITrackLinePanel::UITrackLinePanel(UIRoot* root)
    : UIVLayout(root, 0)
{
    setBackgroundColor(BACKGROUND);
    setMaskBackground(true);
    m_scroll = jNew<UIScrollBox>(FILE_TAG, __LINE__, "UITrackLinePanel::UITrackLinePanel", root);
    addChild(m_scroll, UI_EXPAND_BOTH, -1);
    m_canvas = jNew<UICanvas>(FILE_TAG, __LINE__, "UITrackLinePanel::UITrackLinePanel", root);
    m_scroll->addChild(m_canvas, UI_EXPAND_BOTH, -1);
    m_canvas->setMinHeight(UITrackLine::ROW_PITCH);
    m_box_polygon = m_canvas->addPolygon(m_order++);
    m_box_line = m_canvas->addLine(m_order++);
    m_canvas->setPolygonColor(m_box_polygon, BOX_FILL);
    m_canvas->setLineColor(m_box_line, BOX_OUTLINE);
    g_instance = this;
}

UITrackLinePanel::~UITrackLinePanel()
{
    for (UITrackLine* line : m_lines)
        line->forgetRender();
    if (g_instance == this)
        g_instance = nullptr;
}

UITrackLinePanel* UITrackLinePanel::get()
{
    return g_instance;
}

void UITrackLinePanel::release()
{
    for (UITrackLine* line : m_lines)
        line->forgetRender();
    m_lines.clear();
    m_selected_lines.clear();
    m_selected_keys.clear();
    m_saved_lines.clear();
    m_saved_keys.clear();
    m_current_line = nullptr;
    m_current_key = nullptr;
    UIVLayout::release();
    m_scroll = nullptr;
    m_canvas = nullptr;
}

int UITrackLinePanel::timeToPixel(float t, float begin, float end, int width)
{
    return int((t - begin) * float(width - 2 * SIDE_MARGIN) / (end - begin) + SIDE_MARGIN);
}

float UITrackLinePanel::pixelToTime(int x, float begin, float end, int width)
{
    return float(x - SIDE_MARGIN) * (end - begin) / float(width - 2 * SIDE_MARGIN) + begin;
}

void UITrackLinePanel::addLine(UITrackLine* line)
{
    if (hasLine(line)) {
        jLog::error("%s: curve is already defined", "UITrackLinePanel::addLine");
        return;
    }
    if (m_canvas)
        line->attach(m_canvas);
    m_lines.append(line);
    m_lines_dirty = true;
}

void UITrackLinePanel::removeLine(UITrackLine* line)
{
    if (!m_lines.removeValue(line)) {
        jLog::error("%s: can't find curve", "UITrackLinePanel::removeLine");
        return;
    }
    m_selected_lines.erase(line);
    m_saved_lines.erase(line);
    for (UITrackLineKey* key : line->getKeys())
        forgetKey(key);
    if (m_current_line == line)
        m_current_line = nullptr;
    m_lines_dirty = true;
}

void UITrackLinePanel::forgetKey(UITrackLineKey* key)
{
    m_selected_keys.erase(key);
    m_saved_keys.erase(key);
    if (m_current_key == key)
        m_current_key = nullptr;
    m_keys_dirty = true;
}

bool UITrackLinePanel::hasLine(const UITrackLine* line) const
{
    return m_lines.contains(const_cast<UITrackLine*>(line));
}

void UITrackLinePanel::setCurrentLine(UITrackLine* line)
{
    if (m_current_line != line)
        m_lines_dirty = true;
    m_current_line = line;
}

void UITrackLinePanel::setCurrentKey(UITrackLineKey* key)
{
    if (m_current_key != key)
        m_keys_dirty = true;
    m_current_key = key;
}

void UITrackLinePanel::setSelectedLines(const jVector<UITrackLine*>& lines)
{
    m_selected_lines.clear();
    for (UITrackLine* line : lines)
        m_selected_lines.insert(line);
    m_lines_dirty = true;
}

void UITrackLinePanel::setSelectedKeys(const jVector<UITrackLineKey*>& keys)
{
    m_selected_keys.clear();
    for (UITrackLineKey* key : keys)
        m_selected_keys.insert(key);
    m_keys_dirty = true;
}

void UITrackLinePanel::setDirty()
{
    m_lines_dirty = true;
}

void UITrackLinePanel::update(float dt)
{
    if (m_canvas && (m_canvas->getWidth() != m_width || m_canvas->getHeight() != m_height)) {
        m_width = m_canvas->getWidth();
        m_height = m_canvas->getHeight();
        m_lines_dirty = true;
    }
    bool dirty = m_lines_dirty || m_keys_dirty;
    for (int i = 0; i < m_lines.size() && !dirty; ++i)
        dirty = m_lines[i]->isDirty();
    if (m_canvas && dirty)
        render_lines();
    UIVLayout::update(dt);
}

void UITrackLinePanel::render_lines()
{
    m_canvas->setFixHeight(std::max(UITrackLine::ROW_PITCH * m_lines.size(), UITrackLine::ROW_PITCH));
    for (int i = 0; i < m_lines.size(); ++i) {
        UITrackLine* line = m_lines[i];
        const int y = UITrackLine::ROW_PITCH * i;
        if (line->getBandPolygon() == INVALID_INDEX) {
            jLog::error("%s:%s", "UITrackLinePanel::update", "id != INVALID_INDEX");
            continue;
        }
        line->render(y, m_width, m_selected_lines.contains(line));
        for (UITrackLineKey* key : line->getKeys()) {
            if (key->getHitPolygon() == INVALID_INDEX) {
                jLog::error("%s:%s", "UITrackLinePanel::update", "id != INVALID_INDEX");
                continue;
            }
            key->render(y, m_width, m_selected_keys.contains(key));
        }
        line->setDirty(false);
    }
    m_lines_dirty = false;
    m_keys_dirty = false;
}

void UITrackLinePanel::to_canvas(const UIEventMouse* e, int& x, int& y) const
{
    x = e->x;
    y = e->y;
    m_canvas->screenToLocal(x, y);
}
