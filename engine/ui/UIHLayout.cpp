#include "ui/UIHLayout.h"

#include "UINative.h"

UIHLayout::UIHLayout(UIRoot* root, int spacing, int margin)
    : UIElement(root, makeBoxNative(false, spacing, margin))
{
}
