#pragma once

class QWidget;
class UIElement;

// Lets a host application that builds its own Qt windows place a toolkit element among them, for
// example a top-level UIWindow inside a dock. The header stays free of Qt: hosts that use it link Qt
// themselves.
class UIHostBridge {
public:
    // Returns the Qt widget that shows element, or null when element is null or its widget is
    // gone. The host may reparent the widget; the element keeps owning it and deletes it when it is
    // destroyed itself.
    static QWidget* widgetOf(const UIElement* element);
};
