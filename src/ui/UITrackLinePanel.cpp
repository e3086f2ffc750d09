#include "ui/UITrackLinePanel.h"

#include <algorithm>
#include <climits>
#include <cmath>

#include "data/AppData.h"
#include "kit/jAllocator.h"
#include "kit/jLog.h"
#include "ui/UICanvas.h"
#include "ui/UIRubberBand.h"
#include "ui/UIScrollBox.h"
#include "ui/UITrackLine.h"
#include "ui/UITrackLineKey.h"

namespace {

constexpr const char* FILE_TAG = "src/ui/UITrackLinePanel";
UITrackLinePanel* g_instance = nullptr;

constexpr int SIDE_MARGIN = 6;
// Pixels between the marks of two keys below which only the first is drawn: a mark is this wide,
// so a drawn mark stands for the keys its area covers, which the pointer cannot tell apart anyway.
constexpr int MIN_MARK_SPACING = 12;

// Pixels beyond this distance from the margin are far off any canvas; holding the mapping there
// keeps a key far outside a narrow range within what an int can hold.
constexpr float PIXEL_LIMIT = 1.0e6f;

// The visible range in its ordered form over the pixels between the side margins. A range without
// width, or a canvas without room between its margins, is flat: every time maps to the left margin
// and every pixel to the range's one time, so no mapping divides by zero.
struct TimeScale {
    float begin;
    float span;
    float room;

    TimeScale(float from, float to, int width)
        : begin(std::min(from, to)), span(std::abs(to - from)), room(float(width - 2 * SIDE_MARGIN))
    {
    }
    bool flat() const { return span <= 0.0f || room <= 0.0f; }
    int pixelOf(float t) const
    {
        if (flat())
            return SIDE_MARGIN;
        return int(std::clamp((t - begin) * room / span, -PIXEL_LIMIT, PIXEL_LIMIT) + SIDE_MARGIN);
    }
};

const vec4 BACKGROUND{0.1f, 0.1f, 0.1f, 1.0f};
// The current-time line, as light as the curve view's, over every mark.
const vec4 CURSOR_COLOR{0.85f, 0.85f, 0.85f, 0.8f};
constexpr int CURSOR_ORDER = INT_MAX / 2;

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
    m_box = jNew<UIRubberBand>(FILE_TAG, __LINE__, "UITrackLinePanel::UITrackLinePanel", m_canvas, m_order);
    m_order += 2;
    m_cursor = m_canvas->addLine(CURSOR_ORDER);
    m_canvas->setLineColor(m_cursor, CURSOR_COLOR);
    g_instance = this;
}

UITrackLinePanel::~UITrackLinePanel()
{
    for (UITrackLine* line : m_lines)
        line->forgetRender();
    jDelete(m_box, FILE_TAG, __LINE__, "UITrackLinePanel::~UITrackLinePanel");
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
    jDelete(m_box, FILE_TAG, __LINE__, "UITrackLinePanel::release");
    m_box = nullptr;
    m_cursor = -1;
    UIVLayout::release();
    m_scroll = nullptr;
    m_canvas = nullptr;
}

int UITrackLinePanel::timeToPixel(float t, float begin, float end, int width)
{
    return TimeScale(begin, end, width).pixelOf(t);
}

float UITrackLinePanel::pixelToTime(int x, float begin, float end, int width)
{
    const TimeScale scale(begin, end, width);
    if (scale.flat())
        return scale.begin;
    return float(x - SIDE_MARGIN) * scale.span / scale.room + scale.begin;
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

void UITrackLinePanel::moveLine(UITrackLine* line, UITrackLine* before)
{
    if (!m_lines.removeValue(line))
        return;
    m_lines.insert(m_lines.find(before), line);
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
    if (m_canvas) {
        if (m_canvas->getWidth() != m_width || m_canvas->getHeight() != m_height) {
            m_width = m_canvas->getWidth();
            m_height = m_canvas->getHeight();
            m_lines_dirty = true;
        }
        render_lines();
        render_cursor();
    }
    UIVLayout::update(dt);
}

void UITrackLinePanel::render_cursor()
{
    const AppData* hub = AppData::get();
    const int x = timeToPixel(hub->getTime(), hub->getBeginTime(), hub->getEndTime(), m_width);
    const int height = m_canvas->getHeight();
    if (x == m_cursor_x && height == m_cursor_height)
        return;
    m_cursor_x = x;
    m_cursor_height = height;
    const vec3 ends[2] = {vec3(float(x), 0.0f, 0.0f), vec3(float(x), float(height), 0.0f)};
    m_canvas->setLinePoints(m_cursor, ends, 2, false);
}

// Only the lines in view are drawn; a line that scrolls out gives its marks' shapes back, and a line
// out of view that missed a change keeps its dirty flag and is drawn when it scrolls in.
void UITrackLinePanel::render_lines()
{
    const bool all = m_lines_dirty || m_keys_dirty;
    if (all)
        m_canvas->setFixHeight(std::max(UITrackLine::ROW_PITCH * m_lines.size(), UITrackLine::ROW_PITCH));
    int vx = 0, vy = 0, vw = 0, vh = 0;
    m_scroll->getVisibleArea(vx, vy, vw, vh);
    const int first = vy / UITrackLine::ROW_PITCH;
    const int last = (vy + vh) / UITrackLine::ROW_PITCH;
    for (int i = 0; i < m_lines.size(); ++i) {
        UITrackLine* line = m_lines[i];
        if (i < first || i > last) {
            if (line->isInView())
                leave_view(line);
            if (all)
                line->setDirty(true);
            continue;
        }
        if (!all && !line->isDirty() && line->isInView())
            continue;
        if (line->getBandPolygon() == INVALID_INDEX) {
            jLog::error("%s:%s", "UITrackLinePanel::update", "id != INVALID_INDEX");
            continue;
        }
        render_line(line, UITrackLine::ROW_PITCH * i);
    }
    m_lines_dirty = false;
    m_keys_dirty = false;
}

// Where keys lie closer together than a mark's width their marks only cover each other, and marks
// outside the canvas are never seen: such marks are emptied, unless selected, so a frame costs what
// can be told apart on screen rather than what the track holds.
void UITrackLinePanel::render_line(UITrackLine* line, int y)
{
    line->render(y, m_width, m_selected_lines.contains(line));
    const AppData* hub = AppData::get();
    const TimeScale scale(hub->getBeginTime(), hub->getEndTime(), m_width);
    int previous = INT_MIN / 2;
    for (UITrackLineKey* key : line->getKeys()) {
        const bool selected = !m_selected_keys.empty() && m_selected_keys.contains(key);
        const int x = scale.pixelOf(key->getTime());
        if (!selected && (x - previous < MIN_MARK_SPACING || x < -SIDE_MARGIN || x > m_width + SIDE_MARGIN)) {
            key->conceal();
            continue;
        }
        key->render(x, y, selected);
        previous = x;
    }
    line->setDirty(false);
    line->setInView(true);
}

void UITrackLinePanel::leave_view(UITrackLine* line)
{
    for (UITrackLineKey* key : line->getKeys())
        key->hide();
    line->concealBand(); // lines above it may have gone, so its old place can be another line's now
    line->setInView(false);
    line->setDirty(true);
}

void UITrackLinePanel::to_canvas(const UIEventMouse* e, int& x, int& y) const
{
    x = e->x;
    y = e->y;
    m_canvas->screenToLocal(x, y);
}
