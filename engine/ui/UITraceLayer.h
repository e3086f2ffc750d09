#pragma once

#include <QColor>
#include <QImage>
#include <QPointF>
#include <QRect>
#include <cstdint>
#include <vector>

class QPainter;

// Draws traces (open polylines one pixel wide, aliased) into a layer over one area of a canvas and
// then paints the layer in one go: a trace costs one run of pixels per column it crosses, not the
// painter's set-up per segment, so that curves of many thousand points stay cheap to paint. In the
// pixel column x (canvas x up to x + 1) a chord covers the rows from the one where it enters the
// column to the one where it leaves it, so a steep chord is a solid vertical run and a trace is
// never broken between columns. A later trace covers an earlier one; when every trace is opaque
// they are drawn from the last one back, each pixel written once, so that many curves crossing
// the same rows cost what one does.
class UITraceLayer {
public:
    // Starts a layer over area (canvas pixels); what the last layer held is forgotten.
    void begin(const QRect& area);
    // Whether the layer has begun and not yet been painted.
    bool isOpen() const { return m_open; }
    // Adds the trace through points in color; the points must stay as they are until finish.
    void draw(const std::vector<QPointF>& points, const QColor& color);
    // Draws the traces and paints what they cover over what painter has painted (nothing when no
    // pixel was drawn), and closes the layer.
    void finish(QPainter& painter);

private:
    struct Trace {
        const std::vector<QPointF>* points;
        QColor color;
    };

    // Draws one trace's chords.
    void rasterize(const Trace& trace);
    // Draws the chord a-b (a.x <= b.x) in each column it crosses.
    void chord(const QPointF& a, const QPointF& b);
    // Adds the rows between canvas ya and yb of column c to the run being gathered: chords in time
    // order mostly meet in one column, and the run covers them all at once.
    void cover(int c, double ya, double yb);
    // Fills the gathered run with the pixel being drawn.
    void flush();
    // Writes the pixel being drawn into the rows r0 to r1 of column that no trace drawn before
    // (a later one) has covered.
    void fill_uncovered(int column, int r0, int r1);
    // Copies the columns into the image, row by row, within the drawn bounds.
    void transpose();

    QRect m_area;
    std::vector<Trace> m_traces;
    std::vector<std::uint32_t> m_columns; // the area column by column, premultiplied ARGB
    std::vector<std::uint64_t> m_covered; // per column, a bit per row already written
    int m_words = 0;                      // words of m_covered per column
    bool m_back_to_front = false;         // drawing from the last trace back
    QImage m_image;
    std::uint32_t m_pixel = 0; // the premultiplied colour being drawn
    int m_alpha = 255;
    int m_run_column = 0; // the column of the gathered run, relative to the area
    double m_run_top = 0.0, m_run_bottom = -1.0; // its canvas rows (none while top > bottom)
    bool m_open = false;
    // The columns and rows drawn in, relative to the area (empty while first > last).
    int m_first_column = 0, m_last_column = -1, m_first_row = 0, m_last_row = -1;
};
