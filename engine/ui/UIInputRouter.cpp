#include "UIInputRouter.h"

#include <QAbstractSpinBox>
#include <QCursor>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QTextEdit>
#include <QWheelEvent>

#include "UINative.h"
#include "kit/KeyState.h"
#include "ui/UIElement.h"
#include "ui/UIRoot.h"

namespace {

struct KeyPair {
    int qt;
    int code;
};

const KeyPair k_keys[] = {
    {Qt::Key_Escape, UI_KEY_ESCAPE}, {Qt::Key_Return, UI_KEY_ENTER}, {Qt::Key_Enter, UI_KEY_ENTER},
    {Qt::Key_Tab, UI_KEY_TAB}, {Qt::Key_Backspace, UI_KEY_BACKSPACE}, {Qt::Key_Delete, UI_KEY_DELETE},
    {Qt::Key_Insert, UI_KEY_INSERT}, {Qt::Key_Home, UI_KEY_HOME}, {Qt::Key_End, UI_KEY_END},
    {Qt::Key_PageUp, UI_KEY_PAGE_UP}, {Qt::Key_PageDown, UI_KEY_PAGE_DOWN}, {Qt::Key_Left, UI_KEY_LEFT},
    {Qt::Key_Right, UI_KEY_RIGHT}, {Qt::Key_Up, UI_KEY_UP}, {Qt::Key_Down, UI_KEY_DOWN},
};

UIElement* top_of(const QWidget* w)
{
    UIElement* e = elementAt(w);
    while (e && e->getParent())
        e = e->getParent();
    return e;
}

int button_of(Qt::MouseButton b)
{
    switch (b) {
    case Qt::LeftButton: return UI_MOUSE_LEFT;
    case Qt::RightButton: return UI_MOUSE_RIGHT;
    case Qt::MiddleButton: return UI_MOUSE_MIDDLE;
    default: return UI_MOUSE_NONE;
    }
}

int buttons_of(Qt::MouseButtons b)
{
    int mask = 0;
    for (Qt::MouseButton one : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
        if (b & one)
            mask |= 1 << button_of(one);
    }
    return mask;
}

void record_key_state(const UIEventMouse& m)
{
    SetKeyState(VK_LBUTTON, (m.buttons & (1 << UI_MOUSE_LEFT)) != 0);
    SetKeyState(VK_RBUTTON, (m.buttons & (1 << UI_MOUSE_RIGHT)) != 0);
    SetKeyState(VK_MBUTTON, (m.buttons & (1 << UI_MOUSE_MIDDLE)) != 0);
    SetKeyState(VK_SHIFT, (m.modifiers & UI_MOD_SHIFT) != 0);
    SetKeyState(VK_CONTROL, (m.modifiers & UI_MOD_CTRL) != 0);
    SetKeyState(VK_MENU, (m.modifiers & UI_MOD_ALT) != 0);
}

// Typing into a text field is never a command of the tree around it.
bool is_text_entry(const QWidget* w)
{
    return qobject_cast<const QLineEdit*>(w) || qobject_cast<const QAbstractSpinBox*>(w) ||
           qobject_cast<const QTextEdit*>(w) || qobject_cast<const QPlainTextEdit*>(w);
}

} // namespace

bool UIInputRouter::eventFilter(QObject* watched, QEvent* event)
{
    if (!watched->isWidgetType())
        return false;
    auto* w = static_cast<QWidget*>(watched);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
        return route_mouse(w, static_cast<QSinglePointEvent*>(event));
    case QEvent::KeyPress:
        return route_key(w, static_cast<QKeyEvent*>(event));
    case QEvent::FocusIn:
    case QEvent::FocusOut:
        route_focus(w, event);
        return false;
    case QEvent::Leave:
    case QEvent::WindowDeactivate: // a drag cannot go on in a window that lost the input
        route_leave(w);
        return false;
    default:
        return false;
    }
}

bool UIInputRouter::is_propagation(QWidget* w, const Delivery& d) const
{
    return m_last.receiver && d.type == m_last.type && d.timestamp == m_last.timestamp &&
           d.global == m_last.global && d.key == m_last.key && w->isAncestorOf(m_last.receiver);
}

bool UIInputRouter::route_mouse(QWidget* w, QSinglePointEvent* e)
{
    Delivery d{e->type(), e->timestamp(), e->globalPosition(), 0, w};
    if (is_propagation(w, d))
        return false;
    m_last = d;
    UIElement* top = top_of(w);
    UIEventMouse m;
    m.x = static_cast<int>(e->globalPosition().x());
    m.y = static_cast<int>(e->globalPosition().y());
    m.button = button_of(e->button());
    m.buttons = buttons_of(e->buttons());
    m.modifiers = toModifiers(e->modifiers());
    if (e->type() == QEvent::Wheel)
        m.wheel = static_cast<QWheelEvent*>(e)->angleDelta().y() / 120;
    record_key_state(m);
    if (!top)
        return false;
    switch (e->type()) {
    case QEvent::MouseButtonPress: return top->onMouseDown(&m);
    case QEvent::MouseButtonRelease: return top->onMouseUp(&m);
    case QEvent::MouseButtonDblClick: return top->onMouseDClick(&m);
    case QEvent::MouseMove: return top->onMouseMove(&m);
    default: return top->onMouseWheel(&m);
    }
}

bool UIInputRouter::route_key(QWidget* w, QKeyEvent* e)
{
    Delivery d{e->type(), e->timestamp(), QPointF(), e->key(), w};
    if (is_propagation(w, d))
        return false;
    m_last = d;
    SetKeyState(VK_SHIFT, (e->modifiers() & Qt::ShiftModifier) != 0);
    SetKeyState(VK_CONTROL, (e->modifiers() & Qt::ControlModifier) != 0);
    SetKeyState(VK_MENU, (e->modifiers() & Qt::AltModifier) != 0);
    UIElement* top = top_of(w);
    UIEventKey k;
    k.key = toKeyCode(e->key());
    k.modifiers = toModifiers(e->modifiers());
    if (!top || k.key == UI_KEY_NONE || is_text_entry(w))
        return false;
    return top->onKeyPress(&k);
}

void UIInputRouter::route_focus(QWidget* w, QEvent* e)
{
    UIElement* element = elementAt(w);
    if (!element)
        return;
    auto reason = static_cast<QFocusEvent*>(e)->reason();
    if (e->type() == QEvent::FocusIn) {
        m_root->setFocusElement(element);
    } else if (element == m_root->getFocus() && reason != Qt::ActiveWindowFocusReason &&
               reason != Qt::PopupFocusReason) {
        m_root->setFocusElement(nullptr);
    }
}

void UIInputRouter::route_leave(QWidget* w)
{
    UIElement* element = elementOfWidget(w);
    if (!element || element->getParent())
        return;
    UIEventMouse m;
    m.x = QCursor::pos().x();
    m.y = QCursor::pos().y();
    element->onNonClient(&m);
}

int UIInputRouter::toKeyCode(int qtKey)
{
    for (const KeyPair& k : k_keys) {
        if (k.qt == qtKey)
            return k.code;
    }
    if (qtKey >= Qt::Key_F1 && qtKey <= Qt::Key_F12)
        return UI_KEY_F1 + (qtKey - Qt::Key_F1);
    if (qtKey >= Qt::Key_Space && qtKey <= Qt::Key_AsciiTilde)
        return qtKey >= 'a' && qtKey <= 'z' ? qtKey - 32 : qtKey;
    return UI_KEY_NONE;
}

int UIInputRouter::toQtKey(int keyCode)
{
    for (const KeyPair& k : k_keys) {
        if (k.code == keyCode)
            return k.qt;
    }
    if (keyCode >= UI_KEY_F1 && keyCode < UI_KEY_F1 + 12)
        return Qt::Key_F1 + (keyCode - UI_KEY_F1);
    if (keyCode >= Qt::Key_Space && keyCode <= Qt::Key_AsciiTilde)
        return keyCode >= 'a' && keyCode <= 'z' ? keyCode - 32 : keyCode;
    return 0;
}

int UIInputRouter::toModifiers(Qt::KeyboardModifiers mods)
{
    return ((mods & Qt::ShiftModifier) ? UI_MOD_SHIFT : 0) | ((mods & Qt::ControlModifier) ? UI_MOD_CTRL : 0) |
           ((mods & Qt::AltModifier) ? UI_MOD_ALT : 0);
}

Qt::KeyboardModifiers UIInputRouter::toQtModifiers(int modifiers)
{
    Qt::KeyboardModifiers mods;
    if (modifiers & UI_MOD_SHIFT)
        mods |= Qt::ShiftModifier;
    if (modifiers & UI_MOD_CTRL)
        mods |= Qt::ControlModifier;
    if (modifiers & UI_MOD_ALT)
        mods |= Qt::AltModifier;
    return mods;
}
