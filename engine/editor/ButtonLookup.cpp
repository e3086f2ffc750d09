#include "editor/ButtonLookup.h"

#include "editor/Locale.h"
#include "editor/ToolButton.h"
#include "ui/UIButton.h"
#include "ui/UICheckBox.h"

namespace {

bool namesButton(UIElement* element, const char* name)
{
    const char* text = tr(name);
    if (auto* tool = dynamic_cast<ToolButton*>(element)) {
        if (tool->getIcon().nempty())
            return tool->getIcon().baseName() == name; // ".../time_play.png" gives "time_play"
        return tool->getText() == text;
    }
    if (auto* button = dynamic_cast<UIButton*>(element))
        return button->getText() == text;
    if (auto* box = dynamic_cast<UICheckBox*>(element))
        return box->getText() == text;
    return false;
}

} // namespace

UIElement* ButtonLookup::find(UIElement* root, const char* name)
{
    if (!root || !name)
        return nullptr;
    if (namesButton(root, name))
        return root;
    for (int i = 0; i < root->getNumChilds(); ++i) {
        if (UIElement* found = find(root->getChild(i), name))
            return found;
    }
    return nullptr;
}
