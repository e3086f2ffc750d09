// The curve view's mouse gestures: selecting keys (click, modifier-click, rubber-band box),
// dragging the selected keys in time and value as one block, panning with the middle button and
// zooming with the wheel.
#include "ui/UITrackCurvePanel.h"

#include <algorithm>
#include <cmath>

#include "TrackEditorMsg.h"
#include "anim/Track.h"
#include "data/AppData.h"
#include "data/FKey.h"
#include "data/FKeyDouble.h"
#include "data/FKeyFloat.h"
#include "data/FParameterSingle.h"
#include "data/FTrack.h"
#include "msg/MsgMngr.h"
#include "ui/TimeUnits.h"
#include "ui/UICanvas.h"
#include "ui/UIRubberBand.h"
#include "ui/UITrackCurve.h"
#include "ui/UITrackCurveKey.h"

namespace {

constexpr int MODE_NONE = 0;
constexpr int MODE_BOX = 1;
constexpr int MODE_DRAG = 2;
constexpr int MODE_PAN = 3;
constexpr int MODE_HANDLE = 4;
constexpr int DRAG_DISTANCE_SQ = 9;
// A mark's half size, for the box: a key is taken when its mark touches the box.
constexpr int MARK_HALF = 4;
// One wheel notch zooms by this factor.
constexpr double ZOOM_STEP = 1.25;
// The narrowest time range the wheel zooms in to.
constexpr float MIN_TIME_SPAN = 1e-3f;

// Moves one handle of key i of a float or double parameter (Key: FKeyFloat or FKeyDouble) to the
// offset (dt, dv) from the key, its time held inside its segment as the engine holds it. A break
// key moves that handle alone; on the other types the opposite handle turns with it, keeping its
// length, so the curve stays smooth through the key, and a smooth key (whose handles the engine
// would otherwise recompute from the neighbours) becomes a break key. False for other keys.
template <class Key>
bool moveHandle(FParameterSingle* parameter, int i, int side, double dt, double dv)
{
    auto* key = dynamic_cast<Key*>(parameter->getKey(i));
    if (!key)
        return false;
    const bool in = side == UITrackCurveKey::SIDE_IN;
    const float t = key->getTime();
    if (in)
        dt = std::clamp(dt, i > 0 ? double(parameter->getKey(i - 1)->getTime() - t) : 0.0, 0.0);
    else
        dt = std::clamp(dt, 0.0, i + 1 < parameter->getNumKeys() ? double(parameter->getKey(i + 1)->getTime() - t) : 0.0);
    vec4 tangents = key->getTangents();
    const double otherLength = in ? std::hypot(tangents.z, tangents.w) : std::hypot(tangents.x, tangents.y);
    const double length = std::hypot(dt, dv);
    if (in) {
        tangents.x = float(dt);
        tangents.y = float(dv);
    } else {
        tangents.z = float(dt);
        tangents.w = float(dv);
    }
    if (key->getKeyType() != TRACK_KEY_BREAK && length > 0.0) {
        const float scale = float(-otherLength / length);
        (in ? tangents.z : tangents.x) = float(dt) * scale;
        (in ? tangents.w : tangents.y) = float(dv) * scale;
    }
    if (key->getKeyType() == TRACK_KEY_SMOOTH)
        key->setKeyType(TRACK_KEY_BREAK);
    key->setTangents(tangents);
    return true;
}

} // namespace

void UITrackCurvePanel::to_canvas(const UIEventMouse* e, int& x, int& y) const
{
    x = e->x;
    y = e->y;
    m_canvas->screenToLocal(x, y);
}

UITrackCurveKey* UITrackCurvePanel::key_at(int polygon) const
{
    for (UITrackCurve* curve : m_shown)
        for (UITrackCurveKey* point : curve->getKeys())
            if (polygon != INVALID_INDEX && point->getMarkPolygon() == polygon)
                return point;
    return nullptr;
}

UITrackCurveKey* UITrackCurvePanel::handle_at(int polygon, int& side) const
{
    for (UITrackCurveKey* point : m_selected_keys)
        for (int s : {UITrackCurveKey::SIDE_IN, UITrackCurveKey::SIDE_OUT})
            if (polygon != INVALID_INDEX && point->getHandlePolygon(s) == polygon) {
                side = s;
                return point;
            }
    return nullptr;
}

bool UITrackCurvePanel::onMouseDown(const UIEventMouse* e)
{
    if (!m_canvas || !isHit(e->x, e->y))
        return UIVLayout::onMouseDown(e);
    m_canvas->setFocus();
    m_press_x = e->x;
    m_press_y = e->y;
    m_dragged = false;
    if (e->button == UI_MOUSE_MIDDLE) {
        m_mode = MODE_PAN;
        return true;
    }
    if (!e->isLeft())
        return UIVLayout::onMouseDown(e);
    int x = 0, y = 0;
    to_canvas(e, x, y);
    const int polygon = m_canvas->getPolygonIntersection(x, y);
    if (UITrackCurveKey* point = key_at(polygon)) {
        press_key(point, e->isMultiSelect());
    } else if (UITrackCurveKey* owner = handle_at(polygon, m_handle_side)) {
        m_mode = MODE_HANDLE;
        m_pressed = owner;
    } else {
        start_box(e->isMultiSelect());
    }
    return true;
}

void UITrackCurvePanel::press_key(UITrackCurveKey* point, bool extend)
{
    m_mode = MODE_DRAG;
    m_pressed = point;
    m_press_time = point->getTime();
    m_press_value = point->getValue();
    if (!m_selected_keys.contains(point)) {
        if (!extend)
            m_selected_keys.clear();
        m_selected_keys.insert(point);
    }
    send_selection();
}

void UITrackCurvePanel::start_box(bool extend)
{
    m_mode = MODE_BOX;
    m_saved_keys.clear();
    if (extend)
        m_saved_keys = m_selected_keys;
    else
        m_selected_keys.clear();
    send_selection();
}

bool UITrackCurvePanel::onMouseMove(const UIEventMouse* e)
{
    if (!m_canvas || m_mode == MODE_NONE)
        return UIVLayout::onMouseMove(e);
    const int dx = e->x - m_press_x, dy = e->y - m_press_y;
    m_dragged = m_dragged || dx * dx + dy * dy > DRAG_DISTANCE_SQ;
    int x = 0, y = 0;
    to_canvas(e, x, y);
    if (m_mode == MODE_BOX)
        drag_box(x, y);
    else if (m_mode == MODE_DRAG && m_dragged)
        drag_keys(x, y, (e->modifiers & UI_MOD_SHIFT) != 0);
    else if (m_mode == MODE_PAN)
        pan(e->x, e->y);
    else if (m_mode == MODE_HANDLE && m_dragged)
        drag_handle(x, y);
    return true;
}

void UITrackCurvePanel::drag_handle(int x, int y)
{
    FKey* key = m_pressed ? m_pressed->getKey() : nullptr;
    FParameterSingle* parameter = key ? key->getParameter() : nullptr;
    if (!parameter)
        return;
    const double dt = m_mapping.timeOfX(x) - key->getTime();
    const double dv = m_mapping.valueOfY(y) - m_pressed->getValue();
    const int i = parameter->getKeys().find(key);
    if (!moveHandle<FKeyFloat>(parameter, i, m_handle_side, dt, dv) &&
        !moveHandle<FKeyDouble>(parameter, i, m_handle_side, dt, dv))
        return;
    parameter->applyKeys();
    m_dirty = true;
    MsgMngr::get()->notifyHelper(TRACK_MSG_KEYS_CHANGED);
}

void UITrackCurvePanel::drag_box(int x, int y)
{
    int px = m_press_x, py = m_press_y;
    m_canvas->screenToLocal(px, py);
    int left = 0, top = 0, right = 0, bottom = 0;
    m_box->show(px, py, x, y, left, top, right, bottom);
    m_selected_keys = m_saved_keys;
    for (UITrackCurve* curve : m_shown) {
        for (UITrackCurveKey* point : curve->getKeys()) {
            const float kx = m_mapping.xOfTime(point->getTime());
            const float ky = m_mapping.yOfValue(point->getValue());
            if (kx + MARK_HALF >= left && kx - MARK_HALF <= right && ky + MARK_HALF >= top && ky - MARK_HALF <= bottom)
                m_selected_keys.insert(point);
        }
    }
    send_selection();
}

// The selected keys move together by the pointer's travel since the press, in time and value; in
// time the block is held inside the track's limits as a whole, so every key keeps its offsets to
// the pressed key. With Shift the larger of the two travels alone applies.
void UITrackCurvePanel::drag_keys(int x, int y, bool constrain)
{
    if (!m_pressed)
        return;
    int px = m_press_x, py = m_press_y;
    m_canvas->screenToLocal(px, py);
    const bool timeOnly = constrain && std::abs(x - px) >= std::abs(y - py);
    const bool valueOnly = constrain && !timeOnly;
    const float pressedTime = m_pressed->getTime();
    const double pressedValue = m_pressed->getValue();
    float lowest = 0.0f, highest = 0.0f;
    for (UITrackCurveKey* point : m_selected_keys) {
        lowest = std::min(lowest, point->getTime() - pressedTime);
        highest = std::max(highest, point->getTime() - pressedTime);
    }
    const Track* track = AppData::get()->getTrack()->getEngineTrack();
    const float lo = track->getBeginTime() - lowest, hi = track->getEndTime() - highest;
    const float wanted = valueOnly ? m_press_time
                                   : TimeUnits::landing(m_press_time + m_mapping.timeOfX(float(x)) -
                                                        m_mapping.timeOfX(float(px)));
    const float time = std::clamp(wanted, lo, std::max(lo, hi));
    const double value = timeOnly ? m_press_value
                                  : m_press_value + m_mapping.valueOfY(float(y)) - m_mapping.valueOfY(float(py));
    jSet<FParameterSingle*> touched;
    for (UITrackCurveKey* point : m_selected_keys) {
        point->setTimeAndValue(time + (point->getTime() - pressedTime), value + (point->getValue() - pressedValue));
        if (point->getKey() && point->getKey()->getParameter())
            touched.insert(point->getKey()->getParameter());
    }
    for (FParameterSingle* parameter : touched) {
        parameter->sortKeys();
        parameter->applyKeys();
    }
    m_dirty = true;
    MsgMngr::get()->notifyHelper(TRACK_MSG_KEYS_MOVED);
}

// A middle drag pans the value axis with the pointer and the shared time range with it.
void UITrackCurvePanel::pan(int x, int y)
{
    m_mapping.panValue(float(y - m_press_y));
    const float dt = m_mapping.timeOfX(float(m_press_x)) - m_mapping.timeOfX(float(x));
    m_press_x = x;
    m_press_y = y;
    AppData* hub = AppData::get();
    const Track* track = hub->getTrack()->getEngineTrack();
    const float shift = std::clamp(dt, track->getBeginTime() - hub->getBeginTime(), track->getEndTime() - hub->getEndTime());
    if (shift != 0.0f) {
        hub->setBeginTime(hub->getBeginTime() + shift);
        hub->setEndTime(hub->getEndTime() + shift);
        MsgMngr::get()->notifyHelper(TRACK_MSG_RANGE_CHANGED);
    }
    m_dirty = true;
}

bool UITrackCurvePanel::onMouseUp(const UIEventMouse* e)
{
    if (!m_canvas || m_mode == MODE_NONE)
        return UIVLayout::onMouseUp(e);
    m_mode = MODE_NONE;
    m_dragged = false;
    m_pressed = nullptr;
    m_box->hide();
    m_canvas->removeFocus();
    return UIVLayout::onMouseUp(e);
}

// The wheel zooms about the pointer: the time and the value under it stay put. With Ctrl only the
// value axis zooms.
bool UITrackCurvePanel::onMouseWheel(const UIEventMouse* e)
{
    if (!m_canvas || !isHit(e->x, e->y) || e->wheel == 0)
        return UIVLayout::onMouseWheel(e);
    int x = 0, y = 0;
    to_canvas(e, x, y);
    const double factor = std::pow(ZOOM_STEP, -e->wheel);
    m_mapping.zoomValue(float(y), factor);
    if (!(e->modifiers & UI_MOD_CTRL))
        zoom_time(float(x), factor);
    m_dirty = true;
    return true;
}

void UITrackCurvePanel::zoom_time(float x, double factor)
{
    AppData* hub = AppData::get();
    const Track* track = hub->getTrack()->getEngineTrack();
    const float at = m_mapping.timeOfX(x);
    const float begin = std::max(track->getBeginTime(), float(at - (at - hub->getBeginTime()) * factor));
    const float end = std::min(track->getEndTime(), float(at + (hub->getEndTime() - at) * factor));
    if (end - begin < MIN_TIME_SPAN)
        return;
    hub->setBeginTime(begin);
    hub->setEndTime(end);
    MsgMngr::get()->notifyHelper(TRACK_MSG_RANGE_CHANGED);
}
