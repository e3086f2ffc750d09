#pragma once

#include <QEvent>
#include <QObject>
#include <QPointF>
#include <QPointer>
#include <QWidget>

class UIRoot;
class QKeyEvent;
class QSinglePointEvent;

// Routes native input into the element trees before the native widgets see it: installed on the
// application, it hands every mouse and key event to the top element of the tree that holds the
// receiving widget, and swallows the event when the tree consumed it. Qt shows a mouse or key
// event to the application's filters once per widget it propagates through; only the first
// delivery is routed.
class UIInputRouter : public QObject {
public:
    explicit UIInputRouter(UIRoot* root) : m_root(root) {}

    bool eventFilter(QObject* watched, QEvent* event) override;

    // Converts a Qt key to the toolkit's key code (0 when the toolkit has none for it).
    static int toKeyCode(int qtKey);
    // Converts a toolkit key code back to a Qt key (0 when unknown).
    static int toQtKey(int keyCode);
    // Converts Qt keyboard modifiers to the toolkit's modifier flags.
    static int toModifiers(Qt::KeyboardModifiers mods);
    // Converts toolkit modifier flags to Qt keyboard modifiers.
    static Qt::KeyboardModifiers toQtModifiers(int modifiers);

private:
    struct Delivery {
        QEvent::Type type = QEvent::None;
        quint64 timestamp = 0;
        QPointF global;
        int key = 0;
        QPointer<QWidget> receiver;
    };

    bool route_mouse(QWidget* w, QSinglePointEvent* e);
    bool route_key(QWidget* w, QKeyEvent* e);
    void route_focus(QWidget* w, QEvent* e);
    void route_leave(QWidget* w);
    bool is_propagation(QWidget* w, const Delivery& d) const;

    UIRoot* m_root;
    Delivery m_last;
};
