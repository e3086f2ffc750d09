#include "ui/UIHostBridge.h"

#include "UINative.h"

QWidget* UIHostBridge::widgetOf(const UIElement* element)
{
    return element ? nativeWidget(element) : nullptr;
}
