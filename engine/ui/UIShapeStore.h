#pragma once

#include <QCache>
#include <QColor>
#include <QImage>
#include <QFont>
#include <QPointF>
#include <QRectF>
#include <QString>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "UITraceLayer.h"

class QPainter;

// The numbered shapes of one canvas and a uniform grid over their bounds, so that painting a region
// and hit-testing a point look only at the shapes near it: their cost follows the shapes in view,
// not the shapes on the canvas. Ids are never reused, so a stale id can only miss.
class UIShapeStore {
public:
    enum Kind : int { Removed = 0, Line = 1, Polygon = 2, Text = 3, Trace = 4 };

    struct Shape {
        Kind kind = Removed;
        int order = 0;
        std::uint32_t seq = 0; // creation order, for shapes of equal order
        std::vector<QPointF> points;
        QColor color{255, 255, 255};
        float width = 1.0f;
        QString text;
        QPointF position;
        int fontSize = 12;
        mutable QSizeF size; // the text's measured size, valid while sized
        mutable bool sized = false;
        int outline = 0;
        QColor outlineColor{0, 0, 0};
        QRectF bounds; // empty while the shape draws nothing
        int cells[4] = {0, 0, -1, -1}; // first and last grid cell it is filed in (x0, y0, x1, y1)
        int places[4] = {0, 0, 0, 0}; // its place in each of its first four cells' lists
        bool stale = false; // bounds wait to be recomputed
        std::uint32_t stamp = 0;
    };

    // Creates a shape and returns its id.
    int add(Kind kind, int order);
    // Returns the live shape of that kind with that id, or null.
    Shape* find(int id, Kind kind);
    const Shape* find(int id, Kind kind) const;
    // Marks a shape's bounds for recomputation after its geometry changed.
    void touch(int id);
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

    void refresh();
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

    // Paints the shape s with painter, the traces and opaque boxes through m_traces, which is painted
    // before any other kind of shape draws.
    void paint_shape(QPainter& painter, const Shape& s, const QRect& area);

    UITraceLayer m_traces; // consecutive traces and opaque boxes are drawn together
    Kind m_state = Removed; // what the painter is set up for
    QRgb m_brush = 0;       // its brush, while set up for polygons
    QCache<QString, QImage> m_text_images{8 * 1024 * 1024}; // drawn texts, by look, up to 8 MB
    std::vector<Shape> m_shapes;
    std::vector<int> m_free; // ids of removed shapes, given to the next shapes made
    std::vector<int> m_stale;
    std::unordered_map<std::int64_t, std::vector<int>> m_grid;
    std::uint32_t m_seq = 0;
    std::uint32_t m_stamp = 0;
    int m_live = 0;
    QRect m_invalid;
};
