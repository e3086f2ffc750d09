#pragma once

#include "kit/jMath.h"
#include "ui/UIElement.h"

// The id of a shape (or row) that does not exist.
constexpr int INVALID_INDEX = -1;

class UIShapeStore;
class UICanvasWidget;

// A drawing surface of numbered shapes: lines (open polylines), traces (open polylines of many points
// drawn one pixel wide and aliased, measured into pixel columns when their points are set and then
// drawn at a cost per column crossed rather than per point: a curve of thousands of keys), polygons
// (filled) and texts. Each shape is created with a draw order; higher orders are drawn later (on
// top), equal orders in creation order. Coordinates are canvas pixels, x to the right, y downward,
// used exactly as given (z is ignored). Painting looks only at the shapes that meet the exposed
// area.
//
// Operations on an id that does not name a live shape of the right kind log "UICanvas::<op>:id"
// and return false (or -1, 0 for the queries).
class UICanvas : public UIElement {
public:
    explicit UICanvas(UIRoot* root);
    ~UICanvas() override;

    // Each returns the new shape's id; the id of a removed shape may be given to a later one.
    int addLine(int order);
    int addPolygon(int order);
    int addText(int order);
    int addTrace(int order);

    bool addLinePoint(int id, const vec3& p);
    bool clearLinePoints(int id);
    bool setLineColor(int id, const vec4& color);
    // Pen width in pixels (1 by default).
    bool setLineWidth(int id, float width);
    bool removeLine(int id);

    // Replace all points of a shape at once; a closed line ends where it began.
    bool setLinePoints(int id, const vec3* points, int count, bool closed);
    bool setPolygonPoints(int id, const vec3* points, int count);

    // Replaces the points of a trace; in each pixel column (x up to x + 1) a chord covers the rows
    // from where it enters the column to where it leaves it.
    bool setTracePoints(int id, const vec3* points, int count);
    // Moves a trace by whole pixels from where its points put it (0, 0 at first; new points keep
    // it): a pan moves a curve of thousands of points at the cost of one shape, and drawing it
    // costs a run per pixel column it crosses, however many points it has.
    bool setTraceOffset(int id, int dx, int dy);
    // Moves a line or polygon with a trace from now on (a trace of -1 lets it go): it is drawn,
    // hit and repainted where its points put it moved by the trace's offset, so that a pan moves a
    // curve's marks with it at no cost per mark. False (logged) when id is not a live line or
    // polygon or trace not a live trace; a removed trace lets its followers go.
    bool followTrace(int id, int trace);
    bool setTraceColor(int id, const vec4& color);
    bool removeTrace(int id);

    bool addPolygonPoint(int id, const vec3& p);
    bool clearPolygonPoints(int id);
    bool setPolygonColor(int id, const vec4& color);
    bool removePolygon(int id);

    bool setText(int id, const char* text);
    // The top-left corner of the text.
    bool setTextPosition(int id, float x, float y);
    bool setTextColor(int id, const vec4& color);
    // Font size in pixels (12 by default).
    bool setTextFontSize(int id, int size);
    // Width in pixels of a dark outline around the glyphs (0, the default, draws none).
    bool setTextOutline(int id, int width);
    bool setTextOutlineColor(int id, const vec4& color);
    // The text's measured size in pixels; 0 for an empty text or a bad id.
    int getTextWidth(int id) const;
    int getTextHeight(int id) const;
    bool removeText(int id);

    // Gives any shape a new draw order; it then draws after every shape of that order.
    bool setOrder(int id, int order);
    // Returns the draw order of a shape, or 0 for a bad id.
    int getOrder(int id) const;
    // Returns the id of the topmost polygon containing the canvas point (edges included), or -1.
    int getPolygonIntersection(int x, int y) const;
    // Removes every shape.
    void removeAll();
    // The number of live shapes.
    int getNumShapes() const;
    // The number of shapes the last paint drew (what was in view).
    int getLastPaintCount() const { return m_last_paint; }

private:
    friend class UICanvasWidget;

    bool add_point(int id, int kind, const vec3& p, const char* op);
    bool set_points(int id, int kind, const vec3* points, int count, bool closed, const char* op);
    bool clear_points(int id, int kind, const char* op);
    bool set_color(int id, int kind, const vec4& color, const char* op);
    bool remove_shape(int id, int kind, const char* op);
    // The live shape of that kind with that id, its area before a change kept for the repaint; null
    // (logged "UICanvas::<op>:id") for a bad id.
    struct Change;
    Change change(int id, int kind, const char* op);

    UIShapeStore* m_store;
    int m_last_paint = 0;
};
