// The key line panel's mouse gestures: selecting keys (click, modifier-click, rubber-band box),
// dragging the selected keys in time as one block, double-clicking a key to edit it and an empty spot
// of a line to make a key there.
#include "ui/UITrackLinePanel.h"

#include <algorithm>

#include "TrackEditorMsg.h"
#include "anim/Track.h"
#include "data/AppData.h"
#include "data/FKey.h"
#include "data/FParameterSingle.h"
#include "data/FTrack.h"
#include "kit/KeyState.h"
#include "kit/jLog.h"
#include "msg/MsgMngr.h"
#include "scene/Engine.h"
#include "ui/TimeUnits.h"
#include "ui/UICanvas.h"
#include "ui/UIRubberBand.h"
#include "ui/UIScrollBox.h"
#include "ui/UITrackLine.h"
#include "ui/UITrackLineKey.h"

namespace {

constexpr int MODE_NONE = 0;
constexpr int MODE_BOX = 1;
constexpr int MODE_DRAG = 3;
constexpr int DRAG_DISTANCE_SQ = 9;
constexpr int DCLICK_DISTANCE_SQ = 25;
constexpr float AUTO_SCROLL_SPEED = 4.0f;
// The area of a mark a box must touch to take its key, relative to the key's x and the row top.
constexpr int MARK_HALF_WIDTH = 6;
constexpr int MARK_TOP = 8;
constexpr int MARK_BOTTOM = 22;

// The engine track of the document: its begin and end times are the limits keys are held within.
const Track* engineTrack()
{
    return AppData::get()->getTrack()->getEngineTrack();
}

template <class T>
void copyInto(jSet<T>& to, const jSet<T>& from)
{
    for (const T& item : from)
        to.insert(item);
}

} // namespace

// The parameters keep which of their keys are marked; the window rebuilds every view's selection
// from those marks when it hears 205.
void UITrackLinePanel::send_selection_lists()
{
    AppData::get()->getTrack()->clearMarks();
    for (UITrackLineKey* mark : m_selected_keys)
        FTrack::mark(mark->getKey());
    MsgMngr::get()->notifyHelper(TRACK_MSG_SELECTION_LISTS);
}

void UITrackLinePanel::send_selection()
{
    send_selection_lists();
    MsgMngr::get()->notifyHelper(TRACK_MSG_LINE_SELECTION);
}

void UITrackLinePanel::refresh_marks()
{
    m_keys_dirty = true;
    m_lines_dirty = true;
}

bool UITrackLinePanel::onMouseDown(const UIEventMouse* e)
{
    if (!m_canvas || (!isHit(e->x, e->y) && !m_canvas->hasFocus()) || !e->isLeft())
        return UIVLayout::onMouseDown(e);
    if (!m_canvas->hasFocus())
        m_canvas->setFocus();
    m_dragged = false;
    m_press_x = e->x;
    m_press_y = e->y;
    int x = 0, y = 0;
    to_canvas(e, x, y);
    if (m_mode != MODE_NONE)
        return true;
    if (UITrackLineKey* hitKey = mark_at(x, y))
        press_key(hitKey->getLine(), hitKey, e->isMultiSelect());
    else
        start_box(e->isMultiSelect());
    return true;
}

UITrackLineKey* UITrackLinePanel::mark_at(int x, int y) const
{
    const int polygon = m_canvas->getPolygonIntersection(x, y);
    if (polygon == INVALID_INDEX)
        return nullptr;
    for (UITrackLine* line : m_lines)
        for (UITrackLineKey* key : line->getKeys())
            if (key->getHitPolygon() == polygon)
                return key;
    return nullptr;
}

void UITrackLinePanel::start_box(bool extend)
{
    m_mode = MODE_BOX;
    m_box->raise(m_order);
    m_order += 2;
    setCurrentLine(nullptr);
    setCurrentKey(nullptr);
    if (!extend) {
        m_saved_lines.clear();
        m_saved_keys.clear();
        m_selected_lines.clear();
        m_selected_keys.clear();
        refresh_marks();
        send_selection();
    } else {
        m_saved_lines.clear();
        m_saved_keys.clear();
        copyInto(m_saved_lines, m_selected_lines);
        copyInto(m_saved_keys, m_selected_keys);
    }
    m_lines_dirty = true;
    m_keys_dirty = true;
}

void UITrackLinePanel::press_key(UITrackLine* line, UITrackLineKey* key, bool extend)
{
    m_mode = MODE_DRAG;
    if (key->getKey())
        key->getKey()->onPress();
    m_press_time = key->getTime();
    setCurrentLine(line);
    setCurrentKey(key);
    if (!m_selected_keys.contains(key)) {
        if (!extend) {
            m_selected_lines.clear();
            m_selected_keys.clear();
        }
        m_selected_lines.insert(line);
        m_selected_keys.insert(key);
    }
    refresh_marks();
    send_selection();
}

bool UITrackLinePanel::onMouseMove(const UIEventMouse* e)
{
    if (!m_canvas)
        return UIVLayout::onMouseMove(e);
    if (m_canvas->hasFocus() && GetKeyState(VK_LBUTTON) >= 0) {
        m_canvas->removeFocus(); // the release happened outside the panel
        return false;
    }
    if (!e->isLeftDown() || m_mode == MODE_NONE)
        return UIVLayout::onMouseMove(e);
    const int dx = e->x - m_press_x, dy = e->y - m_press_y;
    if (!m_dragged)
        m_dragged = dx * dx + dy * dy > DRAG_DISTANCE_SQ;
    int x = 0, y = 0;
    to_canvas(e, x, y);
    auto_scroll(x);
    if (m_mode == MODE_BOX)
        drag_box(x, y);
    else if (m_mode == MODE_DRAG && m_dragged)
        drag_keys(x);
    return true;
}

void UITrackLinePanel::auto_scroll(int x)
{
    int vx = 0, vy = 0, vw = 0, vh = 0;
    m_scroll->getVisibleArea(vx, vy, vw, vh);
    const float step = Engine::get()->getFrameTime() * AUTO_SCROLL_SPEED * m_scroll->getScrollScale();
    if (x < vx)
        m_scroll->setHScrollValue(m_scroll->getHScrollValue() - int(float(vx - x) * step));
    else if (x > vx + vw)
        m_scroll->setHScrollValue(m_scroll->getHScrollValue() + int(float(x - vx - vw) * step));
}

void UITrackLinePanel::drag_box(int x, int y)
{
    int px = m_press_x, py = m_press_y;
    m_canvas->screenToLocal(px, py);
    int left = 0, top = 0, right = 0, bottom = 0;
    m_box->show(px, py, x, y, left, top, right, bottom);

    m_selected_lines.clear();
    m_selected_keys.clear();
    const AppData* hub = AppData::get();
    for (int i = 0; i < m_lines.size(); ++i) {
        const int rowTop = UITrackLine::ROW_PITCH * i;
        for (UITrackLineKey* key : m_lines[i]->getKeys()) {
            const int kx = timeToPixel(key->getTime(), hub->getBeginTime(), hub->getEndTime(), m_width);
            const bool overlaps = kx - MARK_HALF_WIDTH <= right && kx + MARK_HALF_WIDTH >= left &&
                                  rowTop + MARK_TOP <= bottom && rowTop + MARK_BOTTOM >= top;
            if (!overlaps)
                continue;
            m_selected_keys.insert(key);
            m_selected_lines.insert(m_lines[i]);
            for (int id : {key->getTextId(), key->getMarkPolygon(), key->getOutline(), key->getHitPolygon()})
                m_canvas->setOrder(id, m_order++);
        }
    }
    copyInto(m_selected_lines, m_saved_lines);
    copyInto(m_selected_keys, m_saved_keys);
    refresh_marks();
    send_selection_lists();
}

// The selected keys move together by the pointer's travel in time since the press, every key keeping
// its offset to the pressed key.
void UITrackLinePanel::drag_keys(int x)
{
    if (!m_current_key || !m_current_key->getKey())
        return;
    const AppData* hub = AppData::get();
    const float begin = hub->getBeginTime(), end = hub->getEndTime();
    int px = m_press_x, py = m_press_y;
    m_canvas->screenToLocal(px, py);
    const float wanted = m_press_time + pixelToTime(x, begin, end, m_width) - pixelToTime(px, begin, end, m_width);
    move_block(held_time(TimeUnits::landing(wanted)));
}

// The track's time limits hold the block as a whole, not the visible range: keys out of view move
// with the block and never make it jump. A block that already reaches past a limit (the limits were
// narrowed under it) may move back in but no further out than where it was pressed.
float UITrackLinePanel::held_time(float wanted) const
{
    const Track* track = engineTrack();
    const float pressed = m_current_key->getTime();
    float lowest = 0.0f, highest = 0.0f;
    for (UITrackLineKey* key : m_selected_keys) {
        lowest = std::min(lowest, key->getTime() - pressed);
        highest = std::max(highest, key->getTime() - pressed);
    }
    const float least = std::min(track->getBeginTime() - lowest, m_press_time);
    const float most = std::max(track->getEndTime() - highest, m_press_time);
    return std::clamp(wanted, least, most);
}

void UITrackLinePanel::move_block(float target)
{
    const float pressed = m_current_key->getTime();
    jSet<FParameterSingle*> touched;
    for (UITrackLineKey* key : m_selected_keys) {
        FKey* k = key->getKey();
        if (!key->getLine()) {
            jLog::error("%s:%s", "UITrackLinePanel::onMouseMove", "line");
            continue;
        }
        k->setTime(target + (key->getTime() - pressed));
        if (k->getParameter())
            touched.insert(k->getParameter());
    }
    for (FParameterSingle* parameter : touched) {
        parameter->sortKeys();
        parameter->applyKeys();
    }
    m_keys_dirty = true;
    MsgMngr::get()->notifyHelper(TRACK_MSG_KEYS_MOVED);
}

bool UITrackLinePanel::onMouseUp(const UIEventMouse* e)
{
    if (!m_canvas || (!isHit(e->x, e->y) && !m_canvas->hasFocus()))
        return UIVLayout::onMouseUp(e);
    m_dragged = false;
    m_mode = MODE_NONE;
    if (e->isLeft()) {
        m_box->hide();
        m_canvas->removeFocus();
        m_release_x = e->x;
        m_release_y = e->y;
    }
    return UIVLayout::onMouseUp(e);
}

bool UITrackLinePanel::onMouseDClick(const UIEventMouse* e)
{
    if (!m_canvas || (!isHit(e->x, e->y) && !m_canvas->hasFocus()))
        return UIVLayout::onMouseDClick(e);
    m_dragged = false;
    m_mode = MODE_NONE;
    if (!e->isLeft())
        return UIVLayout::onMouseDClick(e);
    m_box->hide();
    m_release_x = e->x;
    m_release_y = e->y;
    const int dx = m_release_x - e->x, dy = m_release_y - e->y;
    if (dx * dx + dy * dy <= DCLICK_DISTANCE_SQ) { // always: the position was just stored
        int x = 0, y = 0;
        to_canvas(e, x, y);
        on_dclick(x, y);
    }
    return true;
}

void UITrackLinePanel::on_dclick(int x, int y)
{
    UITrackLineKey* key = mark_at(x, y);
    if (!key) {
        make_key(x, y);
        return;
    }
    if (!key->getKey()) {
        jLog::error("%s:%s", "UITrackLinePanel::on_dclick", "key->getKey()");
        return;
    }
    key->onDClick();
}

// A double click on an empty spot of a line makes a key on it, at the pointer's time held within the
// track's limits, holding the value the parameter has there. Sorting the keys, writing them to the
// engine and posting 203 (the window then selects the key alone) make it one edit.
void UITrackLinePanel::make_key(int x, int y)
{
    const int row = y / UITrackLine::ROW_PITCH;
    if (y < 0 || row >= m_lines.size() || !m_lines[row]->getData())
        return;
    FParameterSingle* parameter = m_lines[row]->getData();
    const AppData* hub = AppData::get();
    const Track* track = engineTrack();
    const float t = TimeUnits::landing(pixelToTime(x, hub->getBeginTime(), hub->getEndTime(), m_width));
    FKey* key = parameter->makeKeyAt(std::min(std::max(t, track->getBeginTime()), track->getEndTime()));
    if (!key)
        return;
    parameter->sortKeys();
    parameter->applyKeys();
    MsgMngr::get()->notifyHelperPtr(TRACK_MSG_KEY_MADE, key);
}
