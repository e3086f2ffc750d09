#pragma once

#include "ui/UIElement.h"

// Splitter orientations.
enum UI_SPLITER_ORIENTATION : int {
    UI_SPLITER_VERTICAL = 0, // children stacked top to bottom, divided by their height weights
    UI_SPLITER_HORIZONTAL = 1, // children side by side, divided by their width weights
};

// Children separated by handles the user drags. Each child's share is its weight (height weight
// when vertical, width weight when horizontal) over the sum of the weights. When the user moves a
// handle, every child's weight becomes its new size in pixels and sigSizeChanged is raised, so a
// handler can copy the weights to another splitter.
class UISpliter : public UIElement {
public:
    explicit UISpliter(UIRoot* root, int orientation = UI_SPLITER_VERTICAL);

    void setOrientation(int orientation);
    int getOrientation() const { return m_orientation; }
    // Moves handle i (between child i and i + 1) to pos pixels from the start, as a user's drag
    // would (raises sigSizeChanged).
    void moveHandle(int i, int pos);

    // Raised after the user moved a handle.
    UISlot<UIEventChanged> sigSizeChanged;

protected:
    void layoutChild(UIElement* child, int position) override;
    void relayoutChild(UIElement* child) override;
    void unlayoutChild(UIElement* child) override;

private:
    void apply_weights();
    void take_weights();

    int m_orientation;
    bool m_taking = false;
};
