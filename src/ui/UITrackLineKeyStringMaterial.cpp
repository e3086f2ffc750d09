#include "ui/UITrackLineKeyStringMaterial.h"

#include "data/FKeyString.h"
#include "kit/jLog.h"

void UITrackLineKeyStringMaterial::onDClick()
{
    if (static_cast<const FKeyString*>(getKey())->getValue().nempty()) {
        set_text(jString());
        return;
    }
    // Picking a material for an empty key needs the material picker, which the editor does not
    // have yet; the key is left as it is.
    jLog::warning("%s:%s", "UITrackLineKeyStringMaterial::onDClick", "no material picker");
}
