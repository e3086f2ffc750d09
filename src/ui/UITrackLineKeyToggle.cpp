#include "ui/UITrackLineKeyToggle.h"

#include "data/FKeyToggle.h"
#include "ui/UITrackLine.h"

vec4 UITrackLineKeyToggle::getColor() const
{
    const bool on = static_cast<const FKeyToggle*>(getKey())->getValue();
    if (!getLine())
        return on ? vec4(1.0f, 1.0f, 1.0f, 1.0f) : vec4(0.0f, 0.0f, 0.0f, 1.0f);
    return on ? getLine()->getLightColor() : getLine()->getDarkColor();
}

void UITrackLineKeyToggle::onDClick()
{
    auto* key = static_cast<FKeyToggle*>(getKey());
    key->setValue(!key->getValue());
    commit_edit();
}
