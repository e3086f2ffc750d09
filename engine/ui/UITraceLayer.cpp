#include "UITraceLayer.h"

#include <QPainter>
#include <algorithm>
#include <bit>
#include <cmath>

namespace {

// The columns and rows copied together: a tile of both fits in the first-level cache.
constexpr int TILE = 32;

// The largest whole number not above v, for v well inside the range of int: without the
// processor's rounding instruction (the baseline x86-64 has none) std::floor is a library call.
int floorOf(double v)
{
    const int i = static_cast<int>(v);
    return i - (v < i);
}

// dst under the premultiplied src of opacity alpha (0 to 255).
std::uint32_t over(std::uint32_t src, std::uint32_t dst, int alpha)
{
    const std::uint32_t keep = 255 - alpha;
    const std::uint32_t rb = ((dst & 0x00ff00ffu) * keep >> 8) & 0x00ff00ffu;
    const std::uint32_t ag = ((dst >> 8 & 0x00ff00ffu) * keep) & 0xff00ff00u;
    return src + (rb | ag);
}

} // namespace

void UITraceLayer::begin(const QRect& area)
{
    m_area = area;
    m_traces.clear();
    m_first_column = m_first_row = 0;
    m_last_column = m_last_row = -1;
    m_open = true;
}

void UITraceLayer::draw(const std::vector<QPointF>& points, const QColor& color)
{
    if (m_open && !m_area.isEmpty() && !points.empty())
        m_traces.push_back({&points, QRect(), color});
}

void UITraceLayer::fill(const QRect& box, const QColor& color)
{
    if (m_open && color.alpha() == 255 && box.intersects(m_area))
        m_traces.push_back({nullptr, box & m_area, color});
}

void UITraceLayer::stamp(const Stamp& stamp, const QPoint& at, const QColor& color)
{
    const QRect box(at, QSize(int(stamp.columns.size()), 64));
    if (m_open && color.alpha() == 255 && box.intersects(m_area))
        m_traces.push_back({nullptr, box, color, &stamp});
}

void UITraceLayer::rasterize(const Trace& trace)
{
    m_pixel = qPremultiply(trace.color.rgba());
    m_alpha = trace.color.alpha();
    if (trace.stamp) {
        fill_stamp(*trace.stamp, trace.box.left() - m_area.left(), trace.box.top() - m_area.top());
        return;
    }
    if (!trace.points) {
        fill_box(trace.box);
        return;
    }
    const std::vector<QPointF>& points = *trace.points;
    const double left = m_area.left();
    const double right = m_area.left() + m_area.width();
    for (size_t i = 1; i < points.size(); ++i) {
        const QPointF& a = points[i - 1];
        const QPointF& b = points[i];
        const bool inside = a.x() >= left && a.x() < right && b.x() >= left && b.x() < right;
        const int ca = inside ? floorOf(a.x()) : 0;
        const int cb = inside ? floorOf(b.x()) : 0;
        if (inside && ca == cb)
            cover(ca, a.y(), b.y()); // most chords of a long curve stay in one column
        else if (inside && cb == ca + 1 && std::isfinite(a.y() + b.y()))
            step(a, b, cb); // or reach into the next one
        else if (a.x() <= b.x())
            chord(a, b);
        else
            chord(b, a);
    }
    if (points.size() == 1)
        chord(points[0], points[0]);
    flush();
}

void UITraceLayer::fill_box(const QRect& box)
{
    const int r0 = box.top() - m_area.top();
    const int r1 = box.bottom() - m_area.top();
    const int c0 = box.left() - m_area.left();
    const int c1 = box.right() - m_area.left();
    for (int c = c0; c <= c1; ++c)
        write_rows(c, r0, r1);
    grow(c0, c1, r0, r1);
}

void UITraceLayer::fill_stamp(const Stamp& stamp, int column, int row)
{
    const int height = m_area.height();
    const int first = std::max(column, 0);
    const int last = std::min(column + int(stamp.columns.size()), m_area.width()) - 1;
    const int top = std::max(row, 0);
    if (first > last || top >= height || row <= -64)
        return;
    // The stamp's rows within the area, from its top row there.
    const std::uint64_t inside = height - top >= 64 ? ~0ull : (1ull << (height - top)) - 1;
    const int shift = top & 63;
    std::uint64_t used = 0;
    for (int c = first; c <= last; ++c) {
        const std::uint64_t rows = (stamp.columns[c - column] >> (top - row)) & inside;
        used |= rows;
        if (!rows || (m_back_to_front && m_open_words[c] == 0))
            continue;
        write_word(c, top >> 6, rows << shift);
        if (shift && rows >> (64 - shift))
            write_word(c, (top >> 6) + 1, rows >> (64 - shift));
    }
    if (used)
        grow(first, last, top + std::countr_zero(used), top + 63 - std::countl_zero(used));
}

void UITraceLayer::chord(const QPointF& a, const QPointF& b)
{
    const double left = m_area.left();
    const double right = m_area.left() + m_area.width(); // the area ends before this column
    if (b.x() < left || a.x() >= right || !std::isfinite(a.x() + a.y() + b.x() + b.y()))
        return;
    const double dx = b.x() - a.x();
    const double slope = dx > 0.0 ? (b.y() - a.y()) / dx : 0.0;
    const int c0 = floorOf(std::max(a.x(), left));
    const int c1 = floorOf(std::min(b.x(), right - 1.0));
    for (int c = c0; c <= c1; ++c) {
        if (dx <= 0.0) { // straight down or up: the whole chord in one column
            cover(c, a.y(), b.y());
            continue;
        }
        const double xa = std::max(a.x(), double(c));
        const double xb = std::min(b.x(), c + 1.0);
        cover(c, a.y() + (xa - a.x()) * slope, a.y() + (xb - a.x()) * slope);
    }
}

void UITraceLayer::step(const QPointF& a, const QPointF& b, int c)
{
    const double slope = (b.y() - a.y()) / (b.x() - a.x());
    const double y = a.y() + (c - a.x()) * slope; // where chord cuts it, to the bit
    cover(c - 1, a.y(), y);
    cover(c, y, a.y() + (b.x() - a.x()) * slope);
}

void UITraceLayer::cover(int c, double ya, double yb)
{
    const int column = c - m_area.left();
    if (column != m_run_column || m_run_top > m_run_bottom) {
        flush();
        m_run_column = column;
        m_run_top = std::min(ya, yb);
        m_run_bottom = std::max(ya, yb);
        return;
    }
    m_run_top = std::min({m_run_top, ya, yb});
    m_run_bottom = std::max({m_run_bottom, ya, yb});
}

void UITraceLayer::flush()
{
    if (!(m_run_top <= m_run_bottom))
        return; // nothing gathered, or a row that is not a number
    const int height = m_area.height();
    const double top = m_area.top(); // rows far off the area are held just beyond it
    const int r0 = floorOf(std::clamp(m_run_top - top, 0.0, double(height)));
    const int r1 = floorOf(std::clamp(m_run_bottom - top, -1.0, height - 1.0));
    m_run_bottom = m_run_top - 1.0;
    if (r0 > r1)
        return;
    write_rows(m_run_column, r0, r1);
    grow(m_run_column, m_run_column, r0, r1);
}

void UITraceLayer::write_rows(int column, int r0, int r1)
{
    const int height = m_area.height();
    std::uint32_t* cell = m_columns.data() + static_cast<size_t>(column) * height;
    if (m_back_to_front) {
        if (m_open_words[column] > 0) // a full column takes nothing more: many curves cross each
            fill_uncovered(column, r0, r1);
    } else if (m_alpha == 255) {
        std::fill(cell + r0, cell + r1 + 1, m_pixel);
    } else {
        for (int r = r0; r <= r1; ++r)
            cell[r] = over(m_pixel, cell[r], m_alpha);
    }
}

void UITraceLayer::grow(int c0, int c1, int r0, int r1)
{
    if (m_first_column > m_last_column) {
        m_first_column = c0;
        m_last_column = c1;
        m_first_row = r0;
        m_last_row = r1;
        return;
    }
    m_first_column = std::min(m_first_column, c0);
    m_last_column = std::max(m_last_column, c1);
    m_first_row = std::min(m_first_row, r0);
    m_last_row = std::max(m_last_row, r1);
}

void UITraceLayer::fill_uncovered(int column, int r0, int r1)
{
    for (int w = r0 >> 6; w <= r1 >> 6; ++w) {
        const int low = std::max(r0 - w * 64, 0), high = std::min(r1 - w * 64, 63);
        write_word(column, w, (~0ull >> (63 - high)) & (~0ull << low));
    }
}

void UITraceLayer::write_word(int column, int word, std::uint64_t rows)
{
    std::uint32_t* cell = m_columns.data() + static_cast<size_t>(column) * m_area.height() + word * 64;
    if (m_back_to_front) {
        std::uint64_t& covered = m_covered[static_cast<size_t>(column) * m_words + word];
        const std::uint64_t wanted = rows;
        rows &= ~covered;
        covered |= wanted;
        if (rows && covered == (word + 1 < m_words ? ~0ull : m_last_word))
            --m_open_words[column];
    }
    while (rows) { // each stretch of rows at once
        const int first = std::countr_zero(rows);
        const int length = std::countr_one(rows >> first);
        std::fill_n(cell + first, length, m_pixel);
        rows &= length + first >= 64 ? 0 : ~0ull << (first + length);
    }
}

void UITraceLayer::finish(QPainter& painter)
{
    m_open = false;
    if (m_traces.empty())
        return;
    const int width = m_area.width();
    const int height = m_area.height();
    // The image is kept from one paint to the next: a new one of a few megabytes each frame (the
    // drawn bounds move with a pan) would cost its pages' faults.
    if (m_image.width() < width || m_image.height() < height)
        m_image = QImage(std::max(width, m_image.width()), std::max(height, m_image.height()),
                         QImage::Format_ARGB32_Premultiplied);
    m_columns.assign(static_cast<size_t>(width) * height, 0u);
    m_back_to_front = std::all_of(m_traces.begin(), m_traces.end(), [](const Trace& t) { return t.color.alpha() == 255; });
    if (m_back_to_front) {
        m_words = (height + 63) / 64;
        m_last_word = ~0ull >> (m_words * 64 - height);
        m_covered.assign(static_cast<size_t>(width) * m_words, 0u);
        m_open_words.assign(width, m_words);
        for (auto it = m_traces.rbegin(); it != m_traces.rend(); ++it)
            rasterize(*it);
    } else {
        for (const Trace& trace : m_traces)
            rasterize(trace);
    }
    m_traces.clear();
    if (m_first_column > m_last_column)
        return;
    transpose();
    const QRect drawn(QPoint(m_first_column, m_first_row), QPoint(m_last_column, m_last_row));
    painter.drawImage(drawn.topLeft() + m_area.topLeft(), m_image, drawn);
}

void UITraceLayer::transpose()
{
    const int height = m_area.height();
    for (int r0 = m_first_row; r0 <= m_last_row; r0 += TILE) {
        for (int c0 = m_first_column; c0 <= m_last_column; c0 += TILE) {
            for (int r = r0; r <= std::min(r0 + TILE - 1, m_last_row); ++r) {
                auto* line = reinterpret_cast<std::uint32_t*>(m_image.scanLine(r));
                const std::uint32_t* from = m_columns.data() + r;
                for (int c = c0; c <= std::min(c0 + TILE - 1, m_last_column); ++c)
                    line[c] = from[static_cast<size_t>(c) * height];
            }
        }
    }
}
