#pragma once

class UIElement;

// Finds a button in an element tree the way scripts and commands name it: a toolbar button by its
// icon's file stem ("time_play"), a text button by the translation key of its text ("save").
class ButtonLookup {
public:
    // Returns the first ToolButton or UIButton below root (root included), in child order, that
    // name stands for; null when none does.
    static UIElement* find(UIElement* root, const char* name);
};
