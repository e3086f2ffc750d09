#include "UIShapeStore.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <iterator>

namespace {

// The cell of coordinate v, rounded down. Written without std::floor, a library call on the
// baseline x86-64 the build targets: a pan files thousands of marks again.
int cell_of(double v, int size)
{
    const double q = v / size;
    const int i = static_cast<int>(q);
    return i - (q < i);
}

// The smallest whole number not below v, for v well inside the range of int, written as cell_of
// is: a paint boxes thousands of marks.
int ceil_of(double v)
{
    const int i = static_cast<int>(v);
    return i + (v > i);
}

// Whether the non-empty box a and area share pixels, as QRectF::intersects says, but inline: a
// paint asks it of every shape on the canvas.
bool meets(const QRectF& a, const QRectF& area)
{
    return !a.isEmpty() && a.left() < area.right() && area.left() < a.right() && a.top() < area.bottom() &&
           area.top() < a.bottom();
}

bool on_segment(const QPointF& p, const QPointF& a, const QPointF& b)
{
    const double eps = 1e-6;
    double cross = (b.x() - a.x()) * (p.y() - a.y()) - (b.y() - a.y()) * (p.x() - a.x());
    if (std::abs(cross) > eps * std::max(1.0, std::hypot(b.x() - a.x(), b.y() - a.y())))
        return false;
    return p.x() >= std::min(a.x(), b.x()) - eps && p.x() <= std::max(a.x(), b.x()) + eps &&
           p.y() >= std::min(a.y(), b.y()) - eps && p.y() <= std::max(a.y(), b.y()) + eps;
}

bool contains(const std::vector<QPointF>& poly, const QPointF& p)
{
    bool inside = false;
    size_t n = poly.size();
    for (size_t i = 0, j = n - 1; i < n; j = i++) {
        const QPointF& a = poly[i];
        const QPointF& b = poly[j];
        if (on_segment(p, a, b))
            return true;
        if ((a.y() > p.y()) != (b.y() > p.y()) && p.x() < (b.x() - a.x()) * (p.y() - a.y()) / (b.y() - a.y()) + a.x())
            inside = !inside;
    }
    return inside;
}

// The pixels an aliased fill of the polygon covers (those whose centres lie inside, a centre on the
// left or top edge counting as inside, on the right or bottom edge as outside) when the polygon is
// a rectangle along the axes; a null rectangle otherwise. The painter fills such a box as a block.
QRect pixel_box(const std::vector<QPointF>& points)
{
    if (points.size() != 4)
        return QRect();
    const QPointF& a = points[0];
    const QPointF& c = points[2];
    const bool along = (points[1].x() == a.x() && points[1].y() == c.y() && points[3].x() == c.x() && points[3].y() == a.y()) ||
                       (points[1].y() == a.y() && points[1].x() == c.x() && points[3].y() == c.y() && points[3].x() == a.x());
    if (!along)
        return QRect();
    const int x0 = ceil_of(std::min(a.x(), c.x()) - 0.5);
    const int x1 = ceil_of(std::max(a.x(), c.x()) - 0.5);
    const int y0 = ceil_of(std::min(a.y(), c.y()) - 0.5);
    const int y1 = ceil_of(std::max(a.y(), c.y()) - 0.5);
    if (x1 <= x0 || y1 <= y0)
        return QRect();
    return QRect(x0, y0, x1 - x0, y1 - y0);
}

// Where a shape stands in the drawing: by order, then by creation, as one number (the order's sign
// bit flipped so that negative orders come first).
std::uint64_t draw_rank(const UIShapeStore::Shape& s)
{
    return std::uint64_t(std::uint32_t(s.order) ^ 0x80000000u) << 32 | s.seq;
}

} // namespace

int UIShapeStore::add(Kind kind, int order)
{
    Shape s;
    s.kind = kind;
    s.order = order;
    if (kind == Trace)
        s.traced = std::make_unique<TraceState>();
    s.seq = m_seq++;
    ++m_live;
    int id = 0;
    if (!m_free.empty()) { // views take shapes off and put them back as things scroll into view
        id = m_free.back();
        m_free.pop_back();
        m_shapes[id] = std::move(s);
    } else {
        m_shapes.push_back(std::move(s));
        id = static_cast<int>(m_shapes.size()) - 1;
    }
    rank(id);
    if (kind == Text)
        touch(id);
    return id;
}

UIShapeStore::Shape* UIShapeStore::find(int id, Kind kind)
{
    if (id < 0 || id >= static_cast<int>(m_shapes.size()) || m_shapes[id].kind != kind)
        return nullptr;
    return &m_shapes[id];
}

const UIShapeStore::Shape* UIShapeStore::find(int id, Kind kind) const
{
    return const_cast<UIShapeStore*>(this)->find(id, kind);
}

QRectF UIShapeStore::touch(int id)
{
    Shape& s = m_shapes[id];
    const QRectF bounds = boundsOf(s);
    if (s.anchor >= 0 && !bounds.isEmpty())
        m_shapes[s.anchor].traced->reach |= bounds.translated(-shift_of(s));
    const QRectF filed = bounds.translated(-drift(s)); // followers stay filed where their trace was
    s.shown = s.kind == Text || s.color.alpha() > 0;
    s.planned = 0;
    if (!s.stale && !s.bounds.isEmpty() && !filed.isEmpty() && same_cells(s, filed)) {
        s.bounds = filed; // still in the same cells: nothing to refile
        return bounds;
    }
    if (!s.stale) {
        s.stale = true;
        m_stale.push_back(id);
    }
    return bounds;
}

QRectF UIShapeStore::touchMoved(int id, const QPoint& by)
{
    Shape& s = m_shapes[id];
    const std::uint32_t planned = s.planned;
    const QRectF bounds = touch(id);
    if (planned != m_stamps_made)
        return bounds;
    s.box.translate(by); // a null box stays null
    s.at += by;
    s.planned = planned;
    return bounds;
}

void UIShapeStore::measure(int id)
{
    Shape& s = m_shapes[id];
    s.traced->columns.measure(s.points);
    s.traced->extent = spanOf(s.points, 0, s.points.size(), s.width / 2.0 + 1.0);
}

bool UIShapeStore::remove(int id, Kind kind)
{
    Shape* s = find(id, kind);
    if (!s)
        return false;
    unfile(id, *s);
    detach(id, *s);
    if (s->traced) {
        for (int follower : s->traced->followers) { // they stay where their points put them
            m_shapes[follower].anchor = m_shapes[follower].follower = -1;
            touch(follower);
        }
    }
    *s = Shape();
    --m_live;
    m_free.push_back(id);
    return true;
}

bool UIShapeStore::follow(int id, int anchor)
{
    Shape* s = find(id, Line) ? find(id, Line) : find(id, Polygon);
    if (!s || (anchor != -1 && !find(anchor, Trace)))
        return false;
    if (s->anchor == anchor)
        return true;
    detach(id, *s);
    if (anchor >= 0) {
        Shape& trace = m_shapes[anchor];
        s->anchor = anchor;
        s->follower = static_cast<int>(trace.traced->followers.size());
        trace.traced->followers.push_back(id);
    }
    touch(id);
    return true;
}

void UIShapeStore::detach(int id, Shape& s)
{
    if (s.anchor < 0)
        return;
    std::vector<int>& followers = m_shapes[s.anchor].traced->followers;
    const int last = followers.back();
    followers[s.follower] = last;
    m_shapes[last].follower = s.follower;
    followers.pop_back();
    if (followers.empty())
        m_shapes[s.anchor].traced->reach = QRectF();
    s.anchor = s.follower = -1;
    if (!s.stale) { // filed where the trace had moved it: filed again from where it is drawn now
        s.stale = true;
        m_stale.push_back(id);
    }
}

QRectF UIShapeStore::move(int id, const QPoint& offset)
{
    TraceState& t = *m_shapes[id].traced;
    QRectF area = shownBounds(id) | t.reach.translated(t.offset);
    if (!t.unsettled)
        m_moved.push_back(id);
    t.unsettled = true;
    t.offset = offset;
    return area | touch(id) | t.reach.translated(offset);
}

QPoint UIShapeStore::drift(const Shape& s) const
{
    if (s.anchor < 0)
        return QPoint();
    const TraceState& trace = *m_shapes[s.anchor].traced;
    return trace.offset - trace.filed;
}

bool UIShapeStore::reorder(int id, int order)
{
    if (id < 0 || id >= static_cast<int>(m_shapes.size()) || m_shapes[id].kind == Removed)
        return false;
    m_shapes[id].order = order;
    m_shapes[id].seq = m_seq++;
    rank(id);
    return true;
}

void UIShapeStore::clear()
{
    m_shapes.clear();
    m_free.clear();
    m_stale.clear();
    m_moved.clear();
    m_grid.clear();
    m_order.clear();
    m_ranked.clear();
    m_live = 0;
}

QFont UIShapeStore::fontOf(int pixelSize) const
{
    QFont font("DejaVu Sans");
    font.setPixelSize(std::max(1, pixelSize));
    return font;
}

QSizeF UIShapeStore::textSize(const Shape& s) const
{
    if (!s.sized) { // measured once per text and font size: layouts ask for widths on every pass
        QFontMetricsF metrics(fontOf(s.fontSize));
        s.size = QSizeF(metrics.horizontalAdvance(s.text), metrics.height());
        s.sized = true;
    }
    return s.size;
}

QRectF UIShapeStore::boundsOf(const Shape& s) const
{
    if (s.kind == Text) {
        if (s.text.isEmpty())
            return QRectF();
        return QRectF(s.position, textSize(s)).adjusted(-s.outline - 1, -s.outline - 1, s.outline + 1, s.outline + 1);
    }
    if (s.kind == Trace)
        return s.traced->extent.translated(s.traced->offset);
    if (s.kind == Polygon && s.points.size() < 3)
        return QRectF();
    return spanOf(s.points, 0, s.points.size(), s.kind == Line ? s.width / 2.0 + 1.0 : 1.0).translated(shift_of(s));
}

QRectF UIShapeStore::spanOf(const std::vector<QPointF>& points, size_t first, size_t end, double pad)
{
    end = std::min(end, points.size());
    if (first >= end)
        return QRectF();
    double x0 = points[first].x(), x1 = x0, y0 = points[first].y(), y1 = y0;
    // Written as comparisons the compiler turns into packed minimum and maximum instructions
    // (std::min and std::max as they treat a NaN): a trace of thousands of points is boxed twice
    // a frame.
    for (size_t i = first + 1; i < end; ++i) {
        const double x = points[i].x(), y = points[i].y();
        x0 = x < x0 ? x : x0;
        x1 = x1 < x ? x : x1;
        y0 = y < y0 ? y : y0;
        y1 = y1 < y ? y : y1;
    }
    return QRectF(QPointF(x0 - pad, y0 - pad), QPointF(x1 + pad, y1 + pad));
}

QRectF UIShapeStore::shownBounds(int id) const
{
    const Shape& s = m_shapes[id];
    return s.stale ? boundsOf(s) : placed(s);
}

// Which of a shape's first four cells (cx, cy) is, or -1 for a later one: a shape's place in those
// lists is kept, so taking a small shape out of a crowded cell costs no search.
int UIShapeStore::slot_of(const Shape& s, int cx, int cy)
{
    const int i = (cy - s.cells[1]) * (s.cells[2] - s.cells[0] + 1) + (cx - s.cells[0]);
    return i < 4 ? i : -1;
}

void UIShapeStore::file(int id, Shape& s)
{
    s.bounds = boundsOf(s).translated(-drift(s));
    if (s.bounds.isEmpty())
        return;
    s.cells[0] = cell_of(s.bounds.left(), k_cell);
    s.cells[1] = cell_of(s.bounds.top(), k_cell);
    s.cells[2] = cell_of(s.bounds.right(), k_cell);
    s.cells[3] = cell_of(s.bounds.bottom(), k_cell);
    for (int cy = s.cells[1]; cy <= s.cells[3]; ++cy) {
        for (int cx = s.cells[0]; cx <= s.cells[2]; ++cx) {
            std::vector<int>& ids = cell(cx, cy);
            ids.push_back(id);
            if (int i = slot_of(s, cx, cy); i >= 0)
                s.places[i] = static_cast<int>(ids.size()) - 1;
        }
    }
}

void UIShapeStore::unfile(int id, Shape& s)
{
    for (int cy = s.cells[1]; cy <= s.cells[3]; ++cy) {
        for (int cx = s.cells[0]; cx <= s.cells[2]; ++cx) {
            auto it = m_grid.find(key(cx, cy));
            if (it == m_grid.end())
                continue;
            std::vector<int>& ids = it->second;
            const int i = slot_of(s, cx, cy);
            int at = i >= 0 ? s.places[i] : -1;
            if (at < 0 || at >= static_cast<int>(ids.size()) || ids[at] != id)
                at = static_cast<int>(std::find(ids.begin(), ids.end(), id) - ids.begin());
            if (at >= static_cast<int>(ids.size()))
                continue;
            const int moved = ids.back();
            ids[at] = moved;
            ids.pop_back();
            if (moved != id)
                if (int j = slot_of(m_shapes[moved], cx, cy); j >= 0)
                    m_shapes[moved].places[j] = at;
        }
    }
    s.cells[0] = s.cells[1] = 0;
    s.cells[2] = s.cells[3] = -1;
    s.bounds = QRectF();
}

bool UIShapeStore::same_cells(const Shape& s, const QRectF& bounds)
{
    return s.cells[0] == cell_of(bounds.left(), k_cell) && s.cells[1] == cell_of(bounds.top(), k_cell) &&
           s.cells[2] == cell_of(bounds.right(), k_cell) && s.cells[3] == cell_of(bounds.bottom(), k_cell);
}

void UIShapeStore::refresh()
{
    for (int id : m_stale) {
        Shape& s = m_shapes[id];
        if (s.kind == Removed || !s.stale)
            continue;
        s.stale = false;
        const QRectF bounds = boundsOf(s).translated(-drift(s));
        if (!bounds.isEmpty() && !s.bounds.isEmpty() && same_cells(s, bounds)) {
            s.bounds = bounds; // still in the same cells: nothing to refile
            continue;
        }
        unfile(id, s);
        file(id, s);
    }
    m_stale.clear();
}

void UIShapeStore::settle()
{
    for (int id : m_moved) {
        if (m_shapes[id].kind != Trace || !m_shapes[id].traced->unsettled)
            continue; // removed since, its id perhaps given to another shape
        TraceState& trace = *m_shapes[id].traced;
        trace.unsettled = false;
        const QPoint delta = trace.offset - trace.filed;
        trace.filed = trace.offset;
        for (int follower : trace.followers) {
            Shape& s = m_shapes[follower];
            const QRectF bounds = s.bounds.translated(delta);
            if (!s.stale && !bounds.isEmpty() && same_cells(s, bounds))
                s.bounds = bounds;
            else if (!s.stale) {
                s.stale = true;
                m_stale.push_back(follower);
            }
        }
    }
    m_moved.clear();
    refresh();
}

template <class F>
void UIShapeStore::visit(const QRectF& area, F&& f)
{
    settle();
    ++m_stamp;
    int x0 = cell_of(area.left(), k_cell), x1 = cell_of(area.right(), k_cell);
    int y0 = cell_of(area.top(), k_cell), y1 = cell_of(area.bottom(), k_cell);
    for (int cy = y0; cy <= y1; ++cy) {
        for (int cx = x0; cx <= x1; ++cx) {
            auto it = m_grid.find(key(cx, cy));
            if (it == m_grid.end())
                continue;
            for (int id : it->second) {
                Shape& s = m_shapes[id];
                if (s.stamp == m_stamp)
                    continue;
                s.stamp = m_stamp;
                if (meets(s.bounds, area))
                    f(id, s);
            }
        }
    }
}

bool UIShapeStore::invalidate(const QRectF& area)
{
    // Thousands of marks move within the area already waiting in a frame: two pixels of margin
    // cover the rounding and the pad below, so such an area is known to be inside at once.
    const QRectF waiting(m_invalid);
    if (!m_invalid.isEmpty() && area.left() - 2.0 >= waiting.left() && area.right() + 2.0 <= waiting.right() &&
        area.top() - 2.0 >= waiting.top() && area.bottom() + 2.0 <= waiting.bottom())
        return false;
    // Shapes may lie far off any screen (a flat curve's degenerate range): whole pixels near int's
    // limits would overflow.
    constexpr double REACH = 1 << 24;
    const QRectF onScreen = area & QRectF(-REACH, -REACH, 2 * REACH, 2 * REACH);
    if (onScreen.isEmpty())
        return false;
    const QRect pixels = onScreen.toAlignedRect().adjusted(-1, -1, 1, 1);
    if (m_invalid.contains(pixels))
        return false;
    m_invalid |= pixels;
    return true;
}

bool UIShapeStore::spans_most(const QRectF& area) const
{
    size_t filed = 0; // a shape in several of the cells counts in each
    for (int cy = cell_of(area.top(), k_cell); cy <= cell_of(area.bottom(), k_cell); ++cy) {
        for (int cx = cell_of(area.left(), k_cell); cx <= cell_of(area.right(), k_cell); ++cx) {
            if (auto it = m_grid.find(key(cx, cy)); it != m_grid.end())
                filed += it->second.size();
        }
    }
    return 2 * filed >= size_t(m_live);
}

void UIShapeStore::rank(int id)
{
    m_ranked.emplace_back(draw_rank(m_shapes[id]), id);
    if (m_ranked.size() > size_t(m_live) + 1024)
        merge_order(); // only small areas were painted since: the new ranks are merged anyway
}

void UIShapeStore::merge_order()
{
    if (m_ranked.empty() && m_order.size() <= 2 * size_t(m_live) + 64)
        return; // nothing new, and few removed shapes to step over
    std::sort(m_ranked.begin(), m_ranked.end());
    m_merged.clear();
    const auto current = [this](const std::pair<std::uint64_t, int>& entry) {
        const Shape& s = m_shapes[entry.second];
        return s.kind != Removed && draw_rank(s) == entry.first;
    };
    std::merge(m_order.begin(), m_order.end(), m_ranked.begin(), m_ranked.end(), std::back_inserter(m_merged));
    m_merged.erase(std::remove_if(m_merged.begin(), m_merged.end(), [&](const auto& e) { return !current(e); }),
                   m_merged.end());
    m_order.swap(m_merged);
    m_ranked.clear();
}

// A fully transparent shape (a hit area) changes no pixel.
void UIShapeStore::gather(const QRectF& area)
{
    m_drawn.clear();
    refresh();
    if (spans_most(area)) {
        merge_order();
        for (const auto& [rank, id] : m_order) {
            const Shape& s = m_shapes[id];
            if (s.kind != Removed && draw_rank(s) == rank && meets(placed(s), area) && s.shown)
                m_drawn.emplace_back(rank, id);
        }
        return;
    }
    visit(area, [this](int id, Shape& s) {
        if (s.shown)
            m_drawn.emplace_back(draw_rank(s), id);
    });
    std::sort(m_drawn.begin(), m_drawn.end());
}

int UIShapeStore::paint(QPainter& painter, const QRect& area)
{
    m_invalid = QRect();
    if (m_stamps.size() >= MAX_STAMPS) {
        m_stamps.clear(); // no layer holds one now, and no plan once the generation moves on
        ++m_stamps_made;
    }
    gather(QRectF(area));
    painter.setRenderHint(QPainter::Antialiasing, false);
    m_brush = 0;
    m_state = Removed;
    for (const auto& [rank, id] : m_drawn)
        paint_shape(painter, m_shapes[id], area);
    if (m_traces.isOpen())
        m_traces.finish(painter);
    return static_cast<int>(m_drawn.size());
}

void UIShapeStore::plan(Shape& s)
{
    // Opaque boxes (the marks of keys) and small opaque shapes drawn from stamps join the layer
    // too: thousands of them cost a few runs of pixels each instead of the painter's fill.
    const bool opaque = s.color.alpha() == 255;
    s.box = s.kind == Polygon && opaque ? pixel_box(s.points) : s.kind == Line && opaque ? line_box(s) : QRect();
    s.look = s.kind != Trace && s.box.isNull() ? stamp_of(s, s.at) : nullptr;
    s.layered = s.kind == Trace || !s.box.isNull() || s.look;
    s.rgba = s.color.rgba();
    s.planned = m_stamps_made;
}

void UIShapeStore::paint_shape(QPainter& painter, Shape& s, const QRect& area)
{
    if (s.planned != m_stamps_made)
        plan(s);
    // A follower's points are where its trace's offset moves them from.
    const QPoint shift = shift_of(s);
    if (s.layered) {
        if (!m_traces.isOpen())
            m_traces.begin(area);
        if (s.kind == Trace)
            m_traces.draw(s.traced->columns, s.traced->offset, s.rgba);
        else if (s.look)
            m_traces.stamp(*s.look, s.at + shift, s.rgba);
        else
            m_traces.fill(s.box.translated(shift), s.rgba);
        return;
    }
    if (m_traces.isOpen())
        m_traces.finish(painter);
    if (s.kind == Text) {
        m_state = Text;
        paint_text(painter, s);
        return;
    }
    // Neighbouring marks mostly share a colour; changing the painter's state only when it differs
    // keeps the cost per shape down to the fill itself.
    if (s.kind == Line || m_state != Polygon || m_brush != s.rgba) {
        set_up(painter, s);
        m_state = s.kind;
        m_brush = s.rgba;
    }
    if (!shift.isNull())
        painter.translate(shift);
    if (const QRect translucent = s.kind == Polygon ? pixel_box(s.points) : QRect(); !translucent.isNull())
        painter.fillRect(translucent, s.color);
    else
        draw_geometry(painter, s);
    if (!shift.isNull())
        painter.translate(-shift);
}

void UIShapeStore::set_up(QPainter& painter, const Shape& s)
{
    if (s.kind == Polygon) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(s.color);
    } else {
        painter.setPen(QPen(s.color, s.width, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
        painter.setBrush(Qt::NoBrush);
    }
}

void UIShapeStore::draw_geometry(QPainter& painter, const Shape& s)
{
    if (s.kind == Polygon)
        painter.drawPolygon(s.points.data(), static_cast<int>(s.points.size()));
    else
        painter.drawPolyline(s.points.data(), static_cast<int>(s.points.size()));
}

// A text is drawn once into an image (the outline being the text drawn around itself in the outline
// colour) and the image is reused while the text looks the same: labels repeat across rows and
// frames, and copying an image costs a fraction of laying out glyphs again.
void UIShapeStore::paint_text(QPainter& painter, const Shape& s)
{
    QString key = QString("%1|%2|%3|%4|%5")
                      .arg(s.fontSize)
                      .arg(s.color.rgba())
                      .arg(s.outline)
                      .arg(s.outlineColor.rgba())
                      .arg(s.text);
    QImage* image = m_text_images.object(key);
    if (!image) {
        image = new QImage(render_text(s));
        m_text_images.insert(key, image, std::max<qsizetype>(1, image->sizeInBytes()));
    }
    painter.drawImage(s.position - QPointF(s.outline, s.outline), *image);
}

QImage UIShapeStore::render_text(const Shape& s) const
{
    QFont font = fontOf(s.fontSize);
    QSizeF size = textSize(s);
    int pad = s.outline;
    QImage image(static_cast<int>(std::ceil(size.width())) + 2 * pad, static_cast<int>(std::ceil(size.height())) + 2 * pad,
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setFont(font);
    QPointF base(pad, pad + QFontMetricsF(font).ascent());
    if (pad > 0) {
        p.setPen(s.outlineColor);
        for (int dy = -pad; dy <= pad; ++dy) {
            for (int dx = -pad; dx <= pad; ++dx) {
                if (dx != 0 || dy != 0)
                    p.drawText(base + QPointF(dx, dy), s.text);
            }
        }
    }
    p.setPen(s.color);
    p.drawText(base, s.text);
    return image;
}

int UIShapeStore::polygonAt(float x, float y)
{
    int best = -1;
    QPointF p(x, y);
    visit(QRectF(x - 0.5, y - 0.5, 1.0, 1.0), [&](int id, Shape& s) {
        if (s.kind == Polygon && contains(s.points, p - shift_of(s)) &&
            (best < 0 || draw_rank(m_shapes[best]) < draw_rank(s)))
            best = id;
    });
    return best;
}
