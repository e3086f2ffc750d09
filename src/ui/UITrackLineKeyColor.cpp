#include "ui/UITrackLineKeyColor.h"

#include "data/FKeyColor.h"
#include "data/FParameterSingle.h"
#include "kit/jAllocator.h"
#include "msg/MsgMngr.h"
#include "ui/DialogColor.h"
#include "ui/UITrackLine.h"
#include "ui/UITrackLinePanel.h"

namespace {
constexpr int MSG_KEYS_CHANGED = 197;
}

vec4 UITrackLineKeyColor::getColor() const
{
    return static_cast<const FKeyColor*>(getKey())->getValue();
}

void UITrackLineKeyColor::onDClick()
{
    UITrackLinePanel* panel = UITrackLinePanel::get();
    if (!panel)
        return;
    auto* dialog = jNew<DialogColor>("src/ui/UITrackLineKeyColor", __LINE__, "UITrackLineKeyColor::onDClick",
                                     panel->getRoot());
    dialog->setColor(getColor());
    dialog->sigChanged = bind(&UITrackLineKeyColor::on_color_changed, this);
    dialog->modality();
    dialog->release();
    jDelete(dialog, "src/ui/UITrackLineKeyColor", __LINE__, "UITrackLineKeyColor::onDClick");
}

void UITrackLineKeyColor::on_color_changed(const UIEventChanged*, UIElement* sender)
{
    auto* key = static_cast<FKeyColor*>(getKey());
    key->setValue(static_cast<DialogColor*>(sender)->getColor());
    if (key->getParameter())
        key->getParameter()->applyKeys();
    if (getLine())
        getLine()->setDirty(true);
    MsgMngr::get()->notifyHelper(MSG_KEYS_CHANGED);
}
