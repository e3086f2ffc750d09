#include "ui/UITrackLineKeyString.h"

#include "data/FKeyString.h"

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
    commit_edit();
}
