#include "UITraceLayer.h"

#include <QPaintEngine>
#include <QPainter>
#include <algorithm>
#include <bit>
#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace {

// The columns drawn together, each band drawn, copied into the image and painted before the next:
// a band of a tall area fits in the second-level cache, where a whole area of a megabyte or more
// would be fetched from memory again by each of a hundred curves crossing it.
constexpr int BAND = 64;

// dst under the premultiplied src of opacity alpha (0 to 255).
std::uint32_t over(std::uint32_t src, std::uint32_t dst, int alpha)
{
    const std::uint32_t keep = 255 - alpha;
    const std::uint32_t rb = ((dst & 0x00ff00ffu) * keep >> 8) & 0x00ff00ffu;
    const std::uint32_t ag = ((dst >> 8 & 0x00ff00ffu) * keep) & 0xff00ff00u;
    return src + (rb | ag);
}

// The pixels a and b share (none while left > right or top > bottom), worked out here: the
// toolkit's own is a call, and a layer takes thousands of marks.
QRect overlap(const QRect& a, const QRect& b)
{
    return QRect(QPoint(std::max(a.left(), b.left()), std::max(a.top(), b.top())),
                 QPoint(std::min(a.right(), b.right()), std::min(a.bottom(), b.bottom())));
}

bool empty(const QRect& r) { return r.left() > r.right() || r.top() > r.bottom(); }

// Writes pixel into count pixels from to on, step pixels apart: a mark's stretch is a few pixels,
// where the set-up of a vectorised loop would cost more than the stores.
inline void fill_pixels(std::uint32_t* to, int count, std::ptrdiff_t step, std::uint32_t pixel)
{
    if (step != 1) {
        for (; count > 0; --count, to += step)
            *to = pixel;
        return;
    }
#if defined(__SSE2__)
    if (count >= 4) {
        const __m128i four = _mm_set1_epi32(static_cast<int>(pixel));
        for (; count > 4; count -= 4, to += 4)
            _mm_storeu_si128(reinterpret_cast<__m128i*>(to), four);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to + count - 4), four); // the last four, again in part
        return;
    }
#endif
    for (; count > 0; --count)
        *to++ = pixel;
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

void UITraceLayer::draw(const UITraceColumns& columns, const QPoint& offset, QRgb color)
{
    if (m_open && !m_area.isEmpty() && !columns.runs().empty())
        m_traces.push_back({&columns, QRect(offset, QSize(1, 1)), color});
}

void UITraceLayer::fill(const QRect& box, QRgb color)
{
    if (!m_open || qAlpha(color) != 255)
        return;
    if (const QRect inside = overlap(box, m_area); !empty(inside))
        m_traces.push_back({nullptr, inside, color});
}

void UITraceLayer::stamp(const Stamp& stamp, const QPoint& at, QRgb color)
{
    const QRect box(at, QSize(int(stamp.columns.size()), 64));
    if (m_open && qAlpha(color) == 255 && !empty(overlap(box, m_area)))
        m_traces.push_back({nullptr, box, color, &stamp});
}

void UITraceLayer::rasterize(Trace& trace)
{
    if (trace.color != m_color) {
        m_color = trace.color;
        m_pixel = qPremultiply(m_color);
        m_alpha = qAlpha(m_color);
    }
    if (trace.stamp)
        fill_stamp(*trace.stamp, trace.box.left() - m_area.left(), trace.box.top() - m_area.top());
    else if (trace.columns)
        draw_runs(trace);
    else
        fill_box(trace.box);
}

UITraceLayer::Pen UITraceLayer::pen()
{
    Pen pen;
    pen.height = m_area.height();
    pen.band_first = m_band_first;
    if (m_target) {
        pen.pixels = m_target + m_band_first;
        pen.column_step = 1;
        pen.row_step = m_target_stride;
    } else {
        pen.pixels = m_columns.data();
        pen.column_step = pen.height;
        pen.row_step = 1;
    }
    pen.pixel = m_pixel;
    pen.alpha = m_alpha;
    pen.back_to_front = m_back_to_front;
    if (m_back_to_front) {
        pen.covered = m_covered.data();
        pen.words = m_words;
        pen.last_word = m_last_word;
        pen.open = m_open_words.data();
        pen.solid_top = m_solid_top.data();
        pen.solid_bottom = m_solid_bottom.data();
    }
    return pen;
}

void UITraceLayer::draw_runs(Trace& trace)
{
    const Pen pen = this->pen();
    const int dx = trace.box.left() - m_area.left();
    const int dy = trace.box.top() - m_area.top();
    Drawn drawn{m_band_end, -1, pen.height, -1};
    const std::vector<UITraceColumns::Run>& runs = trace.columns->runs();
    if (trace.columns->isDense()) {
        const int start = runs.front().column + dx; // the area's column of the first run
        const std::int16_t* rows = trace.columns->rows().data();
        const int end = std::min(m_band_end - start, int(runs.size()));
        for (int i = std::max(m_band_first - start, 0); i < end; ++i)
            draw_run(pen, start + i, rows[2 * i] + dy, rows[2 * i + 1] + dy, drawn);
    } else {
        size_t next = trace.next;
        while (next < runs.size() && runs[next].column + dx < m_band_first)
            ++next;
        for (; next < runs.size() && runs[next].column + dx < m_band_end; ++next)
            draw_run(pen, runs[next].column + dx, runs[next].top + dy, runs[next].bottom + dy, drawn);
        trace.next = next;
    }
    if (drawn.first <= drawn.last)
        grow(drawn.first, drawn.last, drawn.top, drawn.bottom);
}

inline void UITraceLayer::draw_run(const Pen& pen, int column, int top, int bottom, Drawn& drawn)
{
    const int r0 = std::clamp(top, 0, pen.height);
    const int r1 = std::clamp(bottom, -1, pen.height - 1);
    if (r0 > r1 || !write_rows(pen, column, r0, r1))
        return; // off the area, or under what later items drew, as most runs of a hundred curves are
    drawn.first = std::min(drawn.first, column);
    drawn.last = std::max(drawn.last, column);
    drawn.top = std::min(drawn.top, r0);
    drawn.bottom = std::max(drawn.bottom, r1);
}

void UITraceLayer::fill_box(const QRect& box)
{
    const int r0 = box.top() - m_area.top();
    const int r1 = box.bottom() - m_area.top();
    const int c0 = std::max(box.left() - m_area.left(), m_band_first);
    const int c1 = std::min(box.right() - m_area.left(), m_band_end - 1);
    if (c0 > c1)
        return;
    grow(c0, c1, r0, r1);
    const Pen pen = this->pen();
    if (!pen.back_to_front || (r0 >> 6) != (r1 >> 6)) {
        for (int c = c0; c <= c1; ++c)
            write_rows(pen, c, r0, r1);
        return;
    }
    // A mark's few rows mostly lie in one word of each column: its mask is made once, and the
    // covered rows of that word tell at once what is left to draw.
    const std::uint64_t rows = (~0ull >> (63 - (r1 & 63))) & (~0ull << (r0 & 63));
    for (int c = c0; c <= c1; ++c)
        write_word(pen, c, r0 >> 6, rows);
}

void UITraceLayer::fill_stamp(const Stamp& stamp, int column, int row)
{
    const Pen pen = this->pen();
    const int height = pen.height;
    const int first = std::max(column, m_band_first);
    const int last = std::min(column + int(stamp.columns.size()), m_band_end) - 1;
    const int top = std::max(row, 0);
    if (first > last || top >= height || row <= -64)
        return;
    // The stamp's rows within the area, from its top row there.
    const std::uint64_t inside = height - top >= 64 ? ~0ull : (1ull << (height - top)) - 1;
    const int shift = top & 63;
    const std::uint64_t* masks = stamp.columns.data() - column;
    std::uint64_t used = 0;
    for (int c = first; c <= last; ++c) {
        const std::uint64_t rows = (masks[c] >> (top - row)) & inside;
        used |= rows;
        if (!rows || (pen.back_to_front && pen.open[c] == 0))
            continue;
        write_word(pen, c, top >> 6, rows << shift);
        if (shift && rows >> (64 - shift))
            write_word(pen, c, (top >> 6) + 1, rows >> (64 - shift));
    }
    if (used)
        grow(first, last, top + std::countr_zero(used), top + 63 - std::countl_zero(used));
}

inline bool UITraceLayer::write_rows(const Pen& pen, int column, int r0, int r1)
{
    std::uint32_t* cell = pen.column(column);
    if (pen.back_to_front) {
        if (pen.open[column] == 0 || covered_before(pen, column, r0, r1))
            return false; // a full column takes nothing more: many curves cross each
        fill_uncovered(pen, column, r0, r1);
    } else if (pen.alpha == 255) {
        fill_pixels(cell + r0 * pen.row_step, r1 - r0 + 1, pen.row_step, pen.pixel);
    } else {
        for (int r = r0; r <= r1; ++r)
            cell[r * pen.row_step] = over(pen.pixel, cell[r * pen.row_step], pen.alpha);
    }
    return true;
}

inline bool UITraceLayer::covered_before(const Pen& pen, int column, int r0, int r1)
{
    int& top = pen.solid_top[column];
    int& bottom = pen.solid_bottom[column];
    if (r0 >= top && r1 <= bottom)
        return true;
    if (bottom >= top && r0 <= bottom + 1 && r1 >= top - 1) {
        top = std::min(top, r0);
        bottom = std::max(bottom, r1);
    } else if (bottom < top || r1 - r0 > bottom - top) { // apart: the taller stretch is kept
        top = r0;
        bottom = r1;
    }
    return false;
}

inline void UITraceLayer::grow(int c0, int c1, int r0, int r1)
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

inline void UITraceLayer::fill_uncovered(const Pen& pen, int column, int r0, int r1)
{
    for (int w = r0 >> 6; w <= r1 >> 6; ++w) {
        const int low = std::max(r0 - w * 64, 0), high = std::min(r1 - w * 64, 63);
        write_word(pen, column, w, (~0ull >> (63 - high)) & (~0ull << low));
    }
}

inline void UITraceLayer::write_word(const Pen& pen, int column, int word, std::uint64_t rows)
{
    std::uint32_t* cell = pen.column(column) + word * 64 * pen.row_step;
    if (pen.back_to_front) {
        std::uint64_t& covered = pen.covered[static_cast<size_t>(column) * pen.words + word];
        rows &= ~covered;
        if (!rows)
            return;
        covered |= rows;
        if (covered == (word + 1 < pen.words ? ~0ull : pen.last_word))
            --pen.open[column];
    }
    while (rows) { // each stretch of rows at once
        const int first = std::countr_zero(rows);
        const int length = std::countr_one(rows >> first);
        fill_pixels(cell + first * pen.row_step, length, pen.row_step, pen.pixel);
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
    // The image and the columns hold one band and are kept from one paint to the next: the bands
    // of every area reuse the same few hundred kilobytes, which stay in the cache.
    if (m_image.height() < height)
        m_image = QImage(BAND, height, QImage::Format_ARGB32_Premultiplied);
    if (m_columns.size() < static_cast<size_t>(BAND) * height)
        m_columns.resize(static_cast<size_t>(BAND) * height, 0u);
    // A lone item (a grid line between two labels) covers nothing drawn before: the coverage kept
    // for drawing from the last item back would cost more than it spares.
    const bool opaque =
        std::all_of(m_traces.begin(), m_traces.end(), [](const Trace& t) { return qAlpha(t.color) == 255; });
    m_back_to_front = opaque && m_traces.size() > 1;
    m_color = m_pixel = 0;
    m_alpha = 0;
    if (m_back_to_front) {
        m_words = (height + 63) / 64;
        m_last_word = ~0ull >> (m_words * 64 - height);
        m_covered.assign(static_cast<size_t>(width) * m_words, 0u);
        m_open_words.assign(width, m_words);
        m_solid_top.assign(width, 0);
        m_solid_bottom.assign(width, -1);
    }
    m_target = opaque ? device_pixels(painter) : nullptr;
    sort_into_bands();
    for (size_t band = 0; band < m_bands.size(); ++band) {
        m_band_first = int(band) * BAND;
        m_band_end = std::min(m_band_first + BAND, width);
        m_first_column = m_first_row = 0;
        m_last_column = m_last_row = -1;
        std::vector<int>& items = m_bands[band];
        if (m_back_to_front)
            std::reverse(items.begin(), items.end());
        for (int i : items)
            rasterize(m_traces[i]);
        items.clear();
        if (m_target || m_first_column > m_last_column)
            continue;
        transpose();
        const QRect drawn(QPoint(m_first_column, m_first_row), QPoint(m_last_column, m_last_row));
        painter.drawImage(drawn.topLeft() + m_area.topLeft(), m_image, drawn.translated(-m_band_first, 0));
    }
    m_traces.clear();
    m_target = nullptr;
}

std::uint32_t* UITraceLayer::device_pixels(QPainter& painter)
{
    QPaintEngine* engine = painter.paintEngine();
    QPaintDevice* device = engine ? engine->paintDevice() : nullptr;
    if (!device || device->devType() != QInternal::Image || painter.hasClipping() || painter.opacity() != 1.0 ||
        painter.compositionMode() != QPainter::CompositionMode_SourceOver)
        return nullptr;
    auto* image = static_cast<QImage*>(device);
    const QImage::Format format = image->format();
    if ((format != QImage::Format_ARGB32_Premultiplied && format != QImage::Format_ARGB32 &&
         format != QImage::Format_RGB32) ||
        image->devicePixelRatio() != 1.0 || !image->isDetached())
        return nullptr;
    const QTransform& to_device = painter.deviceTransform();
    const QPoint offset(int(to_device.dx()), int(to_device.dy()));
    if (to_device.type() > QTransform::TxTranslate || offset.x() != to_device.dx() || offset.y() != to_device.dy())
        return nullptr;
    const QRect target = m_area.translated(offset);
    const QRegion clip = engine->systemClip();
    if (!image->rect().contains(target) || (!clip.isEmpty() && !(clip.rectCount() == 1 && clip.boundingRect().contains(target))))
        return nullptr;
    m_target_stride = image->bytesPerLine() / 4;
    return reinterpret_cast<std::uint32_t*>(image->bits()) + target.top() * m_target_stride + target.left();
}

void UITraceLayer::sort_into_bands()
{
    m_bands.resize((m_area.width() + BAND - 1) / BAND);
    const int last = int(m_bands.size()) - 1;
    for (size_t i = 0; i < m_traces.size(); ++i) {
        const Trace& trace = m_traces[i];
        int c0 = trace.box.left(), c1 = trace.box.right();
        if (trace.stamp)
            c1 = c0 + int(trace.stamp->columns.size()) - 1;
        else if (trace.columns) {
            c1 = c0 + trace.columns->runs().back().column;
            c0 += trace.columns->runs().front().column;
        }
        c0 = std::clamp((c0 - m_area.left()) / BAND, 0, last);
        c1 = std::clamp((c1 - m_area.left()) / BAND, 0, last);
        for (int band = c0; band <= c1; ++band)
            m_bands[band].push_back(int(i));
    }
}

inline std::uint32_t* UITraceLayer::pixels_of(int column)
{
    return m_columns.data() + static_cast<size_t>(column - m_band_first) * m_area.height();
}

void UITraceLayer::transpose()
{
    std::uint8_t* const image = m_image.bits();
    const qsizetype stride = m_image.bytesPerLine();
    std::uint32_t* lines[4];
    for (int r = m_first_row; r <= m_last_row; r += 4) {
        const int rows = std::min(4, m_last_row - r + 1);
        for (int i = 0; i < rows; ++i)
            lines[i] = reinterpret_cast<std::uint32_t*>(image + (r + i) * stride);
        int c = m_first_column;
        for (; rows == 4 && c + 3 <= m_last_column; c += 4)
            move_block(c, r, lines);
        for (; c <= m_last_column; ++c)
            move_pixels(c, r, rows, lines);
    }
}

inline void UITraceLayer::move_block(int column, int row, std::uint32_t* const lines[4])
{
    std::uint32_t* from[4];
    for (int k = 0; k < 4; ++k)
        from[k] = pixels_of(column + k) + row;
    const int at = column - m_band_first;
#if defined(__SSE2__)
    const auto load = [](const std::uint32_t* p) { return _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)); };
    const __m128i a = load(from[0]), b = load(from[1]), c = load(from[2]), d = load(from[3]);
    const __m128i ab_low = _mm_unpacklo_epi32(a, b), ab_high = _mm_unpackhi_epi32(a, b);
    const __m128i cd_low = _mm_unpacklo_epi32(c, d), cd_high = _mm_unpackhi_epi32(c, d);
    const __m128i rows[4] = {_mm_unpacklo_epi64(ab_low, cd_low), _mm_unpackhi_epi64(ab_low, cd_low),
                             _mm_unpacklo_epi64(ab_high, cd_high), _mm_unpackhi_epi64(ab_high, cd_high)};
    for (int k = 0; k < 4; ++k) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(lines[k] + at), rows[k]);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(from[k]), _mm_setzero_si128());
    }
#else
    for (int k = 0; k < 4; ++k) {
        for (int i = 0; i < 4; ++i) {
            lines[i][at + k] = from[k][i];
            from[k][i] = 0u;
        }
    }
#endif
}

inline void UITraceLayer::move_pixels(int column, int row, int rows, std::uint32_t* const lines[4])
{
    std::uint32_t* from = pixels_of(column) + row;
    for (int i = 0; i < rows; ++i) {
        lines[i][column - m_band_first] = from[i];
        from[i] = 0u;
    }
}
