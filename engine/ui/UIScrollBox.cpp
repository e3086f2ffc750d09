#include "ui/UIScrollBox.h"

#include <QScrollArea>
#include <QScrollBar>
#include <algorithm>
#include <cmath>

#include "UINative.h"

namespace {

UINative* make_scroll_native()
{
    auto* area = new QScrollArea();
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    auto* inner = new QWidget();
    makeBoxLayout(inner, true, 0, 0);
    area->setWidget(inner);
    return makeNative(area, inner);
}

QScrollArea* area_of(const UIElement* e) { return static_cast<QScrollArea*>(nativeWidget(e)); }

} // namespace

UIScrollBox::UIScrollBox(UIRoot* root) : UIElement(root, make_scroll_native())
{
    QScrollArea* area = area_of(this);
    for (QScrollBar* bar : {area->horizontalScrollBar(), area->verticalScrollBar()}) {
        QObject::connect(bar, &QScrollBar::valueChanged, area, [this](int) {
            UIEventChanged e;
            sigScrolled(&e, this);
        });
    }
    setScrollScale(1.0f);
}

int UIScrollBox::getHScrollValue() const { return area_of(this)->horizontalScrollBar()->value(); }
int UIScrollBox::getVScrollValue() const { return area_of(this)->verticalScrollBar()->value(); }
void UIScrollBox::setHScrollValue(int value) { area_of(this)->horizontalScrollBar()->setValue(value); }
void UIScrollBox::setVScrollValue(int value) { area_of(this)->verticalScrollBar()->setValue(value); }
int UIScrollBox::getHScrollMax() const { return area_of(this)->horizontalScrollBar()->maximum(); }
int UIScrollBox::getVScrollMax() const { return area_of(this)->verticalScrollBar()->maximum(); }

void UIScrollBox::setScrollScale(float scale)
{
    m_scale = scale > 0.0f ? scale : 1.0f;
    int step = std::max(1, static_cast<int>(std::lround(16.0f * m_scale)));
    area_of(this)->horizontalScrollBar()->setSingleStep(step);
    area_of(this)->verticalScrollBar()->setSingleStep(step);
}

void UIScrollBox::getVisibleArea(int& x, int& y, int& width, int& height) const
{
    const QScrollArea* area = area_of(this);
    x = area->horizontalScrollBar()->value();
    y = area->verticalScrollBar()->value();
    width = area->viewport()->width();
    height = area->viewport()->height();
}
