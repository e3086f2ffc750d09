#include "ui/UITrackLineKeyToggle.h"

#include "data/FKeyToggle.h"
#include "data/FParameterSingle.h"
#include "msg/MsgMngr.h"
#include "ui/UITrackLine.h"

namespace {
constexpr int MSG_KEYS_CHANGED = 197;
}

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
    if (key->getParameter())
        key->getParameter()->applyKeys();
    if (getLine())
        getLine()->setDirty(true);
    MsgMngr::get()->notifyHelper(MSG_KEYS_CHANGED);
}
