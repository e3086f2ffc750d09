// Draws the editor's toolbar icons from vector paths and writes them as PNG files.
//
// Every icon is designed on a 16 x 16 grid: fills sit on whole grid lines and 2-unit strokes are
// centred on whole grid lines, so both renderings stay sharp-edged: name@16.png at 1 pixel per
// unit (toolbars at normal density) and name.png at 2 pixels per unit (the path the editor names,
// also used on high-density screens). The palette is light on transparent, for a dark theme.
//
// Usage: make_icons OUTPUT_DIR   (the build's `icons` target passes data/core/editor/gui)

#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <cmath>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

const QColor INK(0xd6, 0xda, 0xe0);    // neutral strokes and shapes
const QColor DIM(0x8c, 0x93, 0x9c);    // secondary detail (curve handles, rows)
const QColor KEY(0xf2, 0xb5, 0x3a);    // key marks
const QColor ADD(0x5c, 0xc2, 0x6b);    // create, play
const QColor DEL(0xe5, 0x55, 0x50);    // delete, remove
const QColor FIT(0x5a, 0xa9, 0xe6);    // view arrangement

struct Icon {
    const char* name;
    std::function<void(QPainter&)> draw;
};

QPen stroke(const QColor& color, qreal width = 2.0)
{
    QPen pen(color, width);
    pen.setCapStyle(Qt::FlatCap);
    pen.setJoinStyle(Qt::MiterJoin);
    return pen;
}

QPen roundStroke(const QColor& color, qreal width = 2.0)
{
    QPen pen(color, width);
    pen.setCapStyle(Qt::RoundCap);
    pen.setJoinStyle(Qt::RoundJoin);
    return pen;
}

void fillRect(QPainter& p, qreal x, qreal y, qreal w, qreal h, const QColor& color)
{
    p.fillRect(QRectF(x, y, w, h), color);
}

void fillPolygon(QPainter& p, const QPolygonF& poly, const QColor& color)
{
    p.setPen(Qt::NoPen);
    p.setBrush(color);
    p.drawPolygon(poly);
    p.setBrush(Qt::NoBrush);
}

// A key mark: a diamond with its centre at (cx, cy) and half-diagonal r.
void keyDiamond(QPainter& p, qreal cx, qreal cy, qreal r, const QColor& color = KEY)
{
    fillPolygon(p, QPolygonF({QPointF(cx, cy - r), QPointF(cx + r, cy), QPointF(cx, cy + r), QPointF(cx - r, cy)}),
                color);
}

// A 6 x 6 badge in the lower right corner: a plus or a minus.
void plusBadge(QPainter& p, const QColor& color)
{
    fillRect(p, 9, 12, 6, 2, color);
    fillRect(p, 11, 10, 2, 6, color);
}

void minusBadge(QPainter& p, const QColor& color)
{
    fillRect(p, 9, 12, 7, 2, color);
}

// The rows of a track list: three bars, the lower ones shortened to leave room for a badge.
void trackRows(QPainter& p)
{
    fillRect(p, 1, 2, 14, 2, INK);
    fillRect(p, 1, 6, 14, 2, DIM);
    fillRect(p, 1, 10, 6, 2, DIM);
}

// A double-headed arrow between two stops, horizontal; the caller rotates it for other axes.
void fitArrowX(QPainter& p)
{
    fillRect(p, 1, 3, 2, 10, FIT);
    fillRect(p, 13, 3, 2, 10, FIT);
    fillRect(p, 6, 7, 4, 2, INK);
    fillPolygon(p, QPolygonF({QPointF(3, 8), QPointF(7, 4), QPointF(7, 12)}), INK);
    fillPolygon(p, QPolygonF({QPointF(13, 8), QPointF(9, 4), QPointF(9, 12)}), INK);
}

void drawNewTrack(QPainter& p)
{
    trackRows(p);
    plusBadge(p, ADD);
}

void drawDelTrack(QPainter& p)
{
    trackRows(p);
    minusBadge(p, DEL);
}

void drawArrangeX(QPainter& p)
{
    fitArrowX(p);
}

void drawArrangeY(QPainter& p)
{
    p.translate(16, 0);
    p.rotate(90);
    fitArrowX(p);
}

// Four corner brackets around a curve: the view fits the curve both ways.
void drawArrangeXY(QPainter& p)
{
    const qreal c[4][2] = {{1, 1}, {15, 1}, {15, 15}, {1, 15}};
    for (const auto& corner : c) {
        qreal sx = corner[0] < 8 ? 1 : -1;
        qreal sy = corner[1] < 8 ? 1 : -1;
        fillRect(p, sx > 0 ? corner[0] : corner[0] - 5, sy > 0 ? corner[1] : corner[1] - 2, 5, 2, FIT);
        fillRect(p, sx > 0 ? corner[0] : corner[0] - 2, sy > 0 ? corner[1] : corner[1] - 5, 2, 5, FIT);
    }
    QPainterPath curve(QPointF(4.5, 11));
    curve.cubicTo(QPointF(7, 11), QPointF(9, 5), QPointF(11.5, 5));
    p.setPen(roundStroke(INK, 1.5));
    p.drawPath(curve);
}

void drawKey(QPainter& p)
{
    keyDiamond(p, 8, 8, 7);
    // A highlight facet keeps the mark readable as a solid object at small sizes.
    fillPolygon(p, QPolygonF({QPointF(8, 4), QPointF(12, 8), QPointF(8, 8)}), KEY.lighter(125));
}

void drawKeyRemove(QPainter& p)
{
    // A smaller key in the upper left leaves the badge its own corner.
    keyDiamond(p, 6, 6, 5);
    minusBadge(p, DEL);
}

// The key-type icons share one layout: a curve in the ink colour through a key at the centre,
// with the tangent handles, if any, in the dim colour.
void handle(QPainter& p, QPointF from, QPointF to)
{
    p.setPen(roundStroke(DIM, 1.0));
    p.drawLine(from, to);
    p.setPen(Qt::NoPen);
    p.setBrush(DIM);
    p.drawEllipse(to, 1.25, 1.25);
    p.setBrush(Qt::NoBrush);
}

void drawKeyConstant(QPainter& p)
{
    p.setPen(stroke(INK));
    p.drawPolyline(QPolygonF({QPointF(1, 12), QPointF(9, 12), QPointF(9, 4), QPointF(15, 4)}));
    keyDiamond(p, 5, 12, 3);
    keyDiamond(p, 12, 4, 3);
}

void drawKeyLinear(QPainter& p)
{
    p.setPen(roundStroke(INK));
    p.drawPolyline(QPolygonF({QPointF(1.5, 13.5), QPointF(8, 5), QPointF(14.5, 13.5)}));
    keyDiamond(p, 8, 5, 3.5);
}

void drawKeySmooth(QPainter& p)
{
    QPainterPath curve(QPointF(1, 14));
    curve.cubicTo(QPointF(3, 7), QPointF(5, 6), QPointF(8, 6));
    curve.cubicTo(QPointF(11, 6), QPointF(13, 7), QPointF(15, 14));
    p.setPen(roundStroke(INK));
    p.drawPath(curve);
    // A smooth key at a crest: both handles lie flat, on one line.
    handle(p, QPointF(8, 6), QPointF(2.5, 6));
    handle(p, QPointF(8, 6), QPointF(13.5, 6));
    keyDiamond(p, 8, 6, 3.5);
}

void drawKeyBreak(QPainter& p)
{
    QPainterPath curve(QPointF(1, 14));
    curve.cubicTo(QPointF(4, 13), QPointF(6, 9), QPointF(8, 5));
    curve.cubicTo(QPointF(10, 8), QPointF(12, 10), QPointF(15, 10.5));
    p.setPen(roundStroke(INK));
    p.drawPath(curve);
    handle(p, QPointF(8, 5), QPointF(5, 11));
    handle(p, QPointF(8, 5), QPointF(13.5, 2));
    keyDiamond(p, 8, 5, 3.5);
}

void drawKeyAuto(QPainter& p)
{
    QPainterPath curve(QPointF(1, 14));
    curve.cubicTo(QPointF(5, 14), QPointF(5, 8), QPointF(8, 8));
    curve.cubicTo(QPointF(11, 8), QPointF(11, 2), QPointF(15, 2));
    p.setPen(roundStroke(INK));
    p.drawPath(curve);
    // An automatic tangent follows the neighbours: the handles lie along the slope.
    handle(p, QPointF(8, 8), QPointF(3.5, 12.5));
    handle(p, QPointF(8, 8), QPointF(12.5, 3.5));
    keyDiamond(p, 8, 8, 3.5);
}

void drawSetting(QPainter& p)
{
    const int teeth = 8;
    QPainterPath gear;
    QPolygonF outline;
    for (int i = 0; i < teeth * 4; ++i) {
        qreal angle = (i + 0.5) * M_PI * 2.0 / (teeth * 4);
        qreal r = (i % 4 == 0 || i % 4 == 1) ? 7.5 : 5.5;
        outline << QPointF(8 + r * std::cos(angle), 8 + r * std::sin(angle));
    }
    gear.addPolygon(outline);
    gear.closeSubpath();
    gear.addEllipse(QPointF(8, 8), 2.5, 2.5);
    gear.setFillRule(Qt::OddEvenFill);
    p.setPen(Qt::NoPen);
    p.setBrush(INK);
    p.drawPath(gear);
    p.setBrush(Qt::NoBrush);
}

void drawTimePrev(QPainter& p)
{
    fillRect(p, 2, 3, 2, 10, INK);
    fillPolygon(p, QPolygonF({QPointF(4, 8), QPointF(14, 3), QPointF(14, 13)}), INK);
}

void drawTimeNext(QPainter& p)
{
    fillRect(p, 12, 3, 2, 10, INK);
    fillPolygon(p, QPolygonF({QPointF(12, 8), QPointF(2, 3), QPointF(2, 13)}), INK);
}

void drawTimePlay(QPainter& p)
{
    fillPolygon(p, QPolygonF({QPointF(3, 2), QPointF(14, 8), QPointF(3, 14)}), ADD);
}

void drawTimeLoop(QPainter& p)
{
    // Two arcs chasing each other round the centre, each ending in an arrow head.
    p.setPen(stroke(INK));
    QRectF ring(2, 3, 12, 10);
    p.drawArc(ring, 30 * 16, 150 * 16);
    p.drawArc(ring, 210 * 16, 150 * 16);
    fillPolygon(p, QPolygonF({QPointF(10, 0.5), QPointF(14.5, 4.5), QPointF(9, 6.5)}), INK);
    fillPolygon(p, QPolygonF({QPointF(6, 15.5), QPointF(1.5, 11.5), QPointF(7, 9.5)}), INK);
}

// A parent node with two children: the button that opens the internal nodes of a prefab.
void drawDialogOther(QPainter& p)
{
    fillRect(p, 1, 1, 6, 4, INK);
    fillRect(p, 3, 5, 2, 8, DIM);
    fillRect(p, 5, 6, 4, 2, DIM);
    fillRect(p, 5, 11, 4, 2, DIM);
    fillRect(p, 9, 5, 6, 4, FIT);
    fillRect(p, 9, 10, 6, 4, FIT);
}

const std::vector<Icon>& icons()
{
    static const std::vector<Icon> all = {
        {"new_track", drawNewTrack},       {"del_track", drawDelTrack},
        {"arrange_x", drawArrangeX},       {"arrange_y", drawArrangeY},
        {"arrange_xy", drawArrangeXY},     {"key", drawKey},
        {"key_remove", drawKeyRemove},     {"key_constant", drawKeyConstant},
        {"key_linear", drawKeyLinear},     {"key_smooth", drawKeySmooth},
        {"key_break", drawKeyBreak},       {"key_auto", drawKeyAuto},
        {"setting", drawSetting},          {"time_prev", drawTimePrev},
        {"time_next", drawTimeNext},       {"time_play", drawTimePlay},
        {"time_loop", drawTimeLoop},       {"dialog_other", drawDialogOther},
    };
    return all;
}

bool render(const Icon& icon, int size, const QString& path)
{
    QImage image(size, size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing, true);
    p.scale(size / 16.0, size / 16.0);
    icon.draw(p);
    p.end();
    if (!image.save(path, "PNG")) {
        std::fprintf(stderr, "make_icons: cannot write %s\n", qPrintable(path));
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_icons OUTPUT_DIR\n");
        return 2;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    QDir out(QString::fromLocal8Bit(argv[1]));
    if (!out.exists() && !QDir().mkpath(out.path())) {
        std::fprintf(stderr, "make_icons: cannot create %s\n", argv[1]);
        return 1;
    }
    for (const Icon& icon : icons()) {
        QString name = QString::fromLatin1(icon.name);
        if (!render(icon, 32, out.filePath(name + ".png")) || !render(icon, 16, out.filePath(name + "@16.png")))
            return 1;
    }
    std::printf("make_icons: wrote %zu icons to %s\n", icons().size(), argv[1]);
    return 0;
}
