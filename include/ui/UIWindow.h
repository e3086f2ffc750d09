#pragma once

#include "kit/jString.h"
#include "ui/UIElement.h"

// A window: a title bar (shown when the window is titleable) above a vertical layout of its
// children. A window outside any tree is a top-level window of its own; a host may also place it
// inside another widget.
class UIWindow : public UIElement {
public:
    // title: the title text; width, height: the initial size (0 leaves the natural size).
    explicit UIWindow(UIRoot* root, const char* title = "", int width = 0, int height = 0);

    // Sets the text of the title bar (and of the native window frame).
    void setTitle(const char* title);
    const jString& getTitle() const { return m_title; }
    // Shows or hides the title bar.
    void setTitleable(bool titleable);
    bool isTitleable() const { return m_titleable; }
    // Resizes the window.
    void setSize(int width, int height);
    // Moves a top-level window to a screen position.
    void setPosition(int x, int y);
    // Shows or hides a top-level window.
    void show();
    void hide();
    bool isShown() const;

private:
    jString m_title;
    bool m_titleable = false;
};
