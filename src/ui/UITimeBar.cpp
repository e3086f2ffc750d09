#include "ui/UITimeBar.h"

#include <cmath>

#include "ui/UICanvas.h"

namespace {

const char* const k_file = "src/ui/UITimeBar";

// Geometry in canvas pixels.
constexpr int SIDE_MARGIN = 6; // the axis runs from x = 6 to W - 6
constexpr int BAND_INSET = 8; // frame and range band run from y = 8 to H - 8
constexpr int HEAD_HALF_WIDTH = 5;
constexpr int MARK_HALF_WIDTH = 6;
constexpr int MARK_SHOULDER = 8;
constexpr int MARK_TIP = 14;
constexpr float SNAP_PIXELS = 8.0f;
constexpr float KEY_STEP = 0.01f; // of the axis length
// Keeps begin and end apart when one mark pushes the other.
constexpr float RANGE_GAP = 0.000001f;
constexpr int MIN_WIDTH = 256;
constexpr int MIN_HEIGHT = 24;

// What the left button drags.
enum Drag : int { DRAG_NONE = -1, DRAG_BEGIN = 0, DRAG_END = 1, DRAG_TIME = 2 };

// Draw orders: the marks sit over the play head, the end mark over the begin mark.
enum Order : int {
    ORDER_FRAME = 0,
    ORDER_RANGE_FILL = 1,
    ORDER_RANGE_LINE = 2,
    ORDER_TIME_FILL = 3,
    ORDER_TIME_LINE = 4,
    ORDER_BEGIN_FILL = 5,
    ORDER_BEGIN_LINE = 6,
    ORDER_END_FILL = 7,
    ORDER_END_LINE = 8,
};

const vec4 k_outline{0.1f, 0.1f, 0.1f, 1.0f};
const vec4 k_range_fill{0.5f, 0.5f, 0.5f, 0.5f};
const vec4 k_begin_fill{0.5f, 0.5f, 0.5f, 1.0f};
const vec4 k_end_fill{1.0f, 1.0f, 1.0f, 1.0f};
const vec4 k_time_fill{0.8f, 0.8f, 0.8f, 1.0f};

// A NaN falls to low, and high wins when low > high.
float clamp_time(float t, float low, float high)
{
    if (!(t >= low))
        return low;
    return high < t ? high : t;
}

vec3 point(int x, int y) { return vec3(static_cast<float>(x), static_cast<float>(y), 0.0f); }

void set_line(UICanvas* canvas, int id, const vec3* points, int count, bool closed)
{
    canvas->clearLinePoints(id);
    for (int i = 0; i < count; ++i)
        canvas->addLinePoint(id, points[i]);
    if (closed)
        canvas->addLinePoint(id, points[0]);
}

void set_polygon(UICanvas* canvas, int id, const vec3* points, int count, bool closed)
{
    canvas->clearPolygonPoints(id);
    for (int i = 0; i < count; ++i)
        canvas->addPolygonPoint(id, points[i]);
    if (closed)
        canvas->addPolygonPoint(id, points[0]);
}

} // namespace

UITimeBar::UITimeBar(UIRoot* root, float min, float max)
    : UIVLayout(root, 0)
    , m_min(min)
    , m_max(max)
    , m_time(min)
    , m_begin(min)
    , m_end(max)
{
    m_canvas = jNew<UICanvas>(k_file, __LINE__, "UITimeBar::UITimeBar", root);
    addChild(m_canvas, UI_EXPAND_BOTH, -1);
    m_canvas->setMinWidth(MIN_WIDTH);
    m_canvas->setMinHeight(MIN_HEIGHT);
    create_shapes();
    // Over the range band, under the play head: the head hides the labels it passes.
    m_ruler.attach(m_canvas, ORDER_RANGE_LINE);
}

UITimeBar::~UITimeBar() = default;

void UITimeBar::create_shapes()
{
    m_frame_line = m_canvas->addLine(ORDER_FRAME);
    m_range_line = m_canvas->addLine(ORDER_RANGE_LINE);
    m_range_polygon = m_canvas->addPolygon(ORDER_RANGE_FILL);
    m_begin_line = m_canvas->addLine(ORDER_BEGIN_LINE);
    m_begin_polygon = m_canvas->addPolygon(ORDER_BEGIN_FILL);
    m_end_line = m_canvas->addLine(ORDER_END_LINE);
    m_end_polygon = m_canvas->addPolygon(ORDER_END_FILL);
    m_time_line = m_canvas->addLine(ORDER_TIME_LINE);
    m_time_polygon = m_canvas->addPolygon(ORDER_TIME_FILL);
    for (int line : {m_frame_line, m_range_line, m_begin_line, m_end_line, m_time_line})
        m_canvas->setLineColor(line, k_outline);
    m_canvas->setPolygonColor(m_range_polygon, k_range_fill);
    m_canvas->setPolygonColor(m_begin_polygon, k_begin_fill);
    m_canvas->setPolygonColor(m_end_polygon, k_end_fill);
    m_canvas->setPolygonColor(m_time_polygon, k_time_fill);
}

void UITimeBar::release()
{
    if (m_canvas) {
        m_ruler.clearShapes();
        m_canvas->release();
        jDelete(m_canvas, k_file, __LINE__, "UITimeBar::release");
        m_canvas = nullptr;
    }
    UIVLayout::release();
}

int UITimeBar::timeToPixel(float t) const
{
    if (!(m_max > m_min))
        return SIDE_MARGIN; // an empty or inverted axis has no length to place a time along
    float usable = static_cast<float>(static_cast<int>(m_canvas_width) - 2 * SIDE_MARGIN);
    return static_cast<int>((t - m_min) * usable * (1.0f / (m_max - m_min)) + static_cast<float>(SIDE_MARGIN));
}

float UITimeBar::pixelToTime(int x) const
{
    float u = static_cast<float>(x - m_drag_offset - SIDE_MARGIN);
    float usable = static_cast<float>(static_cast<int>(m_canvas_width) - 2 * SIDE_MARGIN);
    float t = clamp_time(u * (m_max - m_min) / usable + m_min, m_min, m_max);
    // The snap reach is 8 pixels of the full width, not of the usable one: a little shorter than
    // 8 drawn pixels, and kept that way so marks snap exactly where users are used to.
    if (std::fabs(t - m_snap_time) < (m_max - m_min) * SNAP_PIXELS / static_cast<float>(m_canvas_width))
        return m_snap_time;
    return t;
}

void UITimeBar::update(float dt)
{
    if (!m_canvas)
        return;
    unsigned width = static_cast<unsigned>(m_canvas->getWidth());
    unsigned height = static_cast<unsigned>(m_canvas->getHeight());
    if (m_dirty || width != m_canvas_width || height != m_canvas_height) {
        m_canvas_width = width;
        m_canvas_height = height;
        int xt = timeToPixel(m_time);
        int xb = timeToPixel(m_begin);
        int xe = timeToPixel(m_end);
        rebuild_frame();
        rebuild_range(xb, xe);
        rebuild_mark(m_begin_line, m_begin_polygon, xb);
        rebuild_mark(m_end_line, m_end_polygon, xe);
        rebuild_play_head(xt);
        m_ruler.render(m_min, m_max, width, BAND_INSET, m_frame_rate);
        // m_dirty is left set on purpose: after the first change the shapes are rebuilt on every
        // frame, as the window has always had them.
    }
    UIElement::update(dt);
}

void UITimeBar::rebuild_frame()
{
    int w = static_cast<int>(m_canvas_width);
    int h = static_cast<int>(m_canvas_height);
    const vec3 frame[] = {point(SIDE_MARGIN, BAND_INSET), point(w - SIDE_MARGIN, BAND_INSET),
                          point(w - SIDE_MARGIN, h - BAND_INSET), point(SIDE_MARGIN, h - BAND_INSET)};
    set_line(m_canvas, m_frame_line, frame, 4, true);
}

void UITimeBar::rebuild_range(int xb, int xe)
{
    int h = static_cast<int>(m_canvas_height);
    const vec3 band[] = {point(xb, BAND_INSET), point(xe, BAND_INSET), point(xe, h - BAND_INSET),
                         point(xb, h - BAND_INSET)};
    set_line(m_canvas, m_range_line, band, 4, true);
    set_polygon(m_canvas, m_range_polygon, band, 4, true);
}

void UITimeBar::rebuild_mark(int lineId, int polygonId, int x)
{
    int h = static_cast<int>(m_canvas_height);
    const vec3 mark[] = {point(x - MARK_HALF_WIDTH, h - MARK_SHOULDER), point(x, h - MARK_TIP),
                         point(x + MARK_HALF_WIDTH, h - MARK_SHOULDER), point(x + MARK_HALF_WIDTH, h - 1),
                         point(x - MARK_HALF_WIDTH, h - 1)};
    set_line(m_canvas, lineId, mark, 5, true);
    set_polygon(m_canvas, polygonId, mark, 5, false);
}

void UITimeBar::rebuild_play_head(int xt)
{
    int h = static_cast<int>(m_canvas_height);
    const vec3 head[] = {point(xt - HEAD_HALF_WIDTH, 1), point(xt + HEAD_HALF_WIDTH, 1),
                         point(xt + HEAD_HALF_WIDTH, h - 1), point(xt - HEAD_HALF_WIDTH, h - 1)};
    set_line(m_canvas, m_time_line, head, 4, true);
    set_polygon(m_canvas, m_time_polygon, head, 4, true);
}

bool UITimeBar::onMouseDown(const UIEventMouse* e)
{
    if (!e->isLeft())
        return UIVLayout::onMouseDown(e);
    m_drag = DRAG_NONE; // a lost release never leaves a stale drag beyond the next press
    int x = e->x;
    int y = e->y;
    if (!m_canvas || !m_canvas->isHit(x, y))
        return UIVLayout::onMouseDown(e);
    m_canvas->setFocus();
    m_canvas->screenToLocal(x, y);
    grab(x, y);
    float t = pixelToTime(x);
    if (m_drag != DRAG_TIME)
        return true; // a pressed mark stays put until the pointer moves
    float c = clamp_time(t, m_begin, m_end);
    if (c == m_time)
        return true;
    m_time = c;
    m_dirty = true;
    raise(m_time_changed);
    return true;
}

void UITimeBar::grab(int x, int y)
{
    int hit = m_canvas->getPolygonIntersection(x, y);
    if (hit == -1 || hit == m_range_polygon) {
        m_drag = DRAG_TIME;
        m_drag_offset = 0; // the play head jumps to the pointer
    } else if (hit == m_begin_polygon) {
        m_drag = DRAG_BEGIN;
        m_drag_offset = x - timeToPixel(m_begin);
    } else if (hit == m_end_polygon) {
        m_drag = DRAG_END;
        m_drag_offset = x - timeToPixel(m_end);
    } else if (hit == m_time_polygon) {
        m_drag = DRAG_TIME;
        m_drag_offset = x - timeToPixel(m_time);
    }
}

bool UITimeBar::onMouseMove(const UIEventMouse* e)
{
    if (!e->isLeftDown() || !m_canvas)
        return UIVLayout::onMouseMove(e);
    int x = e->x;
    int y = e->y;
    m_canvas->screenToLocal(x, y);
    float t = pixelToTime(x);
    switch (m_drag) {
    case DRAG_BEGIN:
        return drag_begin(t, e);
    case DRAG_END:
        return drag_end(t, e);
    case DRAG_TIME:
        return drag_time(t, e);
    default:
        return UIVLayout::onMouseMove(e);
    }
}

// The begin mark pushes the end mark ahead of it rather than stopping at it.
bool UITimeBar::drag_begin(float t, const UIEventMouse* e)
{
    if (t == m_begin)
        return UIVLayout::onMouseMove(e);
    m_begin = clamp_time(t, m_min, m_max);
    m_dirty = true;
    if (m_begin > m_end)
        m_end = clamp_time(m_begin + RANGE_GAP, m_min, m_max);
    raise(m_range_changed);
    pull_time_into_range();
    return true;
}

// The end mark pushes the begin mark back rather than stopping at it.
bool UITimeBar::drag_end(float t, const UIEventMouse* e)
{
    if (t == m_end)
        return UIVLayout::onMouseMove(e);
    m_end = clamp_time(t, m_min, m_max);
    m_dirty = true;
    if (m_end < m_begin)
        m_begin = clamp_time(m_end - RANGE_GAP, m_min, m_max);
    raise(m_range_changed);
    pull_time_into_range();
    return true;
}

bool UITimeBar::drag_time(float t, const UIEventMouse* e)
{
    float c = clamp_time(t, m_begin, m_end);
    if (c == m_time)
        return UIVLayout::onMouseMove(e);
    m_time = c;
    m_dirty = true;
    raise(m_time_changed);
    return true;
}

void UITimeBar::pull_time_into_range()
{
    if (m_begin >= m_end)
        return; // an empty range leaves the play head where the user put it
    float c = clamp_time(m_time, m_begin, m_end);
    if (c == m_time)
        return;
    m_time = c;
    m_dirty = true;
    raise(m_time_changed);
}

bool UITimeBar::onMouseUp(const UIEventMouse* e)
{
    if (e->isLeft())
        m_drag = DRAG_NONE;
    return UIVLayout::onMouseUp(e);
}

bool UITimeBar::onNonClient(const UIEventMouse* e)
{
    m_drag = DRAG_NONE;
    return UIVLayout::onNonClient(e);
}

bool UITimeBar::onKeyPress(const UIEventKey* e)
{
    if (!m_canvas || !m_canvas->hasFocus() || (e->key != UI_KEY_LEFT && e->key != UI_KEY_RIGHT))
        return UIVLayout::onKeyPress(e);
    float step = (m_max - m_min) * KEY_STEP;
    float t = e->key == UI_KEY_LEFT ? m_time - step : m_time + step;
    m_time = clamp_time(t, m_begin, m_end);
    m_dirty = true;
    // Raised even when the clamp kept the time (at the range's end): every step key makes the
    // window evaluate the track at the current time again.
    raise(m_time_changed);
    return true;
}

void UITimeBar::raise(const Signal& signal)
{
    UIEventChanged event;
    event.changed = 1;
    event.byUser = 1;
    for (int i = 0; i < signal.size(); ++i)
        signal[i](&event, this);
}

float UITimeBar::getMin() const { return m_min; }
float UITimeBar::getMax() const { return m_max; }
float UITimeBar::getTime() const { return m_time; }
float UITimeBar::getBegin() const { return m_begin; }
float UITimeBar::getEnd() const { return m_end; }
float UITimeBar::getSnapTime() const { return m_snap_time; }
void UITimeBar::setSnapTime(float t) { m_snap_time = t; }
unsigned UITimeBar::getCanvasWidth() const { return m_canvas_width; }
void UITimeBar::setCanvasWidth(unsigned width) { m_canvas_width = width; }
unsigned UITimeBar::getCanvasHeight() const { return m_canvas_height; }
void UITimeBar::setCanvasHeight(unsigned height) { m_canvas_height = height; }
UICanvas* UITimeBar::getCanvas() const { return m_canvas; }
void UITimeBar::setCanvas(UICanvas* canvas) { m_canvas = canvas; }

void UITimeBar::setMin(float t)
{
    m_min = t;
    m_dirty = true;
}

void UITimeBar::setMax(float t)
{
    m_max = t;
    m_dirty = true;
}

void UITimeBar::setBegin(float t)
{
    m_begin = clamp_time(t, m_min, m_max);
    m_dirty = true;
}

void UITimeBar::setEnd(float t)
{
    m_end = clamp_time(t, m_min, m_max);
    m_dirty = true;
}

void UITimeBar::setFrameRate(float fps)
{
    if (fps == m_frame_rate)
        return;
    m_frame_rate = fps;
    m_dirty = true;
}

void UITimeBar::setTime(float t)
{
    m_time = clamp_time(t, m_begin, m_end);
    m_dirty = true;
}
