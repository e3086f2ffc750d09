#include "ui/UITrackLineKeyColor.h"

#include "data/FKeyColor.h"
#include "kit/jAllocator.h"
#include "ui/DialogColor.h"
#include "ui/UITrackLinePanel.h"

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
    commit_edit();
}
