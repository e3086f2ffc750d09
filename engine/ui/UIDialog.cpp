#include "ui/UIDialog.h"

#include <QBoxLayout>

#include "UINative.h"
#include "kit/jAllocator.h"
#include "ui/UIButton.h"
#include "ui/UIHLayout.h"
#include "ui/UIWidget.h"

namespace {

const char* const k_file = "engine/ui/UIDialog";

} // namespace

UIDialog::UIDialog(UIRoot* root)
    : UIVLayout(root, 6, 6),
      m_content(jNew<UIVLayout>(k_file, __LINE__, "UIDialog::UIDialog", root, 4, 0)),
      m_buttons(jNew<UIHLayout>(k_file, __LINE__, "UIDialog::UIDialog", root, 6, 0)),
      m_ok(jNew<UIButton>(k_file, __LINE__, "UIDialog::UIDialog", root, "OK")),
      m_cancel(jNew<UIButton>(k_file, __LINE__, "UIDialog::UIDialog", root, "Cancel"))
{
    UIElement::addChild(m_content, UI_EXPAND_BOTH);
    UIElement::addChild(m_buttons, UI_EXPAND_ACROSS);
    // The buttons sit at the right end of their row, the usual place for a dialog's answers.
    static_cast<QBoxLayout*>(nativeWidget(m_buttons)->layout())->insertStretch(0, 1);
    m_buttons->addChild(m_ok);
    m_buttons->addChild(m_cancel);
}

bool UIDialog::addChild(UIElement* child, int expand, int position)
{
    return m_content->addChild(child, expand, position);
}

void UIDialog::closeDialog()
{
    auto* widget = dynamic_cast<UIWidget*>(getParent());
    if (!widget)
        return;
    widget->hide();
    widget->release();
    widget->close();
}
