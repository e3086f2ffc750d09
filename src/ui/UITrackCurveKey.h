#pragma once

#include "kit/jMath.h"

class FKey;
class UITrackCurve;

// The point of one key on its parameter's curve: a square mark at the key and, while the key is
// selected on a Bezier segment, a handle on each Bezier side, a thin line from the key to a small
// round dot. The editor key owns it; the curve lists it and draws it on the curve's canvas, where
// it keeps the ids of its shapes for the curve panel's hit tests.
class UITrackCurveKey {
public:
    // The sides of a key's handles.
    static constexpr int SIDE_IN = 0;
    static constexpr int SIDE_OUT = 1;

    explicit UITrackCurveKey(FKey* key) : m_key(key) {}
    virtual ~UITrackCurveKey() = default;
    UITrackCurveKey(const UITrackCurveKey&) = delete;
    UITrackCurveKey& operator=(const UITrackCurveKey&) = delete;

    virtual FKey* getKey() const { return m_key; }
    virtual UITrackCurve* getCurve() const { return m_curve; }
    virtual void setCurve(UITrackCurve* curve) { m_curve = curve; }
    // Leaves the curve (when on one), taking its shapes off the curve's canvas.
    virtual void clearRender();
    // The time of the key the point shows (points sort by it).
    float getTime() const;
    // The value of the key (a float or double key), 0 for other keys.
    double getValue() const;
    // Moves the key to a time and a value (narrowed to float for a float key); the caller sorts
    // and writes the parameter's keys to the engine.
    void setTimeAndValue(float time, double value);

    // Draws on the curve's canvas (nothing when the curve has none), making the shapes it lacks,
    // which move with the curve's polyline: the mark centred on point (canvas pixels before the
    // curve's offset) filled with color, or white when selected; the in and out handles at the
    // points given, each removed when its point is null.
    void render(const vec3& point, const vec4& color, bool selected, const vec3* in, const vec3* out);
    // Removes every shape from the canvas (the key left the view); the ids become -1.
    void hide();
    // Whether any of its shapes is on the canvas.
    bool isDrawn() const { return m_mark != -1 || m_handle_dots[0] != -1 || m_handle_dots[1] != -1; }

    // The canvas id of the mark polygon, -1 when it is not drawn.
    int getMarkPolygon() const { return m_mark; }
    // The canvas id of the dot of handle side (SIDE_IN or SIDE_OUT), -1 when it is not drawn (and
    // for any other side).
    int getHandlePolygon(int side) const;
    // Where the dot of handle side is drawn, in canvas pixels (the origin for a bad side).
    vec3 getHandlePoint(int side) const;

private:
    void draw_mark(const vec3& point, const vec4& color, bool selected);
    void draw_handle(int side, const vec3& point, const vec3* handle);
    void remove_handle(int side);
    static bool valid(int side) { return side == SIDE_IN || side == SIDE_OUT; }

    FKey* m_key;
    UITrackCurve* m_curve = nullptr;
    int m_mark = -1;
    vec4 m_mark_color; // the fill the mark was given last
    int m_handle_lines[2] = {-1, -1};
    int m_handle_dots[2] = {-1, -1};
    vec3 m_handle_points[2];
};
