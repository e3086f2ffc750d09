#pragma once

#include "ui/UIElement.h"

// A layout that stacks its children left to right; children that share the free space
// (expand 2 or 3) divide it by their width weights.
class UIHLayout : public UIElement {
public:
    // spacing: pixels between children; margin: pixels around them.
    explicit UIHLayout(UIRoot* root, int spacing = 4, int margin = 0);
};
