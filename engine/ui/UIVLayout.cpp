#include "ui/UIVLayout.h"

#include "UINative.h"

UIVLayout::UIVLayout(UIRoot* root, int spacing, int margin)
    : UIElement(root, makeBoxNative(true, spacing, margin))
{
}
