#pragma once

#include <QColor>
#include <QImage>
#include <QRect>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "UITraceColumns.h"

class QPainter;

// Draws traces (open polylines one pixel wide, aliased, measured as UITraceColumns) and opaque
// boxes into a layer over one area of a canvas and then paints the layer in one go: a trace costs
// one run of pixels per column it crosses and a box one per column it covers, not the painter's
// set-up per segment or per fill, so that curves of many thousand points and the marks of their
// keys stay cheap to paint. A later trace covers an earlier one; when every trace is opaque
// they are drawn from the last one back, each pixel written once, so that many curves crossing
// the same rows cost what one does, and straight into the painter's pixels where it paints on a
// plain image.
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
    // Adds the trace measured in columns, moved by offset (whole pixels), in color (ARGB, not
    // premultiplied, as every colour below); the columns must stay as they are until finish.
    void draw(const UITraceColumns& columns, const QPoint& offset, QRgb color);
    // Adds the pixels of box (canvas pixels) filled with the opaque color, over what was added
    // before; does nothing for a translucent color, which the caller paints itself.
    void fill(const QRect& box, QRgb color);
    // Adds the pixels of stamp with its box's top-left corner at at (canvas pixels), filled with the
    // opaque color, over what was added before; does nothing for a translucent color. The stamp
    // must stay as it is until finish.
    void stamp(const Stamp& stamp, const QPoint& at, QRgb color);
    // Draws the traces and paints what they cover over what painter has painted (nothing when no
    // pixel was drawn), and closes the layer.
    void finish(QPainter& painter);

private:
    // A trace (columns, moved by the box's corner), a stamp with its corner at box's, or, with
    // neither, a box.
    struct Trace {
        const UITraceColumns* columns;
        QRect box;
        QRgb color;
        const Stamp* stamp = nullptr;
        size_t next = 0; // a trace's first run not yet drawn, the bands being drawn left to right
    };
    // What the writes into the band being drawn read, copied out of the layer for one item: held
    // in registers, it is not read again after each pixel written, as members would be (a pixel
    // written could be any of them as far as the compiler knows).
    struct Pen {
        // The band's first column at row 0, and how far apart columns and rows lie: in the band's
        // columns, or in the painter's own pixels.
        std::uint32_t* pixels;
        std::ptrdiff_t column_step;
        std::ptrdiff_t row_step;
        int band_first;
        int height;
        std::uint32_t pixel;
        int alpha;
        bool back_to_front;
        // Drawing from the last item back: the coverage (see below).
        std::uint64_t* covered = nullptr;
        int words = 0;
        std::uint64_t last_word = 0;
        int* open = nullptr;
        int* solid_top = nullptr;
        int* solid_bottom = nullptr;
        // The pixel of column (relative to the area, within the band) at row 0.
        std::uint32_t* column(int c) const { return pixels + (c - band_first) * column_step; }
    };
    Pen pen();
    // Draws one trace's runs, or one box's or stamp's columns, within the band being drawn.
    void rasterize(Trace& trace);
    // The columns and rows an item drew into (none while first > last), gathered as it draws and
    // then grown into the band's.
    struct Drawn {
        int first, last, top, bottom;
    };
    // Draws the runs of trace that lie in the band being drawn.
    void draw_runs(Trace& trace);
    // Draws the rows top to bottom (relative to the area, not yet held inside it) of column,
    // adding what it drew to drawn.
    static void draw_run(const Pen& pen, int column, int top, int bottom, Drawn& drawn);
    // Lists each trace, box and stamp in m_bands under every band it reaches, in drawing order.
    void sort_into_bands();
    // Draws the columns of box (within the area and the band) in the opaque pixel being drawn.
    void fill_box(const QRect& box);
    // Draws the columns of stamp (within the area and the band) with its corner at (column, row),
    // relative to the area, in the opaque pixel being drawn.
    void fill_stamp(const Stamp& stamp, int column, int row);
    // Writes the pixel being drawn into the rows r0 to r1 of column (relative to the area, within
    // it), under what a later trace wrote when drawing from the last one back; false when that
    // covers them all already.
    static bool write_rows(const Pen& pen, int column, int r0, int r1);
    // Whether the rows r0 to r1 of column (relative to the area) are all covered by what was drawn
    // before, as far as one stretch of covered rows kept per column tells; else notes them as
    // covered, as they are once drawn. Each of a hundred curves crossing a column mostly falls
    // within the stretch the curves drawn before cover there.
    static bool covered_before(const Pen& pen, int column, int r0, int r1);
    // Grows the drawn bounds over the columns c0 to c1 and rows r0 to r1 (relative to the area).
    void grow(int c0, int c1, int r0, int r1);
    // Writes the pixel being drawn into the rows r0 to r1 of column that no trace drawn before
    // (a later one) has covered.
    static void fill_uncovered(const Pen& pen, int column, int r0, int r1);
    // Writes the pixel being drawn into the rows of column (relative to the area, within it) whose
    // bits are set in the word-th 64 rows, under what a later trace wrote when drawing from the
    // last one back.
    static void write_word(const Pen& pen, int column, int word, std::uint64_t rows);
    // The band's own pixels of column (relative to the area, within the band being drawn).
    std::uint32_t* pixels_of(int column);
    // Returns the pixel of the area's top-left corner in the painter's own pixels (setting
    // m_target_stride), or null unless they can be written in place of painting the layer: an
    // image of 32-bit pixels, reached by a whole-pixel move, with the area wholly inside its clip
    // and nothing else of the painter's state in the way. Opaque items drawn from the last one back
    // (or a lone one) write each pixel once over what is painted beneath, and copying and blending
    // bands is spared.
    std::uint32_t* device_pixels(QPainter& painter);
    // Copies the columns into the image within the drawn bounds, four rows of four columns at a
    // time, and clears them.
    void transpose();
    // Moves four rows from row on of the four columns from column on (relative to the area) into
    // lines, the image's lines of those rows, clearing them.
    void move_block(int column, int row, std::uint32_t* const lines[4]);
    // Moves the first rows (at most four) from row on of column into lines, clearing them.
    void move_pixels(int column, int row, int rows, std::uint32_t* const lines[4]);

    QRect m_area;
    std::vector<Trace> m_traces;
    std::vector<std::vector<int>> m_bands; // per band of columns, the traces that reach it
    int m_band_first = 0, m_band_end = 0;  // the band being drawn, relative to the area
    // The band being drawn column by column, premultiplied ARGB; all clear between bands (each
    // clears what it drew), so that the many small layers of a canvas between its texts cost what
    // they draw.
    std::vector<std::uint32_t> m_columns;
    std::vector<std::uint64_t> m_covered; // per column, a bit per row already written
    int m_words = 0;                      // words of m_covered per column
    std::uint64_t m_last_word = 0;        // the bits of rows within the area in a column's last word
    std::vector<int> m_open_words;        // per column, the words of m_covered not yet full
    // Per column, a stretch of rows known covered (none while top > bottom).
    std::vector<int> m_solid_top, m_solid_bottom;
    bool m_back_to_front = false;         // drawing from the last trace back
    std::uint32_t* m_target = nullptr;    // the painter's pixels drawn into, while finishing
    std::ptrdiff_t m_target_stride = 0;   // pixels from one of their rows to the next
    QImage m_image; // the band's drawn pixels row by row, a band wide and at least as tall as the area
    // The colour being drawn, premultiplied, and its opacity: set again only when an item's colour
    // differs from the one before, as neighbouring marks mostly share theirs.
    QRgb m_color = 0;
    std::uint32_t m_pixel = 0;
    int m_alpha = 0;
    bool m_open = false;
    // The columns and rows of the band drawn in, relative to the area (empty while first > last).
    int m_first_column = 0, m_last_column = -1, m_first_row = 0, m_last_row = -1;
};
