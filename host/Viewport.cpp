#include "Viewport.h"

#include <QLinearGradient>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <vector>

#include "NodeFrame.h"
#include "scene/Engine.h"
#include "scene/Material.h"
#include "scene/MaterialParameter.h"
#include "scene/Node.h"
#include "scene/World.h"

struct Viewport::Face {
    QPolygonF polygon;
    float depth = 0.0f;
    QColor color;
};

namespace {

constexpr float k_grid_half = 20.0f;
const vec3 k_sun = normalize(vec3(0.45f, 0.8f, 0.35f));

QColor to_color(const vec4& c, float scale = 1.0f)
{
    auto channel = [scale](float v) { return std::clamp(static_cast<int>(v * scale * 255.0f + 0.5f), 0, 255); };
    return QColor(channel(c.x), channel(c.y), channel(c.z));
}

// A mesh shows in its material's albedo, found through the material's bases; grey without one.
QColor surface_color(const Node* node)
{
    const Material* m = Engine::get()->getMaterialManager()->get(node->getMaterial());
    if (m) {
        int id = m->findParameterIDByTag("albedo");
        if (const MaterialParameter* albedo = m->getParameterByID(id))
            return to_color(albedo->getValue());
    }
    return QColor(150, 150, 156);
}

// A mesh far wider than it is tall (a ground, a floor) is drawn as a plate under everything else.
bool is_plate(const Node* node)
{
    const vec3& s = node->getScale();
    return s.y * 10.0f <= std::min(std::fabs(s.x), std::fabs(s.z));
}

template <class Visit>
void for_each_node(const World* world, Visit visit)
{
    for (int i = 0; i < world->getNumNodes(); ++i) {
        const Node* node = world->getNode(i);
        if (!node->isEnabled())
            continue;
        visit(node);
        for (int j = 0; j < node->getNumInternalNodes(); ++j) {
            const Node* inner = node->getInternalNode(j);
            if (inner->isEnabled())
                visit(inner);
        }
    }
}

} // namespace

Viewport::Viewport(QWidget* parent) : QWidget(parent)
{
    setMinimumSize(320, 240);
    setMouseTracking(false);
    setFocusPolicy(Qt::ClickFocus);
}

void Viewport::setWorld(World* world, const QString& caption)
{
    m_world = world;
    m_caption = caption;
    update();
}

bool Viewport::point(const vec3& p, QPointF& out) const
{
    float x = 0.0f, y = 0.0f;
    if (!m_camera.project(p, width(), height(), x, y))
        return false;
    out = QPointF(x, y);
    return true;
}

bool Viewport::segment(const vec3& a, const vec3& b, QPointF& pa, QPointF& pb) const
{
    vec3 ca = m_camera.toCamera(a), cb = m_camera.toCamera(b);
    if (!ViewportCamera::clipToNear(ca, cb))
        return false;
    float ax, ay, bx, by;
    m_camera.cameraToScreen(ca, width(), height(), ax, ay);
    m_camera.cameraToScreen(cb, width(), height(), bx, by);
    pa = QPointF(ax, ay);
    pb = QPointF(bx, by);
    return true;
}

void Viewport::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    QLinearGradient sky(0, 0, 0, height());
    sky.setColorAt(0.0, QColor(58, 62, 70));
    sky.setColorAt(1.0, QColor(30, 31, 34));
    p.fillRect(rect(), sky);
    paint_grid(p);
    if (m_world) {
        paint_meshes(p);
        for_each_node(m_world, [&](const Node* node) { paint_markers(p, node); });
        for_each_node(m_world, [&](const Node* node) { paint_label(p, node); });
    }
    paint_overlay(p);
}

void Viewport::paint_grid(QPainter& p) const
{
    for (int i = -static_cast<int>(k_grid_half); i <= static_cast<int>(k_grid_half); ++i) {
        float f = static_cast<float>(i);
        QColor c = i % 5 == 0 ? QColor(95, 98, 106) : QColor(66, 68, 74);
        QPointF a, b;
        p.setPen(QPen(i == 0 ? QColor(70, 110, 190) : c, i == 0 ? 1.6 : 1.0));
        if (segment(vec3(f, 0, -k_grid_half), vec3(f, 0, k_grid_half), a, b))
            p.drawLine(a, b);
        p.setPen(QPen(i == 0 ? QColor(190, 70, 70) : c, i == 0 ? 1.6 : 1.0));
        if (segment(vec3(-k_grid_half, 0, f), vec3(k_grid_half, 0, f), a, b))
            p.drawLine(a, b);
    }
}

void Viewport::collect_faces(const Node* node, std::vector<Face>& faces) const
{
    // Corner i of the unit box has x, y, z signs from bits 0, 1, 2.
    static const int k_quads[6][4] = {{0, 2, 6, 4}, {1, 5, 7, 3}, {0, 4, 5, 1}, {2, 3, 7, 6}, {0, 1, 3, 2}, {4, 6, 7, 5}};
    static const vec3 k_normals[6] = {{-1, 0, 0}, {1, 0, 0}, {0, -1, 0}, {0, 1, 0}, {0, 0, -1}, {0, 0, 1}};
    bool plate = is_plate(node);
    vec3 world[8], cam[8];
    for (int i = 0; i < 8; ++i) {
        vec3 local((i & 1) ? 0.5f : -0.5f, plate ? 0.0f : ((i & 2) ? 0.5f : -0.5f), (i & 4) ? 0.5f : -0.5f);
        world[i] = NodeFrame::toWorld(node, local);
        cam[i] = m_camera.toCamera(world[i]);
    }
    QColor base = surface_color(node);
    vec3 eye = m_camera.getEye();
    for (int f = plate ? 3 : 0; f < (plate ? 4 : 6); ++f) {
        const int* q = k_quads[f];
        vec3 normal = NodeFrame::direction(node, k_normals[f]);
        vec3 centre = (world[q[0]] + world[q[1]] + world[q[2]] + world[q[3]]) * 0.25f;
        if (!plate && dot(normal, eye - centre) <= 0.0f)
            continue;
        Face face;
        bool visible = true;
        for (int k = 0; k < 4 && visible; ++k) {
            float x, y;
            visible = m_camera.cameraToScreen(cam[q[k]], width(), height(), x, y);
            face.polygon << QPointF(x, y);
        }
        if (!visible)
            continue;
        float light = plate ? 0.55f : 0.38f + 0.62f * std::max(0.0f, dot(normal, k_sun));
        face.color = QColor::fromRgbF(base.redF() * light, base.greenF() * light, base.blueF() * light,
                                      plate ? 0.3f : 1.0f);
        // Plates lie under everything: they are painted first.
        face.depth = plate ? 1e9f : m_camera.toCamera(centre).z;
        faces.push_back(face);
    }
}

void Viewport::paint_meshes(QPainter& p) const
{
    std::vector<Face> faces;
    for_each_node(m_world, [&](const Node* node) {
        if (node->getType() == OBJECT_MESH)
            collect_faces(node, faces);
    });
    std::stable_sort(faces.begin(), faces.end(), [](const Face& a, const Face& b) { return a.depth > b.depth; });
    for (const Face& face : faces) {
        p.setBrush(face.color);
        p.setPen(QPen(face.color.darker(160), 1.0));
        p.drawPolygon(face.polygon);
    }
}

void Viewport::paint_markers(QPainter& p, const Node* node) const
{
    switch (node->getType()) {
    case OBJECT_MESH: break;
    case LIGHT_POINT:
    case LIGHT_SPOT: paint_light(p, node); break;
    case CAMERA: paint_camera(p, node); break;
    default: paint_axes(p, node, node->getType() == OBJECT_PREFAB ? 0.6f : 0.4f); break;
    }
}

void Viewport::paint_light(QPainter& p, const Node* node) const
{
    vec3 at = NodeFrame::toWorld(node, vec3());
    QPointF c;
    if (!point(at, c))
        return;
    QColor color = to_color(node->getLightColor());
    if (node->getType() == LIGHT_SPOT) {
        QPointF a, b;
        p.setPen(QPen(color, 1.2, Qt::DashLine));
        if (segment(at, at + NodeFrame::direction(node, vec3(0, 0, -1)) * 1.8f, a, b))
            p.drawLine(a, b);
    }
    float radius = 5.0f + 2.0f * std::min(std::max(node->getLightIntensity(), 0.0f), 6.0f);
    QRadialGradient glow(c, radius * 2.2f);
    QColor halo = color;
    halo.setAlpha(110);
    glow.setColorAt(0.0, halo);
    halo.setAlpha(0);
    glow.setColorAt(1.0, halo);
    p.setPen(Qt::NoPen);
    p.setBrush(glow);
    p.drawEllipse(c, radius * 2.2f, radius * 2.2f);
    p.setBrush(color);
    p.setPen(QPen(QColor(20, 20, 20), 1.0));
    p.drawEllipse(c, 6.0, 6.0);
    // The bulb's base, so a light reads as a bulb and not as a dot.
    p.setBrush(QColor(120, 120, 124));
    p.drawRect(QRectF(c.x() - 3.0, c.y() + 5.0, 6.0, 4.0));
}

void Viewport::paint_camera(QPainter& p, const Node* node) const
{
    float half = std::tan(node->getCameraFov() * 0.5f * 3.14159265f / 180.0f);
    float depth = 1.4f;
    vec3 apex = NodeFrame::toWorld(node, vec3());
    vec3 corners[4];
    const float sx[4] = {-1, 1, 1, -1}, sy[4] = {-1, -1, 1, 1};
    for (int i = 0; i < 4; ++i)
        corners[i] = apex + NodeFrame::direction(node, vec3(sx[i] * half * 16.0f / 9.0f, sy[i] * half, -1.0f)) * depth;
    p.setPen(QPen(QColor(200, 205, 215), 1.3));
    QPointF a, b;
    for (int i = 0; i < 4; ++i) {
        if (segment(apex, corners[i], a, b))
            p.drawLine(a, b);
        if (segment(corners[i], corners[(i + 1) % 4], a, b))
            p.drawLine(a, b);
    }
    // The up marker on top of the far rectangle.
    vec3 top = apex + NodeFrame::direction(node, vec3(0, half * 1.35f, -1.0f)) * depth;
    if (segment(corners[2], top, a, b))
        p.drawLine(a, b);
    if (segment(top, corners[3], a, b))
        p.drawLine(a, b);
}

void Viewport::paint_axes(QPainter& p, const Node* node, float size) const
{
    vec3 at = NodeFrame::toWorld(node, vec3());
    const vec3 axes[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    const QColor colors[3] = {QColor(220, 80, 80), QColor(110, 200, 90), QColor(80, 130, 230)};
    for (int i = 0; i < 3; ++i) {
        QPointF a, b;
        p.setPen(QPen(colors[i], 1.6));
        if (segment(at, at + NodeFrame::direction(node, axes[i]) * size, a, b))
            p.drawLine(a, b);
    }
}

void Viewport::paint_label(QPainter& p, const Node* node) const
{
    if (node->getParent())
        return; // internal nodes stay unnamed; their prefab's name stands for them
    QPointF at;
    if (!point(NodeFrame::toWorld(node, vec3()), at))
        return;
    QFont font = p.font();
    font.setPixelSize(11);
    p.setFont(font);
    p.setPen(QColor(0, 0, 0, 160));
    p.drawText(at + QPointF(11, -7), QString::fromUtf8(node->getName().c_str()));
    p.setPen(QColor(225, 225, 230));
    p.drawText(at + QPointF(10, -8), QString::fromUtf8(node->getName().c_str()));
}

void Viewport::paint_overlay(QPainter& p) const
{
    QFont font = p.font();
    font.setPixelSize(12);
    font.setBold(true);
    p.setFont(font);
    p.setPen(QColor(230, 230, 235));
    p.drawText(QPointF(12, 22), "Perspective");
    font.setBold(false);
    p.setFont(font);
    p.setPen(QColor(170, 172, 180));
    p.drawText(QPointF(100, 22), m_caption);
    font.setPixelSize(11);
    p.setFont(font);
    p.setPen(QColor(140, 142, 150));
    p.drawText(QPointF(12, height() - 12), "Left drag: orbit    Middle or Shift+left drag: pan    Wheel: zoom");
    // The orientation gizmo, turned as the view is.
    QPointF centre(width() - 44.0, height() - 44.0);
    const vec3 axes[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    const QColor colors[3] = {QColor(220, 80, 80), QColor(110, 200, 90), QColor(80, 130, 230)};
    const char* names[3] = {"X", "Y", "Z"};
    vec3 origin = m_camera.toCamera(m_camera.getTarget());
    for (int i = 0; i < 3; ++i) {
        vec3 d = m_camera.toCamera(m_camera.getTarget() + axes[i]) - origin;
        QPointF tip = centre + QPointF(d.x * 26.0, -d.y * 26.0);
        p.setPen(QPen(colors[i], 2.0));
        p.drawLine(centre, tip);
        p.drawText(tip + QPointF(-3, 4) + QPointF(d.x * 8.0, -d.y * 8.0), names[i]);
    }
}

void Viewport::mousePressEvent(QMouseEvent* event)
{
    m_last = event->position().toPoint();
    bool shift = event->modifiers() & Qt::ShiftModifier;
    if (event->button() == Qt::MiddleButton || (event->button() == Qt::LeftButton && shift))
        m_drag = Drag::Pan;
    else if (event->button() == Qt::LeftButton)
        m_drag = Drag::Orbit;
}

void Viewport::mouseMoveEvent(QMouseEvent* event)
{
    QPoint now = event->position().toPoint();
    QPoint delta = now - m_last;
    m_last = now;
    if (m_drag == Drag::Orbit)
        m_camera.orbit(-delta.x() * 0.4f, delta.y() * 0.4f);
    else if (m_drag == Drag::Pan)
        m_camera.pan(static_cast<float>(delta.x()), static_cast<float>(delta.y()), height());
    if (m_drag != Drag::None)
        update();
}

void Viewport::mouseReleaseEvent(QMouseEvent*) { m_drag = Drag::None; }

void Viewport::wheelEvent(QWheelEvent* event)
{
    m_camera.zoom(static_cast<float>(event->angleDelta().y()) / 120.0f);
    update();
}
