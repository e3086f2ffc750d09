#pragma once

#include "kit/jString.h"
#include "ui/UIElement.h"

// A keyboard shortcut of a toolbar button: a toolkit key code (letters as their upper-case
// character codes) and three modifier flags: Ctrl, Shift, Alt.
struct ToolShortcut {
    int key = 0;
    bool ctrl = false;
    bool shift = false;
    bool alt = false;

    bool isSet() const { return key != 0; }
};

// A toolbar button showing an icon (or a text), with a tooltip and an optional shortcut. A button
// made checkable with setCheckEnable(true) is a toggle: a click flips its checked state before the
// click handler runs, so the handler reads the new state with isChecked().
class ToolButton : public UIElement {
public:
    // Makes a button showing the icon at path (as the editor names it, "data/core/editor/gui/key.png",
    // resolved under the data root) drawn iconSize pixels high; an empty path makes a text button
    // showing text. A missing icon file logs an error and shows the icon's name instead.
    ToolButton(UIRoot* root, const char* icon, const char* text = "", int iconSize = 16);
    ~ToolButton() override;

    // Shows the icon at path; returns false, logs the path and shows the icon's name instead when
    // the file cannot be read.
    bool setIcon(const char* path);
    const jString& getIcon() const { return m_icon; }
    void setText(const char* text);
    const jString& getText() const { return m_text; }
    // Sets the text shown when the pointer rests on the button (the shortcut is added to it).
    void setTip(const char* text);
    const jString& getTip() const { return m_tip; }
    // Returns the tooltip as shown: the tip followed by the shortcut, "Play (Ctrl+P)".
    jString getTooltip() const;
    // Sets the icon and text size in pixels.
    void setIconSize(int size);
    int getIconSize() const { return m_icon_size; }

    // Records the shortcut that clicks this button from the keyboard; key 0 removes it.
    void setShortcut(int key, bool ctrl, bool shift, bool alt);
    const ToolShortcut& getShortcut() const { return m_shortcut; }
    // Returns whether a key press is this button's shortcut (letters match in either case).
    bool matchesShortcut(const UIEventKey* e) const;

    // Makes the button a toggle (true) or a push button (false, which also clears the check).
    void setCheckEnable(bool enable);
    bool isCheckEnable() const { return m_check_enable; }
    bool isChecked() const { return m_checked; }
    // Sets the checked state without running the click handler; ignored by push buttons.
    void setChecked(bool checked);
    // Greys the button out; a disabled button ignores clicks and its shortcut.
    void setEnabled(bool enabled);
    bool isEnabled() const { return m_enabled; }

    // Acts as a user's click: a toggle flips its state, then the click handler runs. Returns false
    // and does nothing when the button is disabled.
    bool click();
    // Re-applies the recorded state (icon, text, tooltip, checked, enabled) to what is shown.
    void refreshLook();

    // Raised by every click, after a toggle's state changed.
    UISlot<UIEventMouse> sigClick;

private:
    void on_native_click(bool checked);

    jString m_icon;
    jString m_text;
    jString m_tip;
    ToolShortcut m_shortcut;
    int m_icon_size = 16;
    bool m_check_enable = false;
    bool m_checked = false;
    bool m_enabled = true;
};
