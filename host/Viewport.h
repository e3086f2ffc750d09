#pragma once

#include <QPoint>
#include <QWidget>
#include <vector>

#include "ViewportCamera.h"

class Node;
class QPainter;
class World;

// The 3D view of the world, painted with QPainter: shaded boxes for meshes, bulbs in their light's
// colour, frustums for cameras and axis crosses for the other nodes, over a ground grid. The left
// button orbits, the middle button (or Shift with the left) pans and the wheel zooms. The host
// repaints it every frame, so animated nodes move as the track plays.
class Viewport : public QWidget {
public:
    explicit Viewport(QWidget* parent = nullptr);

    // Shows world (may be null); caption names it in the corner.
    void setWorld(World* world, const QString& caption);
    ViewportCamera& camera() { return m_camera; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    enum class Drag { None, Orbit, Pan };

    struct Face;

    void paint_grid(QPainter& p) const;
    void paint_meshes(QPainter& p) const;
    void collect_faces(const Node* node, std::vector<Face>& faces) const;
    void paint_markers(QPainter& p, const Node* node) const;
    void paint_light(QPainter& p, const Node* node) const;
    void paint_camera(QPainter& p, const Node* node) const;
    void paint_axes(QPainter& p, const Node* node, float size) const;
    void paint_label(QPainter& p, const Node* node) const;
    void paint_overlay(QPainter& p) const;
    // Projects the world segment a-b, clipped to the near plane; false when none of it shows.
    bool segment(const vec3& a, const vec3& b, QPointF& pa, QPointF& pb) const;
    bool point(const vec3& p, QPointF& out) const;

    World* m_world = nullptr;
    QString m_caption;
    ViewportCamera m_camera;
    Drag m_drag = Drag::None;
    QPoint m_last;
};
