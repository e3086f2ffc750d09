#pragma once

#include <QColor>
#include <QImage>
#include <QPointF>
#include <QRect>
#include <cstdint>
#include <vector>

class QPainter;

// Draws traces (open polylines one pixel wide, aliased) and opaque boxes into a layer over one area
// of a canvas and then paints the layer in one go: a trace costs one run of pixels per column it
// crosses and a box one per column it covers, not the painter's set-up per segment or per fill, so
// that curves of many thousand points and the marks of their keys stay cheap to paint. In the
// pixel column x (canvas x up to x + 1) a chord covers the rows from the one where it enters the
// column to the one where it leaves it, so a steep chord is a solid vertical run and a trace is
// never broken between columns. A later trace covers an earlier one; when every trace is opaque
// they are drawn from the last one back, each pixel written once, so that many curves crossing
// the same rows cost what one does.
class UITraceLayer {
public:
    // A small shape's pixels, column by column: bit r of a column's mask is set where the shape
    // covers row r of its box (at most 64 rows). Marks drawn many times are drawn from one.
    struct Stamp {
        std::vector<std::uint64_t> columns;
    };

    // Starts a layer over area (canvas pixels); what the last layer held is forgotten.
    void begin(const QRect& area);
    // Whether the layer has begun and not yet been painted.
    bool isOpen() const { return m_open; }
    // Adds the trace through points in color; the points must stay as they are until finish.
    void draw(const std::vector<QPointF>& points, const QColor& color);
    // Adds the pixels of box (canvas pixels) filled with the opaque color, over what was added
    // before; does nothing for a translucent color, which the caller paints itself.
    void fill(const QRect& box, const QColor& color);
    // Adds the pixels of stamp with its box's top-left corner at at (canvas pixels), filled with the
    // opaque color, over what was added before; does nothing for a translucent color. The stamp
    // must stay as it is until finish.
    void stamp(const Stamp& stamp, const QPoint& at, const QColor& color);
    // Draws the traces and paints what they cover over what painter has painted (nothing when no
    // pixel was drawn), and closes the layer.
    void finish(QPainter& painter);

private:
    // A trace (points), a stamp with its corner at box's, or, with neither, a box.
    struct Trace {
        const std::vector<QPointF>* points;
        QRect box;
        QColor color;
        const Stamp* stamp = nullptr;
    };
    // Draws one trace's chords, or one box's or stamp's columns.
    void rasterize(const Trace& trace);
    // Draws the columns of box (within the area) in the opaque pixel being drawn.
    void fill_box(const QRect& box);
    // Draws the columns of stamp (within the area) with its corner at (column, row), relative to
    // the area, in the opaque pixel being drawn.
    void fill_stamp(const Stamp& stamp, int column, int row);
    // Draws the chord a-b (a.x <= b.x) in each column it crosses.
    void chord(const QPointF& a, const QPointF& b);
    // Draws the chord a-b (inside the area, finite) that starts in column c - 1 and ends in c, as
    // chord does.
    void step(const QPointF& a, const QPointF& b, int c);
    // Adds the rows between canvas ya and yb of column c to the run being gathered: chords in time
    // order mostly meet in one column, and the run covers them all at once.
    void cover(int c, double ya, double yb);
    // Fills the gathered run with the pixel being drawn.
    void flush();
    // Writes the pixel being drawn into the rows r0 to r1 of column (relative to the area, within
    // it), under what a later trace wrote when drawing from the last one back.
    void write_rows(int column, int r0, int r1);
    // Grows the drawn bounds over the columns c0 to c1 and rows r0 to r1 (relative to the area).
    void grow(int c0, int c1, int r0, int r1);
    // Writes the pixel being drawn into the rows r0 to r1 of column that no trace drawn before
    // (a later one) has covered.
    void fill_uncovered(int column, int r0, int r1);
    // Writes the pixel being drawn into the rows of column (relative to the area, within it) whose
    // bits are set in the word-th 64 rows, under what a later trace wrote when drawing from the
    // last one back.
    void write_word(int column, int word, std::uint64_t rows);
    // Copies the columns into the image, row by row, within the drawn bounds.
    void transpose();

    QRect m_area;
    std::vector<Trace> m_traces;
    std::vector<std::uint32_t> m_columns; // the area column by column, premultiplied ARGB
    std::vector<std::uint64_t> m_covered; // per column, a bit per row already written
    int m_words = 0;                      // words of m_covered per column
    std::uint64_t m_last_word = 0;        // the bits of rows within the area in a column's last word
    std::vector<int> m_open_words;        // per column, the words of m_covered not yet full
    bool m_back_to_front = false;         // drawing from the last trace back
    QImage m_image; // the drawn pixels row by row, at least as large as the area
    std::uint32_t m_pixel = 0; // the premultiplied colour being drawn
    int m_alpha = 255;
    int m_run_column = 0; // the column of the gathered run, relative to the area
    double m_run_top = 0.0, m_run_bottom = -1.0; // its canvas rows (none while top > bottom)
    bool m_open = false;
    // The columns and rows drawn in, relative to the area (empty while first > last).
    int m_first_column = 0, m_last_column = -1, m_first_row = 0, m_last_row = -1;
};
