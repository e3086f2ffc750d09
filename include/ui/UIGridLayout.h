#pragma once

#include "ui/UIElement.h"

// A grid filled row by row: child i goes to row i / columns, column i % columns. Columns divide
// the free width by their ratios (all 1 by default).
class UIGridLayout : public UIElement {
public:
    explicit UIGridLayout(UIRoot* root, int columns = 2, int spacing = 4);

    // Sets the number of columns (at least 1) and refills the grid.
    void setColumns(int columns);
    int getColumns() const { return m_columns; }
    // Pixels between cells.
    void setSpacing(int spacing);
    // Sets a column's share of the free width; a column out of range logs and changes nothing.
    void setColumnRatio(int column, float ratio);
    float getColumnRatio(int column) const;

protected:
    void layoutChild(UIElement* child, int position) override;
    void relayoutChild(UIElement* child) override;
    void unlayoutChild(UIElement* child) override;

private:
    void refill();

    int m_columns;
    jVector<float> m_ratios;
};
