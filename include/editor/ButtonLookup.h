#pragma once

class UIElement;

// Finds a button in an element tree the way scripts and commands name it: a toolbar button by its
// icon's file stem ("time_play"), a text button or a check box by the translation key of its text
// ("save", "apply_hierarchy").
class ButtonLookup {
public:
    // Returns the first ToolButton, UIButton or UICheckBox below root (root included), in child
    // order, that name stands for; null when none does.
    static UIElement* find(UIElement* root, const char* name);
};
