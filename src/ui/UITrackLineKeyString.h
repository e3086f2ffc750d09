#pragma once

#include "ui/UITrackLineKey.h"

// The mark of a string key: labelled with the key's text; a key whose text is empty (one that sets
// nothing) points down. The file and material forms add how the text is picked.
class UITrackLineKeyString : public UITrackLineKey {
public:
    using UITrackLineKey::UITrackLineKey;
    jString getText() const override;
    bool isEmptyMark() const override;
    vec4 getColor() const override { return vec4(0.4f, 0.4f, 0.4f, 1.0f); }

protected:
    // Stores text in the key and the engine, redraws the line and posts message 197.
    void set_text(const jString& text);
};
