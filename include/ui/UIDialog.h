#pragma once

#include "ui/UIVLayout.h"

class UIButton;
class UIHLayout;

// A dialog panel: a content area above a row of buttons holding OK and Cancel (the row takes
// further buttons through getButtonRow). Children added to the dialog go into the content area.
// The dialog only raises the buttons' clicks; what OK and Cancel do is the deriving panel's.
class UIDialog : public UIVLayout {
public:
    explicit UIDialog(UIRoot* root);

    // Adds child to the content area (see UIElement::addChild).
    bool addChild(UIElement* child, int expand = UI_EXPAND_NONE, int position = -1) override;
    UIVLayout* getContent() const { return m_content; }
    UIHLayout* getButtonRow() const { return m_buttons; }
    UIButton* getOkButton() const { return m_ok; }
    UIButton* getCancelButton() const { return m_cancel; }
    // Closes the widget that shows the dialog: hides it, releases it (the dialog leaves it) and
    // ends its modal loop. Does nothing when the dialog is not shown in a UIWidget.
    void closeDialog();

private:
    UIVLayout* m_content;
    UIHLayout* m_buttons;
    UIButton* m_ok;
    UIButton* m_cancel;
};
