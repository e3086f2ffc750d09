#include "ui/UICanvas.h"

#include <QPaintEvent>
#include <QPainter>

#include "UINative.h"
#include "UIShapeStore.h"
#include "kit/jAllocator.h"
#include "kit/jLog.h"

namespace {

const char* const k_file = "engine/ui/UICanvas";
using Kind = UIShapeStore::Kind;
constexpr int REACH = UITraceColumns::REACH;

QColor color_of(const vec4& c) { return toQColor(c.x, c.y, c.z, c.w); }

bool bad_id(const char* op)
{
    jLog::error("%s:%s", op, "id");
    return false;
}

// Asks the toolkit to repaint area of the canvas (canvas pixels), unless all of it waits already.
void repaint(const UIElement* canvas, UIShapeStore& store, const QRectF& area)
{
    if (!store.invalidate(area))
        return;
    if (QWidget* w = nativeWidget(canvas))
        w->update(store.invalid());
}

// Sets a member of the shape of that kind with that id to value and asks for a repaint of where it
// was and where it is; measured says whether the member changes a text's size. False (logged
// "<op>:id") for a bad id.
template <class T>
bool assign(const UIElement* canvas, UIShapeStore& store, int id, Kind kind, T UIShapeStore::Shape::*member,
            T value, bool measured, const char* op)
{
    UIShapeStore::Shape* s = store.find(id, kind);
    if (!s)
        return bad_id(op);
    if (s->*member == value)
        return true; // views set the same again on every pass
    const QRectF before = store.shownBounds(id);
    s->*member = std::move(value);
    s->sized = s->sized && !measured;
    repaint(canvas, store, before | store.touch(id));
    return true;
}

// Whether two points are the same to the bit (the toolkit's own comparison allows for rounding).
bool equal(const QPointF& a, const QPointF& b) { return a.x() == b.x() && a.y() == b.y(); }

// The area where a trace through before (whose area was shown) and one through after (whose area is
// now), both moved by offset, differ: the stretch between the points they share at the start and at
// the end, with the chords that join it to those.
QRectF changed_stretch(const std::vector<QPointF>& before, const QRectF& shown, const std::vector<QPointF>& after,
                       const QRectF& now, const QPoint& offset)
{
    const size_t common = std::min(before.size(), after.size());
    size_t head = 0;
    while (head < common && equal(before[head], after[head]))
        ++head;
    if (head == before.size() && head == after.size())
        return QRectF();
    size_t tail = 0;
    while (tail < common - head && equal(before[before.size() - 1 - tail], after[after.size() - 1 - tail]))
        ++tail;
    const size_t first = head > 0 ? head - 1 : 0;
    if (first == 0 && tail == 0) // moved as a whole (the view panned): where it was is known
        return shown | now;
    return (UIShapeStore::spanOf(before, first, before.size() - tail + 1, 1.0) |
            UIShapeStore::spanOf(after, first, after.size() - tail + 1, 1.0))
        .translated(offset);
}

// The whole pixels by which the n points given (a function of the index) lie from points, when
// every one is moved by them; else (0, 0). A pan moves the marks of a key line so.
template <class Given>
QPoint whole_move(const std::vector<QPointF>& points, size_t n, const Given& given)
{
    if (points.size() != n || n == 0)
        return QPoint();
    const QPointF d = given(0) - points[0];
    if (!(std::abs(d.x()) < REACH && std::abs(d.y()) < REACH) || d.x() != int(d.x()) || d.y() != int(d.y()))
        return QPoint();
    for (size_t i = 1; i < n; ++i) {
        if (!equal(given(i), points[i] + d))
            return QPoint();
    }
    return d.toPoint();
}

} // namespace

// A shape about to change, with the area it covered before.
struct UICanvas::Change {
    UIShapeStore::Shape* shape;
    QRectF before;
};

// The native surface: every paint request goes to the canvas's shapes.
class UICanvasWidget : public QWidget {
public:
    explicit UICanvasWidget(UICanvas* owner) : m_owner(owner) { setFocusPolicy(Qt::ClickFocus); }

protected:
    void paintEvent(QPaintEvent* e) override
    {
        if (!m_owner->m_store)
            return;
        QPainter painter(this);
        m_owner->m_last_paint = m_owner->m_store->paint(painter, e->rect());
    }

private:
    UICanvas* m_owner;
};

UICanvas::UICanvas(UIRoot* root)
    : UIElement(root, makeNative(new UICanvasWidget(this))),
      m_store(jNew<UIShapeStore>(k_file, __LINE__, "UICanvas::UICanvas"))
{
}

UICanvas::~UICanvas()
{
    // The native widget may paint until the base destructor removes it; it must find no shapes.
    m_store->clear();
    jDelete(m_store, k_file, __LINE__, "UICanvas::~UICanvas");
    m_store = nullptr;
}

UICanvas::Change UICanvas::change(int id, int kind, const char* op)
{
    UIShapeStore::Shape* s = m_store->find(id, static_cast<Kind>(kind));
    if (!s) {
        bad_id(op);
        return {nullptr, QRectF()};
    }
    return {s, m_store->shownBounds(id)};
}

int UICanvas::addLine(int order)
{
    return m_store->add(UIShapeStore::Line, order);
}

int UICanvas::addPolygon(int order)
{
    return m_store->add(UIShapeStore::Polygon, order);
}

int UICanvas::addText(int order)
{
    return m_store->add(UIShapeStore::Text, order);
}

int UICanvas::addTrace(int order)
{
    return m_store->add(UIShapeStore::Trace, order);
}

bool UICanvas::add_point(int id, int kind, const vec3& p, const char* op)
{
    auto [s, before] = change(id, kind, op);
    if (!s)
        return false;
    s->points.emplace_back(p.x, p.y);
    repaint(this, *m_store, before | m_store->touch(id));
    return true;
}

bool UICanvas::set_points(int id, int kind, const vec3* points, int count, bool closed, const char* op)
{
    auto [s, before] = change(id, kind, op);
    if (!s)
        return false;
    const size_t n = static_cast<size_t>(std::max(count, 0)) + (closed && count > 0 ? 1 : 0);
    const auto given = [&](size_t i) {
        const vec3& p = points[i < static_cast<size_t>(count) ? i : 0];
        return QPointF(p.x, p.y);
    };
    bool same = s->points.size() == n;
    for (size_t i = 0; same && i < n; ++i)
        same = equal(s->points[i], given(i));
    if (same)
        return true; // views set the same points again on every pass
    const QPoint moved = kind == Kind::Trace ? QPoint() : whole_move(s->points, n, given);
    // A trace of thousands of points mostly changes in one stretch (the keys being dragged): its old
    // points tell which. A moved mark is rewritten in its own list.
    std::vector<QPointF> old;
    if (kind == Kind::Trace)
        old.swap(s->points);
    s->points.resize(n);
    for (size_t i = 0; i < n; ++i)
        s->points[i] = given(i);
    if (kind == Kind::Trace)
        m_store->measure(id);
    const QRectF now = moved.isNull() ? m_store->touch(id) : m_store->touchMoved(id, moved);
    repaint(this, *m_store, kind == Kind::Trace ? changed_stretch(old, before, s->points, now, s->traced->offset) : before | now);
    return true;
}

bool UICanvas::clear_points(int id, int kind, const char* op)
{
    auto [s, before] = change(id, kind, op);
    if (!s)
        return false;
    s->points.clear();
    repaint(this, *m_store, before | m_store->touch(id));
    return true;
}

bool UICanvas::set_color(int id, int kind, const vec4& color, const char* op)
{
    return assign(this, *m_store, id, static_cast<Kind>(kind), &UIShapeStore::Shape::color, color_of(color), false, op);
}

bool UICanvas::remove_shape(int id, int kind, const char* op)
{
    auto [s, before] = change(id, kind, op);
    if (!s)
        return false;
    if (kind == Kind::Trace) // its followers stay where their points put them
        before |= s->traced->reach.translated(s->traced->offset) | s->traced->reach;
    m_store->remove(id, static_cast<Kind>(kind));
    repaint(this, *m_store, before);
    return true;
}

bool UICanvas::addLinePoint(int id, const vec3& p) { return add_point(id, Kind::Line, p, "UICanvas::addLinePoint"); }
bool UICanvas::setLinePoints(int id, const vec3* points, int count, bool closed)
{
    return set_points(id, Kind::Line, points, count, closed, "UICanvas::setLinePoints");
}
bool UICanvas::setPolygonPoints(int id, const vec3* points, int count)
{
    return set_points(id, Kind::Polygon, points, count, false, "UICanvas::setPolygonPoints");
}
bool UICanvas::setTracePoints(int id, const vec3* points, int count)
{
    return set_points(id, Kind::Trace, points, count, false, "UICanvas::setTracePoints");
}
bool UICanvas::setTraceOffset(int id, int dx, int dy)
{
    UIShapeStore::Shape* s = m_store->find(id, Kind::Trace);
    if (!s)
        return bad_id("UICanvas::setTraceOffset");
    const QPoint offset(std::clamp(dx, -REACH, REACH), std::clamp(dy, -REACH, REACH));
    if (s->traced->offset == offset)
        return true;
    repaint(this, *m_store, m_store->move(id, offset));
    return true;
}
bool UICanvas::followTrace(int id, int trace)
{
    const QRectF before = m_store->find(id, Kind::Line) || m_store->find(id, Kind::Polygon) ? m_store->shownBounds(id)
                                                                                            : QRectF();
    if (!m_store->follow(id, trace))
        return bad_id("UICanvas::followTrace");
    repaint(this, *m_store, before | m_store->shownBounds(id));
    return true;
}
bool UICanvas::setTraceColor(int id, const vec4& c) { return set_color(id, Kind::Trace, c, "UICanvas::setTraceColor"); }
bool UICanvas::removeTrace(int id) { return remove_shape(id, Kind::Trace, "UICanvas::removeTrace"); }
bool UICanvas::clearLinePoints(int id) { return clear_points(id, Kind::Line, "UICanvas::clearLinePoints"); }
bool UICanvas::setLineColor(int id, const vec4& c) { return set_color(id, Kind::Line, c, "UICanvas::setLineColor"); }
bool UICanvas::removeLine(int id) { return remove_shape(id, Kind::Line, "UICanvas::removeLine"); }

bool UICanvas::setLineWidth(int id, float width)
{
    return assign(this, *m_store, id, Kind::Line, &UIShapeStore::Shape::width, width, false, "UICanvas::setLineWidth");
}

bool UICanvas::addPolygonPoint(int id, const vec3& p)
{
    return add_point(id, Kind::Polygon, p, "UICanvas::addPolygonPoint");
}
bool UICanvas::clearPolygonPoints(int id) { return clear_points(id, Kind::Polygon, "UICanvas::clearPolygonPoints"); }
bool UICanvas::setPolygonColor(int id, const vec4& c)
{
    return set_color(id, Kind::Polygon, c, "UICanvas::setPolygonColor");
}
bool UICanvas::removePolygon(int id) { return remove_shape(id, Kind::Polygon, "UICanvas::removePolygon"); }

bool UICanvas::setText(int id, const char* text)
{
    return assign(this, *m_store, id, Kind::Text, &UIShapeStore::Shape::text, QString::fromUtf8(text ? text : ""), true,
                  "UICanvas::setText");
}

bool UICanvas::setTextPosition(int id, float x, float y)
{
    return assign(this, *m_store, id, Kind::Text, &UIShapeStore::Shape::position, QPointF(x, y), false,
                  "UICanvas::setTextPosition");
}

bool UICanvas::setTextColor(int id, const vec4& c) { return set_color(id, Kind::Text, c, "UICanvas::setTextColor"); }

bool UICanvas::setTextFontSize(int id, int size)
{
    return assign(this, *m_store, id, Kind::Text, &UIShapeStore::Shape::fontSize, size, true, "UICanvas::setTextFontSize");
}

bool UICanvas::setTextOutline(int id, int width)
{
    return assign(this, *m_store, id, Kind::Text, &UIShapeStore::Shape::outline, std::max(0, width), false,
                  "UICanvas::setTextOutline");
}

bool UICanvas::setTextOutlineColor(int id, const vec4& color)
{
    return assign(this, *m_store, id, Kind::Text, &UIShapeStore::Shape::outlineColor, color_of(color), false,
                  "UICanvas::setTextOutlineColor");
}

int UICanvas::getTextWidth(int id) const
{
    const UIShapeStore::Shape* s = m_store->find(id, Kind::Text);
    if (!s)
        return bad_id("UICanvas::getTextWidth");
    return static_cast<int>(std::ceil(m_store->textSize(*s).width()));
}

int UICanvas::getTextHeight(int id) const
{
    const UIShapeStore::Shape* s = m_store->find(id, Kind::Text);
    if (!s)
        return bad_id("UICanvas::getTextHeight");
    return s->text.isEmpty() ? 0 : static_cast<int>(std::ceil(m_store->textSize(*s).height()));
}

bool UICanvas::removeText(int id) { return remove_shape(id, Kind::Text, "UICanvas::removeText"); }

bool UICanvas::setOrder(int id, int order)
{
    if (!m_store->reorder(id, order))
        return bad_id("UICanvas::setOrder");
    repaint(this, *m_store, m_store->shownBounds(id));
    return true;
}

int UICanvas::getOrder(int id) const
{
    for (Kind kind : {Kind::Line, Kind::Polygon, Kind::Text, Kind::Trace}) {
        if (const UIShapeStore::Shape* s = m_store->find(id, kind))
            return s->order;
    }
    return bad_id("UICanvas::getOrder");
}

int UICanvas::getPolygonIntersection(int x, int y) const
{
    return m_store->polygonAt(static_cast<float>(x), static_cast<float>(y));
}

void UICanvas::removeAll()
{
    m_store->clear();
    if (QWidget* w = nativeWidget(this))
        repaint(this, *m_store, QRectF(w->rect()));
}

int UICanvas::getNumShapes() const { return m_store->liveCount(); }
