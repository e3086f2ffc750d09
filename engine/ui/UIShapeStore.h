#pragma once

#include <QCache>
#include <QColor>
#include <QImage>
#include <QMargins>
#include <QFont>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <cstdint>
#include <unordered_map>
#include <memory>
#include <vector>

#include "UITraceLayer.h"

class QPainter;

// The numbered shapes of one canvas and a uniform grid over their bounds, so that painting a region
// and hit-testing a point look only at the shapes near it: their cost follows the shapes in view,
// not the shapes on the canvas. The id of a removed shape is given to a later one.
class UIShapeStore {
public:
    enum Kind : int { Removed = 0, Line = 1, Polygon = 2, Text = 3, Trace = 4 };

    // What a trace keeps beside its shape.
    struct TraceState {
        // Its pixels as its points put them, the box around its points, and the whole pixels it is
        // moved by from there.
        UITraceColumns columns;
        QRectF extent;
        QPoint offset;
        // Its followers, the offset they are filed in the grid at (a pan moves them without
        // refiling each until an index is needed) and a box around every place their points have
        // had, unmoved (it only grows while it has followers: what a move repaints).
        std::vector<int> followers;
        QPoint filed;
        QRectF reach;
        bool unsettled = false; // moved since the followers were last filed (listed in m_moved)
    };

    // Members are ordered so that none pads another: a canvas holds tens of thousands of shapes.
    struct Shape {
        Kind kind = Removed;
        int order = 0;
        std::uint32_t seq = 0; // creation order, for shapes of equal order
        float width = 1.0f;
        std::vector<QPointF> points;
        QColor color{255, 255, 255};
        QString text;
        QPointF position;
        mutable QSizeF size; // the text's measured size, valid while sized
        int fontSize = 12;
        int outline = 0;
        QColor outlineColor{0, 0, 0};
        QRectF bounds; // empty while the shape draws nothing
        int cells[4] = {0, 0, -1, -1}; // first and last grid cell it is filed in (x0, y0, x1, y1)
        int places[4] = {0, 0, 0, 0}; // its place in each of its first four cells' lists
        std::uint32_t stamp = 0;
        // A line or polygon moved with a trace: the trace's id (-1 for none) and its place in the
        // trace's list of followers.
        int anchor = -1;
        int follower = -1;
        mutable bool sized = false;
        bool stale = false; // bounds wait to be recomputed
        // Whether it changes pixels (a fully transparent shape, a hit area, does not), as of the
        // last touch.
        bool shown = true;
        // How the paint draws it, worked out at the first paint after a change of look or place
        // (while planned is the stamps' generation): into the layer as an opaque box or from a
        // stamp (look) with its corner at at (both before a trace it follows moves them), or else
        // with the painter, in the colour rgba. A paint of thousands of marks then costs no boxing,
        // no look-up and no call for its colour each.
        bool layered = false;
        QRgb rgba = 0;
        std::uint32_t planned = 0;
        QRect box;
        QPoint at;
        const UITraceLayer::Stamp* look = nullptr;
        // What only a trace keeps (null for every other kind: a canvas holds many more marks).
        std::unique_ptr<TraceState> traced;
    };

    // Creates a shape and returns its id.
    int add(Kind kind, int order);
    // Returns the live shape of that kind with that id, or null.
    Shape* find(int id, Kind kind);
    const Shape* find(int id, Kind kind) const;
    // Brings a shape's bounds up to its changed geometry and returns them: at once while it stays in
    // the grid cells it is filed in (a mark nudged by a pan), else at the next paint or hit test.
    QRectF touch(int id);
    // As touch, after every point of a line or polygon moved by the whole pixels by: how it is drawn
    // (a stamp, a box) moves with it rather than being worked out again.
    QRectF touchMoved(int id, const QPoint& by);
    // Measures a trace's points after they changed (the pixels it covers and its box); the caller
    // then touches it.
    void measure(int id);
    // Moves a line or polygon with a trace from now on (a trace of -1 detaches it); false when id is
    // not a live line or polygon or anchor not a live trace.
    bool follow(int id, int anchor);
    // Moves a trace (and its followers) by whole pixels from where their points put them; returns
    // the area they covered before and cover now.
    QRectF move(int id, const QPoint& offset);
    // Removes a shape; false when no live shape of that kind has the id.
    bool remove(int id, Kind kind);
    // Gives a shape a new draw order; false when the id is not live.
    bool reorder(int id, int order);
    // Removes every shape.
    void clear();
    int liveCount() const { return m_live; }

    // Adds area to the pixels waiting for a repaint; returns whether that grew (one rectangle
    // around all of them, which the paint then covers).
    bool invalidate(const QRectF& area);
    const QRect& invalid() const { return m_invalid; }

    // Paints the shapes that meet area, in draw order; returns how many it painted. Nothing waits for
    // a repaint afterwards.
    int paint(QPainter& painter, const QRect& area);
    // Returns the topmost polygon containing (x, y), edges included, or -1.
    int polygonAt(float x, float y);
    // Returns the font of a text shape's size (DejaVu Sans).
    QFont fontOf(int pixelSize) const;
    // Returns the width and height of a text shape's text.
    QSizeF textSize(const Shape& s) const;
    // Returns the area the shape's pixels can cover as it is now (empty when it draws nothing).
    QRectF boundsOf(const Shape& s) const;
    // Returns the box around points first up to end (exclusive, within the list) grown by pad on
    // every side, or an empty one when there are none.
    static QRectF spanOf(const std::vector<QPointF>& points, size_t first, size_t end, double pad);
    // Returns the area a live shape covers before a change: its bounds as last filed, or as they are
    // now when it changed since (the earlier change then marked the area it had been painted in).
    QRectF shownBounds(int id) const;

private:
    static constexpr int k_cell = 128;

    // The look of a small opaque polygon or line at whole pixels apart from its colour and place:
    // its kind, pen width and points relative to the corner of its box.
    struct StampKey {
        static constexpr int MAX_POINTS = 8;
        Kind kind;
        float width;
        int count;
        double offsets[2 * MAX_POINTS];
        bool operator==(const StampKey& other) const;
    };
    struct StampHash {
        size_t operator()(const StampKey& key) const;
    };
    // The most stamps kept; the paint after they are reached starts afresh.
    static constexpr size_t MAX_STAMPS = 256;
    // The largest stamp, in pixels across and down.
    static constexpr int MAX_STAMP_SIZE = 64;

    // Files the shapes whose bounds wait to be recomputed again.
    void refresh();
    // Brings the followers of moved traces to where they are drawn in the grid, then refreshes:
    // what a hit test or a partial paint does first. A full paint reads placed bounds instead.
    void settle();
    // Where the trace a shape follows has moved it since it was filed (0, 0 for others).
    QPoint drift(const Shape& s) const;
    // The shape's bounds where it is drawn now: as filed, moved by its drift.
    QRectF placed(const Shape& s) const { return s.anchor < 0 ? s.bounds : s.bounds.translated(drift(s)); }
    // Where the trace a shape follows moves it (0, 0 for others).
    QPoint shift_of(const Shape& s) const { return s.anchor < 0 ? QPoint() : m_shapes[s.anchor].traced->offset; }
    // Takes a follower out of its trace's list.
    void detach(int id, Shape& s);
    void file(int id, Shape& s);
    void unfile(int id, Shape& s);
    static int slot_of(const Shape& s, int cx, int cy);
    static bool same_cells(const Shape& s, const QRectF& bounds);
    void paint_text(QPainter& painter, const Shape& s);
    QImage render_text(const Shape& s) const;
    std::vector<int>& cell(int cx, int cy) { return m_grid[key(cx, cy)]; }
    static std::int64_t key(int cx, int cy) { return (static_cast<std::int64_t>(cx) << 32) ^ static_cast<std::uint32_t>(cy); }
    template <class F>
    void visit(const QRectF& area, F&& f);
    // Whether the grid cells area spans hold at least half the live shapes: painting it then walks
    // the kept draw order instead of gathering the shapes cell by cell and sorting them.
    bool spans_most(const QRectF& area) const;
    // Fills m_drawn with the shapes that meet area and change pixels, in draw order.
    void gather(const QRectF& area);
    // Notes the draw rank a shape was just given, for the next merge.
    void rank(int id);
    // Merges the shapes added or reordered since into m_order, dropping the entries of removed and
    // reordered ones.
    void merge_order();

    // Paints the shape s with painter, the traces, opaque boxes and stamps through m_traces, which
    // is painted before any other kind of shape draws.
    void paint_shape(QPainter& painter, Shape& s, const QRect& area);
    // Works out how the paint draws s (its layered, box, at and look).
    void plan(Shape& s);
    // Returns the stamp of a small opaque polygon or line s with its points at whole pixels (made on
    // first use) and sets at to where its corner goes before a trace it follows moves it; null for
    // other shapes, and for a new look while MAX_STAMPS are kept. A shape at fractions of a pixel
    // (a handle being dragged) seldom comes back at the same fractions, and a stamp made for one
    // drawing costs more than painting.
    const UITraceLayer::Stamp* stamp_of(const Shape& s, QPoint& at);
    // Returns the pixels an opaque line s of two points at whole pixels along an axis covers, as
    // one box: the painter strokes it as a rectangle, whose reach past the ends and to the sides is
    // measured once per direction and pen width from a short one drawn as a stamp. A null
    // rectangle for other shapes: the grid's long lines then join the layer instead of each
    // costing the painter's stroke.
    QRect line_box(const Shape& s);
    // Draws s (a polygon or a line) into a stamp of size with its corner at at.
    static UITraceLayer::Stamp render_stamp(const Shape& s, const QPoint& at, const QSize& size);
    // Sets painter's pen and brush up for s, a polygon or a line.
    static void set_up(QPainter& painter, const Shape& s);
    // Draws the polygon or line s with the pen and brush set up.
    static void draw_geometry(QPainter& painter, const Shape& s);

    UITraceLayer m_traces; // consecutive traces, opaque boxes and stamps are drawn together
    Kind m_state = Removed; // what the painter is set up for
    QRgb m_brush = 0;       // its brush, while set up for polygons
    QCache<QString, QImage> m_text_images{8 * 1024 * 1024}; // drawn texts, by look, up to 8 MB
    std::unordered_map<StampKey, UITraceLayer::Stamp, StampHash> m_stamps;
    // How far a stroked line along an axis covers pixels past its ends and to its sides, by
    // direction and pen width (solid false where they are no rectangle).
    struct LineReach {
        bool across;
        float width;
        bool solid;
        QMargins reach; // pixels before the first point (left, top) and after the second
    };
    std::vector<LineReach> m_line_reach;
    std::vector<Shape> m_shapes;
    std::vector<int> m_free; // ids of removed shapes, given to the next shapes made
    std::vector<int> m_stale;
    std::vector<int> m_moved; // traces moved since their followers were last settled
    std::unordered_map<std::int64_t, std::vector<int>> m_grid;
    // The live shapes by draw rank, kept between paints (a pan moves thousands of marks but changes
    // no order); an entry whose shape was removed or reordered since no longer matches its rank.
    std::vector<std::pair<std::uint64_t, int>> m_order;
    std::vector<std::pair<std::uint64_t, int>> m_ranked; // added or reordered since the last merge
    std::vector<std::pair<std::uint64_t, int>> m_drawn;  // what the paint under way draws
    // The draw order being merged, kept: a pan merges the ranks of marks coming into view every
    // frame, and a new list of thousands would cost its pages each time.
    std::vector<std::pair<std::uint64_t, int>> m_merged;
    std::uint32_t m_seq = 0;
    std::uint32_t m_stamp = 0;
    std::uint32_t m_stamps_made = 1; // the generation of m_stamps, counted up when it is emptied
    int m_live = 0;
    QRect m_invalid;
};
