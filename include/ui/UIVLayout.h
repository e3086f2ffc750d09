#pragma once

#include "ui/UIElement.h"

// A layout that stacks its children top to bottom; children that share the free space
// (expand 2 or 3) divide it by their height weights.
class UIVLayout : public UIElement {
public:
    // spacing: pixels between children; margin: pixels around them.
    explicit UIVLayout(UIRoot* root, int spacing = 4, int margin = 0);
};
