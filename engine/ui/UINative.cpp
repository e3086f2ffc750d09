#include "UINative.h"

#include <QBoxLayout>
#include <QColor>
#include <QHash>
#include <algorithm>

#include "kit/jAllocator.h"
#include "ui/UIElement.h"

namespace {

QHash<const QObject*, UIElement*>& element_table()
{
    static QHash<const QObject*, UIElement*> table;
    return table;
}

float unit(float v) { return std::clamp(v, 0.0f, 1.0f); }

} // namespace

UINative* makeNative(QWidget* widget, QWidget* content)
{
    UINative* n = jNew<UINative>("engine/ui/UINative", __LINE__, "UIElement::UIElement");
    n->widget = widget;
    n->content = content ? content : widget;
    return n;
}

QWidget* nativeWidget(const UIElement* element)
{
    return element && element->native() ? element->native()->widget.data() : nullptr;
}

void registerElementWidget(const QObject* w, UIElement* element)
{
    if (element)
        element_table().insert(w, element);
    else
        element_table().remove(w);
}

UIElement* elementOfWidget(const QObject* w) { return element_table().value(w, nullptr); }

UIElement* elementAt(const QWidget* w)
{
    for (; w; w = w->parentWidget()) {
        if (UIElement* e = elementOfWidget(w))
            return e;
    }
    return nullptr;
}

QColor toQColor(float r, float g, float b, float a)
{
    return QColor::fromRgbF(unit(r), unit(g), unit(b), unit(a));
}

QBoxLayout* makeBoxLayout(QWidget* owner, bool vertical, int spacing, int margin)
{
    auto* layout = new QBoxLayout(vertical ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight, owner);
    layout->setSpacing(spacing);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->addStretch(1);
    return layout;
}

UINative* makeBoxNative(bool vertical, int spacing, int margin)
{
    auto* w = new QWidget();
    makeBoxLayout(w, vertical, spacing, margin);
    return makeNative(w);
}
