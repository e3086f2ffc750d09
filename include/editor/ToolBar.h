#pragma once

#include "editor/ToolButton.h"
#include "ui/UIElement.h"

// A row of toolbar buttons and spacers. Icon buttons take their tooltip from the translation
// "tip_" plus the icon's name. The toolbar also clicks a button when its shortcut is pressed while
// the key press travels through the window's element tree.
class ToolBar : public UIElement {
public:
    // Makes an empty toolbar whose icons and texts are fontSize pixels high.
    explicit ToolBar(UIRoot* root, int fontSize = 16);

    // Sets the icon and text size of the toolbar and of every button on it.
    void setFontSize(int size);
    int getFontSize() const { return m_font_size; }

    // Appends a button showing the icon at path (see ToolButton), whose clicks run callback.
    // Returns the button, owned by the toolbar.
    ToolButton* addButton(const char* icon, const UISlot<UIEventMouse>& callback);
    // Appends a button showing text instead of an icon.
    ToolButton* addTextButton(const char* text, const UISlot<UIEventMouse>& callback);
    // Appends a gap with a thin separator line between groups of buttons.
    void addSpacer();

    // Returns the number of buttons (spacers not counted).
    int getNumButtons() const;
    // Returns button i in the order they were added, or null when i is out of range.
    ToolButton* getButton(int i) const;
    // Brings what every button shows up to date with its recorded state (checked, enabled, icon),
    // after the state was changed without a click (a loaded document, for instance).
    void updateButtons();

    // Clicks the first shown, enabled button whose shortcut the key press is; returns true when one
    // was clicked, otherwise offers the key to the children as every element does.
    bool onKeyPress(const UIEventKey* e) override;

private:
    ToolButton* append(ToolButton* button, const UISlot<UIEventMouse>& callback);

    int m_font_size;
};
