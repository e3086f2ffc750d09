#include "ui/UISpliter.h"

#include <QSplitter>
#include <cmath>

#include "UINative.h"

namespace {

// QSplitter keeps moveSplitter protected; this gives the handle drag a public door.
class UISplitterWidget : public QSplitter {
public:
    using QSplitter::moveSplitter;
    using QSplitter::QSplitter;
};

UISplitterWidget* splitter_of(const UIElement* e) { return static_cast<UISplitterWidget*>(nativeWidget(e)); }

} // namespace

UISpliter::UISpliter(UIRoot* root, int orientation)
    : UIElement(root, makeNative(new UISplitterWidget())), m_orientation(orientation)
{
    UISplitterWidget* s = splitter_of(this);
    s->setChildrenCollapsible(false);
    QObject::connect(s, &QSplitter::splitterMoved, s, [this](int, int) {
        take_weights();
        UIEventChanged e;
        sigSizeChanged(&e, this);
    });
    setOrientation(orientation);
}

void UISpliter::setOrientation(int orientation)
{
    m_orientation = orientation;
    splitter_of(this)->setOrientation(orientation == UI_SPLITER_HORIZONTAL ? Qt::Horizontal : Qt::Vertical);
    apply_weights();
}

void UISpliter::moveHandle(int i, int pos) { splitter_of(this)->moveSplitter(pos, i + 1); }

void UISpliter::layoutChild(UIElement* child, int position)
{
    splitter_of(this)->insertWidget(position, nativeWidget(child));
    apply_weights();
}

void UISpliter::relayoutChild(UIElement*)
{
    if (!m_taking)
        apply_weights();
}

void UISpliter::unlayoutChild(UIElement* child)
{
    if (QWidget* w = nativeWidget(child))
        w->setParent(nullptr);
    apply_weights();
}

void UISpliter::apply_weights()
{
    UISplitterWidget* s = splitter_of(this);
    QList<int> sizes;
    for (int i = 0; i < getNumChilds(); ++i) {
        UIElement* c = getChild(i);
        float w = m_orientation == UI_SPLITER_HORIZONTAL ? c->getWidthWeight() : c->getHeightWeight();
        int share = std::max(1, static_cast<int>(std::lround(w * 1000.0f)));
        s->setStretchFactor(i, share);
        sizes.append(share);
    }
    s->setSizes(sizes);
}

void UISpliter::take_weights()
{
    QList<int> sizes = splitter_of(this)->sizes();
    m_taking = true;
    for (int i = 0; i < getNumChilds() && i < sizes.size(); ++i) {
        if (m_orientation == UI_SPLITER_HORIZONTAL)
            getChild(i)->setWidthWeight(static_cast<float>(sizes[i]));
        else
            getChild(i)->setHeightWeight(static_cast<float>(sizes[i]));
    }
    m_taking = false;
}
