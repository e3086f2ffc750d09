#include "ui/UITrackLineKeyString.h"

#include "data/FKeyString.h"
#include "data/FParameterSingle.h"
#include "msg/MsgMngr.h"
#include "ui/UITrackLine.h"

namespace {
constexpr int MSG_KEYS_CHANGED = 197;
}

jString UITrackLineKeyString::getText() const
{
    return static_cast<const FKeyString*>(getKey())->getValue();
}

bool UITrackLineKeyString::isEmptyMark() const
{
    return static_cast<const FKeyString*>(getKey())->getValue().empty();
}

void UITrackLineKeyString::set_text(const jString& text)
{
    auto* key = static_cast<FKeyString*>(getKey());
    key->setValue(text);
    if (key->getParameter())
        key->getParameter()->applyKeys();
    if (getLine())
        getLine()->setDirty(true);
    MsgMngr::get()->notifyHelper(MSG_KEYS_CHANGED);
}
