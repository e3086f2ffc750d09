#pragma once

#include "kit/jString.h"
#include "ui/UIElement.h"
#include "ui/Widget.h"

struct UIWidgetState;

// Window styles of a UIWidget.
enum UI_WIDGET_STYLE : int {
    UI_WIDGET_DEFAULT = 0, // a dialog window with a title bar and a close button
    UI_WIDGET_TOOL = 1, // a small tool window that stays above its application
};

// A top-level window that shows one panel, modeless (show) or modal (modality). The widget does
// not own the panel given to setUI: release() takes the panel out again and the panel's creator
// releases and frees it. A modal run first takes the answers queued on the automation hook; with
// none and no display it closes at once as cancelled (with a warning), so nothing blocks.
class UIWidget : public UIElement {
public:
    UIWidget(UIRoot* root, const UIRect& rect, int style = UI_WIDGET_DEFAULT);
    ~UIWidget() override;

    // Shows panel as the widget's content with a title; a previous panel is taken out first.
    // Null logs and changes nothing.
    void setUI(UIElement* panel, const char* title);
    // The panel shown, or null.
    UIElement* getUI() const;
    void setTitle(const char* title);
    const jString& getTitle() const { return m_title; }
    // Whether text input methods (IME) serve the widget's fields.
    void setIME(bool enabled);
    // true: the window's close button closes and releases the widget (ending a modal run);
    // false: it only hides the widget, which can be shown again.
    void setForceClose(bool force);
    // Whether the Escape key closes the widget as the close button does.
    void setEscClose(bool close);
    void setSize(int width, int height);
    void setPosition(int x, int y);
    // Moves the widget to the middle of the screen.
    void center();
    // Shows the widget modelessly.
    void show();
    void hide();
    bool isShown() const;
    // Shows the widget modally and returns when it is closed.
    void modality();
    // True while a modal run is under way.
    bool isModal() const;
    // Hides the widget and ends a modal run; safe to call at any time, also twice.
    void close();
    // Closes the widget and takes the panel out (without freeing it).
    void release() override;

    // Toolkit-internal: the close button or Escape was used.
    void closeRequested();

private:
    void apply_answers();
    bool apply_answer(const struct UIAnswer& answer);

    UIWidgetState* state() const;

    jString m_title;
};
