#pragma once

#include <QPointer>
#include <QWidget>

class UIElement;
class QBoxLayout;

// The native side of one toolkit element: the Qt widget that shows it, and the widget whose box
// layout receives the element's children (the same widget unless the element has a frame of its
// own, such as a scroll box or a dialog). Engine-private: only engine/ui sees Qt.
struct UINative {
    QPointer<QWidget> widget;
    QPointer<QWidget> content;
};

// Makes the native record of an element shown by widget (registered with the allocator); when
// content is null the widget receives the children.
UINative* makeNative(QWidget* widget, QWidget* content = nullptr);
// Returns the Qt widget of an element, or null when it has none left.
QWidget* nativeWidget(const UIElement* element);
// Records (or, with null, forgets) the element shown by widget w.
void registerElementWidget(const QObject* w, UIElement* element);
// Returns the element whose own widget is w, or null.
UIElement* elementOfWidget(const QObject* w);
// Returns the element owning w or the nearest of its ancestors, or null.
UIElement* elementAt(const QWidget* w);
// Returns a Qt colour for a toolkit colour (channels 0 to 1, clamped).
QColor toQColor(float r, float g, float b, float a);
// Makes a vertical or horizontal box layout with the toolkit's spacing rules and a trailing
// stretch that takes the free space while no child shares it.
QBoxLayout* makeBoxLayout(QWidget* owner, bool vertical, int spacing, int margin);
// Makes the native record of a layout element: a plain widget with a box layout.
UINative* makeBoxNative(bool vertical, int spacing, int margin);
