#include "ui/UIGridLayout.h"

#include <QGridLayout>
#include <cmath>

#include "UINative.h"
#include "kit/jLog.h"

namespace {

UINative* make_grid_native(int spacing)
{
    auto* w = new QWidget();
    auto* grid = new QGridLayout(w);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setSpacing(spacing);
    return makeNative(w);
}

QGridLayout* grid_of(const UIElement* e) { return static_cast<QGridLayout*>(nativeWidget(e)->layout()); }

Qt::Alignment cell_alignment(int align)
{
    Qt::Alignment h = align == UI_ALIGN_CENTER ? Qt::AlignHCenter : (align == UI_ALIGN_END ? Qt::AlignRight : Qt::AlignLeft);
    return h | Qt::AlignVCenter;
}

} // namespace

UIGridLayout::UIGridLayout(UIRoot* root, int columns, int spacing)
    : UIElement(root, make_grid_native(spacing)), m_columns(std::max(1, columns))
{
    setColumns(m_columns);
}

void UIGridLayout::setColumns(int columns)
{
    m_columns = std::max(1, columns);
    while (m_ratios.size() < m_columns)
        m_ratios.append(1.0f);
    refill();
}

void UIGridLayout::setSpacing(int spacing) { grid_of(this)->setSpacing(spacing); }

void UIGridLayout::setColumnRatio(int column, float ratio)
{
    if (column < 0 || column >= m_columns) {
        jLog::error("%s:column %d outside 0..%d", "UIGridLayout::setColumnRatio", column, m_columns - 1);
        return;
    }
    m_ratios[column] = ratio;
    grid_of(this)->setColumnStretch(column, std::max(0, static_cast<int>(std::lround(ratio * 100.0f))));
}

float UIGridLayout::getColumnRatio(int column) const
{
    return column >= 0 && column < m_columns ? m_ratios[column] : 0.0f;
}

void UIGridLayout::layoutChild(UIElement*, int) { refill(); }

void UIGridLayout::relayoutChild(UIElement*) { refill(); }

void UIGridLayout::unlayoutChild(UIElement* child)
{
    if (QWidget* w = nativeWidget(child)) {
        grid_of(this)->removeWidget(w);
        w->setParent(nullptr);
    }
    refill();
}

// Cells follow the children's order, so any insertion or removal places every child again.
void UIGridLayout::refill()
{
    QGridLayout* grid = grid_of(this);
    for (int i = 0; i < getNumChilds(); ++i)
        grid->removeWidget(nativeWidget(getChild(i)));
    for (int i = 0; i < getNumChilds(); ++i) {
        UIElement* c = getChild(i);
        bool fill = expandOf(c) == UI_EXPAND_ACROSS || expandOf(c) == UI_EXPAND_BOTH;
        grid->addWidget(nativeWidget(c), i / m_columns, i % m_columns, fill ? Qt::Alignment() : cell_alignment(getContentAligns()));
    }
    for (int col = 0; col < m_columns; ++col)
        grid->setColumnStretch(col, std::max(0, static_cast<int>(std::lround(m_ratios[col] * 100.0f))));
}
