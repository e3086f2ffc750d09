#include "UIShapeStore.h"

#include <QImage>
#include <QPainter>
#include <algorithm>
#include <bit>
#include <cstdlib>

// How the store draws marks from stamps and straight lines as boxes: the looks it keeps and how it
// measures them.

namespace {

// Whether v is a whole number of pixels well inside int's range.
bool whole(double v)
{
    return std::abs(v) < (1 << 24) && v == static_cast<int>(v);
}

} // namespace

bool UIShapeStore::StampKey::operator==(const StampKey& other) const
{
    return kind == other.kind && width == other.width && count == other.count &&
           std::equal(offsets, offsets + 2 * count, other.offsets);
}

size_t UIShapeStore::StampHash::operator()(const StampKey& key) const
{
    // The offsets' bits (a negative zero made positive, as it compares equal), mixed inline: the
    // library's hash of a double is a call per offset, and a paint looks up thousands of marks.
    size_t h = std::hash<int>()(key.kind * 31 + key.count) ^ std::hash<float>()(key.width);
    for (int i = 0; i < 2 * key.count; ++i)
        h = (h ^ std::bit_cast<std::uint64_t>(key.offsets[i] + 0.0)) * 1099511628211ull;
    return h ^ h >> 29;
}

const UITraceLayer::Stamp* UIShapeStore::stamp_of(const Shape& s, QPoint& at)
{
    const int count = static_cast<int>(s.points.size());
    if ((s.kind != Polygon && s.kind != Line) || s.color.alpha() != 255 || count < 2 ||
        count > StampKey::MAX_POINTS || s.bounds.isEmpty() ||
        !std::all_of(s.points.begin(), s.points.end(), [&](const QPointF& p) { return whole(p.x()) && whole(p.y()); }))
        return nullptr;
    // Every pixel the shape can cover, where its points put it.
    const QRect box = s.bounds.translated(-QPointF(s.anchor < 0 ? QPoint() : m_shapes[s.anchor].traced->filed)).toAlignedRect();
    if (box.width() > MAX_STAMP_SIZE || box.height() > MAX_STAMP_SIZE)
        return nullptr;
    at = box.topLeft();
    StampKey key{s.kind, s.kind == Line ? s.width : 0.0f, count, {}};
    for (int i = 0; i < count; ++i) {
        key.offsets[2 * i] = s.points[i].x() - at.x();
        key.offsets[2 * i + 1] = s.points[i].y() - at.y();
    }
    if (auto it = m_stamps.find(key); it != m_stamps.end())
        return &it->second;
    if (m_stamps.size() >= MAX_STAMPS)
        return nullptr;
    return &m_stamps.emplace(key, render_stamp(s, at, box.size())).first->second;
}

QRect UIShapeStore::line_box(const Shape& s)
{
    if (s.points.size() != 2 || !whole(s.points[0].x()) || !whole(s.points[0].y()) || !whole(s.points[1].x()) ||
        !whole(s.points[1].y()) || s.width > 16.0f)
        return QRect();
    // Either way round, the stroke is the same rectangle.
    const QPoint p = s.points[0].toPoint(), q = s.points[1].toPoint();
    const QPoint a(std::min(p.x(), q.x()), std::min(p.y(), q.y())), b(std::max(p.x(), q.x()), std::max(p.y(), q.y()));
    const bool across = a.y() == b.y() && a.x() < b.x();
    if (!across && !(a.x() == b.x() && a.y() < b.y()))
        return QRect(); // a point or a slanted line
    auto it = std::find_if(m_line_reach.begin(), m_line_reach.end(),
                           [&](const LineReach& r) { return r.across == across && r.width == s.width; });
    if (it == m_line_reach.end()) {
        // A line 8 pixels long in the middle of a stamp large enough for the widest pen.
        Shape probe;
        probe.kind = Line;
        probe.width = s.width;
        probe.points = {QPointF(20, 20), across ? QPointF(28, 20) : QPointF(20, 28)};
        const UITraceLayer::Stamp stamp = render_stamp(probe, QPoint(0, 0), QSize(48, 48));
        int first = -1, last = -1;
        std::uint64_t rows = 0;
        bool solid = true;
        for (int x = 0; x < 48; ++x) {
            if (!stamp.columns[x])
                continue;
            solid = solid && (first < 0 || (x == last + 1 && stamp.columns[x] == rows));
            first = first < 0 ? x : first;
            last = x;
            rows = stamp.columns[x];
        }
        solid = solid && first >= 0 && (rows & (rows + (rows & -rows))) == 0; // one stretch of rows
        const int top = first < 0 ? 0 : std::countr_zero(rows), bottom = 63 - std::countl_zero(rows);
        const QPoint end = probe.points[1].toPoint();
        const QMargins reach(20 - first, 20 - top, last - end.x(), bottom - end.y());
        m_line_reach.push_back({across, s.width, solid, reach});
        it = m_line_reach.end() - 1;
    }
    if (!it->solid)
        return QRect();
    const QMargins& r = it->reach;
    return QRect(QPoint(a.x() - r.left(), a.y() - r.top()), QPoint(b.x() + r.right(), b.y() + r.bottom()));
}

// The painter fills and strokes without antialiasing, so each pixel is covered or not, and a whole
// pixel's shift moves the covered pixels by exactly that: the stamp's pixels are the shape's.
UITraceLayer::Stamp UIShapeStore::render_stamp(const Shape& s, const QPoint& at, const QSize& size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.translate(-at);
        set_up(painter, s);
        draw_geometry(painter, s);
    }
    UITraceLayer::Stamp stamp{std::vector<std::uint64_t>(size.width(), 0)};
    for (int y = 0; y < size.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < size.width(); ++x)
            stamp.columns[x] |= std::uint64_t(qAlpha(line[x]) > 0) << y;
    }
    return stamp;
}
