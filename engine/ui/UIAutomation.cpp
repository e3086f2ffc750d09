#include "ui/UIAutomation.h"

#include <QApplication>
#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPixmap>
#include <QPointer>
#include <QScreen>
#include <QWheelEvent>
#include <deque>

#include "UIInputRouter.h"
#include "UINative.h"
#include "kit/jAllocator.h"
#include "kit/jLog.h"
#include "ui/UIElement.h"
#include "ui/UIRoot.h"

struct UIAutomationPrivate {
    std::deque<UIAnswer> answers;
    QPointer<QWidget> grab; // the widget that took the last press, as Qt's implicit grab does
    Qt::MouseButtons buttons;
    quint64 clock = 0; // timestamps that tell synthesized events apart
    QImage canvas;
};

namespace {

const char* const k_file = "engine/ui/UIAutomation";

Qt::MouseButton qt_button(int button)
{
    switch (button) {
    case UI_MOUSE_RIGHT: return Qt::RightButton;
    case UI_MOUSE_MIDDLE: return Qt::MiddleButton;
    case UI_MOUSE_NONE: return Qt::NoButton;
    default: return Qt::LeftButton;
    }
}

// The deepest shown widget under a screen point; a running modal dialog takes all input.
QWidget* widget_at(const QPoint& global)
{
    QWidget* top = nullptr;
    if (QWidget* modal = QApplication::activeModalWidget()) {
        top = modal->frameGeometry().contains(global) ? modal : nullptr;
    } else {
        for (QWidget* w : QApplication::topLevelWidgets()) {
            if (w->isVisible() && w->frameGeometry().contains(global) && (!top || w == QApplication::activeWindow()))
                top = w;
        }
    }
    if (!top)
        return nullptr;
    QWidget* child = top->childAt(top->mapFromGlobal(global));
    return child ? child : top;
}

QString key_text(int key, int modifiers)
{
    if (key < UI_KEY_SPACE || key > '~' || (modifiers & (UI_MOD_CTRL | UI_MOD_ALT)))
        return QString();
    QChar c(key);
    return (modifiers & UI_MOD_SHIFT) ? QString(c) : QString(c.toLower());
}

} // namespace

UIAutomation::UIAutomation(UIRoot* root)
    : m_root(root), m_private(jNew<UIAutomationPrivate>(k_file, __LINE__, "UIAutomation::UIAutomation"))
{
}

UIAutomation::~UIAutomation() { jDelete(m_private, k_file, __LINE__, "UIAutomation::~UIAutomation"); }

namespace {

void queue(UIAutomationPrivate* p, UIAnswerKind kind, const char* text)
{
    p->answers.push_back(UIAnswer{kind, text ? text : "", vec4()});
}

} // namespace

void UIAutomation::answerTreeItem(const char* dottedPath) { queue(m_private, UIAnswerKind::TreeItem, dottedPath); }
void UIAutomation::answerSelectItem(const char* dottedPath) { queue(m_private, UIAnswerKind::TreeSelect, dottedPath); }
void UIAutomation::answerButton(const char* key) { queue(m_private, UIAnswerKind::Button, key); }
void UIAutomation::answerScreenshot(const char* path) { queue(m_private, UIAnswerKind::Screenshot, path); }
void UIAutomation::answerFind(const char* text) { queue(m_private, UIAnswerKind::Find, text); }
void UIAutomation::answerOk() { queue(m_private, UIAnswerKind::Ok, nullptr); }
void UIAutomation::answerCancel() { queue(m_private, UIAnswerKind::Cancel, nullptr); }
void UIAutomation::answerYes() { queue(m_private, UIAnswerKind::Yes, nullptr); }
void UIAutomation::answerNo() { queue(m_private, UIAnswerKind::No, nullptr); }
void UIAutomation::answerFile(const char* path) { queue(m_private, UIAnswerKind::FilePath, path); }

void UIAutomation::answerColor(const vec4& color)
{
    m_private->answers.push_back(UIAnswer{UIAnswerKind::Color, "", color});
}

int UIAutomation::pendingAnswers() const { return static_cast<int>(m_private->answers.size()); }

bool UIAutomation::takeAnswer(UIAnswer& out)
{
    if (m_private->answers.empty())
        return false;
    out = m_private->answers.front();
    m_private->answers.pop_front();
    return true;
}

void UIAutomation::clearAnswers() { m_private->answers.clear(); }

namespace {

bool send_mouse(UIAutomationPrivate* p, QEvent::Type type, int x, int y, int button, int modifiers, const char* who)
{
    QPoint global(x, y);
    QWidget* target = (type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick || !p->grab)
                          ? widget_at(global)
                          : p->grab.data();
    if (!target) {
        jLog::error("%s:no window at %d, %d", who, x, y);
        return false;
    }
    Qt::MouseButton b = qt_button(button);
    if (type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick)
        p->buttons |= b;
    else if (type == QEvent::MouseButtonRelease)
        p->buttons &= ~Qt::MouseButtons(b);
    QMouseEvent e(type, QPointF(target->mapFromGlobal(global)), QPointF(target->window()->mapFromGlobal(global)),
                  QPointF(global), type == QEvent::MouseMove ? Qt::NoButton : b, p->buttons,
                  UIInputRouter::toQtModifiers(modifiers));
    e.setTimestamp(++p->clock);
    QApplication::sendEvent(target, &e);
    if (type == QEvent::MouseButtonPress)
        p->grab = target;
    else if (type == QEvent::MouseButtonRelease && p->buttons == Qt::NoButton)
        p->grab = nullptr;
    return true;
}

} // namespace

bool UIAutomation::mouseDown(int x, int y, int button, int modifiers)
{
    return send_mouse(m_private, QEvent::MouseButtonPress, x, y, button, modifiers, "UIAutomation::mouseDown");
}

bool UIAutomation::mouseMove(int x, int y, int modifiers)
{
    return send_mouse(m_private, QEvent::MouseMove, x, y, UI_MOUSE_NONE, modifiers, "UIAutomation::mouseMove");
}

bool UIAutomation::mouseUp(int x, int y, int button, int modifiers)
{
    return send_mouse(m_private, QEvent::MouseButtonRelease, x, y, button, modifiers, "UIAutomation::mouseUp");
}

bool UIAutomation::mouseDClick(int x, int y, int button, int modifiers)
{
    // The order in which a real double click arrives.
    return click(x, y, button, modifiers) &&
           send_mouse(m_private, QEvent::MouseButtonDblClick, x, y, button, modifiers, "UIAutomation::mouseDClick") &&
           mouseUp(x, y, button, modifiers);
}

bool UIAutomation::mouseWheel(int x, int y, int notches, int modifiers)
{
    QPoint global(x, y);
    QWidget* target = widget_at(global);
    if (!target) {
        jLog::error("%s:no window at %d, %d", "UIAutomation::mouseWheel", x, y);
        return false;
    }
    QWheelEvent e(QPointF(target->mapFromGlobal(global)), QPointF(global), QPoint(), QPoint(0, notches * 120),
                  m_private->buttons, UIInputRouter::toQtModifiers(modifiers), Qt::NoScrollPhase, false);
    e.setTimestamp(++m_private->clock);
    QApplication::sendEvent(target, &e);
    return true;
}

bool UIAutomation::mouseLeave(const UIElement* window)
{
    QWidget* w = nativeWidget(window);
    if (!w || !w->isVisible()) {
        jLog::error("%s:%s", "UIAutomation::mouseLeave", "the window is not shown");
        return false;
    }
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(w, &leave);
    return true;
}

bool UIAutomation::click(int x, int y, int button, int modifiers)
{
    return mouseDown(x, y, button, modifiers) && mouseUp(x, y, button, modifiers);
}

void UIAutomation::elementPoint(const UIElement* element, int lx, int ly, int& x, int& y) const
{
    x = lx;
    y = ly;
    element->localToScreen(x, y);
}

namespace {

QWidget* key_target(UIRoot* root)
{
    if (QWidget* w = QApplication::focusWidget())
        return w;
    if (UIElement* focus = root->getFocus())
        return nativeWidget(focus);
    if (QWidget* w = QApplication::activeWindow())
        return w;
    for (QWidget* w : QApplication::topLevelWidgets()) {
        if (w->isVisible())
            return w;
    }
    return nullptr;
}

} // namespace

bool UIAutomation::keyPress(int key, int modifiers)
{
    QWidget* target = key_target(m_root);
    int qtKey = UIInputRouter::toQtKey(key);
    if (!target || qtKey == 0) {
        jLog::error("%s:no window takes key %d", "UIAutomation::keyPress", key);
        return false;
    }
    Qt::KeyboardModifiers mods = UIInputRouter::toQtModifiers(modifiers);
    QString text = key_text(key, modifiers);
    QKeyEvent press(QEvent::KeyPress, qtKey, mods, text);
    press.setTimestamp(++m_private->clock);
    QApplication::sendEvent(target, &press);
    QKeyEvent release(QEvent::KeyRelease, qtKey, mods, text);
    release.setTimestamp(++m_private->clock);
    QApplication::sendEvent(target, &release);
    return true;
}

bool UIAutomation::typeText(const char* text)
{
    QWidget* target = key_target(m_root);
    if (!target) {
        jLog::error("%s:no widget has the keyboard focus", "UIAutomation::typeText");
        return false;
    }
    for (QChar c : QString::fromUtf8(text ? text : "")) {
        QKeyEvent press(QEvent::KeyPress, 0, Qt::NoModifier, QString(c));
        press.setTimestamp(++m_private->clock);
        QApplication::sendEvent(target, &press);
    }
    return true;
}

bool UIAutomation::saveScreenshot(const UIElement* element, const char* path) const
{
    const QWidget* w = nativeWidget(element);
    if (!w || !path || !const_cast<QWidget*>(w)->grab().save(QString::fromUtf8(path), "PNG")) {
        jLog::error("%s:cannot write screenshot \"%s\"", "UIAutomation::saveScreenshot", path ? path : "");
        return false;
    }
    return true;
}

bool UIAutomation::saveShown(const UIElement* element, const char* path) const
{
    const QWidget* w = nativeWidget(element);
    const QWidget* top = w ? w->window() : nullptr;
    QScreen* screen = top && w->isVisible() ? top->screen() : nullptr;
    const QPoint at = screen ? w->mapTo(top, QPoint()) : QPoint();
    if (!screen || !path ||
        !screen->grabWindow(top->winId(), at.x(), at.y(), w->width(), w->height()).save(QString::fromUtf8(path), "PNG")) {
        jLog::error("%s:cannot write what is shown to \"%s\"", "UIAutomation::saveShown", path ? path : "");
        return false;
    }
    return true;
}

bool UIAutomation::readPixel(const char* path, int x, int y, vec4& out) const
{
    QImage image;
    if (!path || !image.load(QString::fromUtf8(path))) {
        jLog::error("%s:cannot read image \"%s\"", "UIAutomation::readPixel", path ? path : "");
        return false;
    }
    if (!image.valid(x, y)) {
        jLog::error("%s:point %d, %d outside \"%s\"", "UIAutomation::readPixel", x, y, path);
        return false;
    }
    QColor c = image.pixelColor(x, y);
    out = vec4(c.redF(), c.greenF(), c.blueF(), c.alphaF());
    return true;
}

int UIAutomation::renderRegion(const UIElement* element, int x, int y, int w, int h)
{
    QWidget* widget = nativeWidget(element);
    if (!widget || w <= 0 || h <= 0)
        return 0;
    QImage& image = m_private->canvas;
    if (image.width() != w || image.height() != h)
        image = QImage(w, h, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::black);
    widget->render(&image, QPoint(), QRegion(x, y, w, h), QWidget::DrawChildren);
    return w * h;
}
