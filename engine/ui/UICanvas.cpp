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

QColor color_of(const vec4& c) { return toQColor(c.x, c.y, c.z, c.w); }

bool bad_id(const char* op)
{
    jLog::error("%s:%s", op, "id");
    return false;
}

} // namespace

// The native surface: every paint request goes to the canvas's shapes.
class UICanvasWidget : public QWidget {
public:
    explicit UICanvasWidget(UICanvas* owner) : m_owner(owner) { setFocusPolicy(Qt::ClickFocus); }

protected:
    void paintEvent(QPaintEvent* e) override
    {
        if (!m_owner->m_store)
            return;
        m_owner->m_repaint_asked = false;
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

void UICanvas::changed()
{
    if (m_repaint_asked)
        return;
    if (QWidget* w = nativeWidget(this)) {
        m_repaint_asked = true;
        w->update();
    }
}

int UICanvas::addLine(int order)
{
    changed();
    return m_store->add(UIShapeStore::Line, order);
}

int UICanvas::addPolygon(int order)
{
    changed();
    return m_store->add(UIShapeStore::Polygon, order);
}

int UICanvas::addText(int order)
{
    changed();
    return m_store->add(UIShapeStore::Text, order);
}

int UICanvas::addTrace(int order)
{
    changed();
    return m_store->add(UIShapeStore::Trace, order);
}

bool UICanvas::add_point(int id, int kind, const vec3& p, const char* op)
{
    UIShapeStore::Shape* s = m_store->find(id, static_cast<Kind>(kind));
    if (!s)
        return bad_id(op);
    s->points.emplace_back(p.x, p.y);
    m_store->touch(id);
    changed();
    return true;
}

bool UICanvas::set_points(int id, int kind, const vec3* points, int count, bool closed, const char* op)
{
    UIShapeStore::Shape* s = m_store->find(id, static_cast<Kind>(kind));
    if (!s)
        return bad_id(op);
    s->points.clear();
    for (int i = 0; i < count; ++i)
        s->points.emplace_back(points[i].x, points[i].y);
    if (closed && count > 0)
        s->points.emplace_back(points[0].x, points[0].y);
    m_store->touch(id);
    changed();
    return true;
}

bool UICanvas::clear_points(int id, int kind, const char* op)
{
    UIShapeStore::Shape* s = m_store->find(id, static_cast<Kind>(kind));
    if (!s)
        return bad_id(op);
    s->points.clear();
    m_store->touch(id);
    changed();
    return true;
}

bool UICanvas::set_color(int id, int kind, const vec4& color, const char* op)
{
    UIShapeStore::Shape* s = m_store->find(id, static_cast<Kind>(kind));
    if (!s)
        return bad_id(op);
    s->color = color_of(color);
    changed();
    return true;
}

bool UICanvas::remove_shape(int id, int kind, const char* op)
{
    if (!m_store->remove(id, static_cast<Kind>(kind)))
        return bad_id(op);
    changed();
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
bool UICanvas::setTraceColor(int id, const vec4& c) { return set_color(id, Kind::Trace, c, "UICanvas::setTraceColor"); }
bool UICanvas::removeTrace(int id) { return remove_shape(id, Kind::Trace, "UICanvas::removeTrace"); }
bool UICanvas::clearLinePoints(int id) { return clear_points(id, Kind::Line, "UICanvas::clearLinePoints"); }
bool UICanvas::setLineColor(int id, const vec4& c) { return set_color(id, Kind::Line, c, "UICanvas::setLineColor"); }
bool UICanvas::removeLine(int id) { return remove_shape(id, Kind::Line, "UICanvas::removeLine"); }

bool UICanvas::setLineWidth(int id, float width)
{
    UIShapeStore::Shape* s = m_store->find(id, Kind::Line);
    if (!s)
        return bad_id("UICanvas::setLineWidth");
    s->width = width;
    m_store->touch(id);
    changed();
    return true;
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
    UIShapeStore::Shape* s = m_store->find(id, Kind::Text);
    if (!s)
        return bad_id("UICanvas::setText");
    QString fresh = QString::fromUtf8(text ? text : "");
    if (fresh == s->text)
        return true; // layouts set the same texts again on every pass
    s->text = std::move(fresh);
    s->sized = false;
    m_store->touch(id);
    changed();
    return true;
}

bool UICanvas::setTextPosition(int id, float x, float y)
{
    UIShapeStore::Shape* s = m_store->find(id, Kind::Text);
    if (!s)
        return bad_id("UICanvas::setTextPosition");
    s->position = QPointF(x, y);
    m_store->touch(id);
    changed();
    return true;
}

bool UICanvas::setTextColor(int id, const vec4& c) { return set_color(id, Kind::Text, c, "UICanvas::setTextColor"); }

bool UICanvas::setTextFontSize(int id, int size)
{
    UIShapeStore::Shape* s = m_store->find(id, Kind::Text);
    if (!s)
        return bad_id("UICanvas::setTextFontSize");
    s->fontSize = size;
    s->sized = false;
    m_store->touch(id);
    changed();
    return true;
}

bool UICanvas::setTextOutline(int id, int width)
{
    UIShapeStore::Shape* s = m_store->find(id, Kind::Text);
    if (!s)
        return bad_id("UICanvas::setTextOutline");
    s->outline = std::max(0, width);
    m_store->touch(id);
    changed();
    return true;
}

bool UICanvas::setTextOutlineColor(int id, const vec4& color)
{
    UIShapeStore::Shape* s = m_store->find(id, Kind::Text);
    if (!s)
        return bad_id("UICanvas::setTextOutlineColor");
    s->outlineColor = color_of(color);
    changed();
    return true;
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
    changed();
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
    changed();
}

int UICanvas::getNumShapes() const { return m_store->liveCount(); }
