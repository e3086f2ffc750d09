#include "ui/UITrackLineKeyStringMaterial.h"

#include "data/FKeyString.h"
#include "data/FParameterSingle.h"
#include "kit/jAllocator.h"
#include "ui/MaterialSelectPanel.h"
#include "ui/PickerDialog.h"
#include "ui/UITrackLinePanel.h"

void UITrackLineKeyStringMaterial::onDClick()
{
    if (static_cast<const FKeyString*>(getKey())->getValue().nempty()) {
        set_text(jString());
        return;
    }
    UITrackLinePanel* panel = UITrackLinePanel::get();
    if (!panel)
        return;
    bool chosen = false;
    jString material;
    auto* picker = jNew<MaterialSelectPanel>("src/ui/UITrackLineKeyStringMaterial", __LINE__,
                                             "UITrackLineKeyStringMaterial::onDClick", panel->getRoot(),
                                             getKey()->getParameter()->getTypeName(), &chosen, &material);
    runPickerDialog(panel->getRoot(), picker, "select_material", "UITrackLineKeyStringMaterial::onDClick");
    if (chosen)
        set_text(material);
}
