#pragma once

#include "ui/UITrackLineKeyString.h"

// The mark of a file key: labelled with the file's name (not its folders); a double click picks
// another file with the parameter's extension filter.
class UITrackLineKeyStringFile : public UITrackLineKeyString {
public:
    using UITrackLineKeyString::UITrackLineKeyString;
    jString getText() const override;
    // Runs the open-file dialog (starting in the current file's folder); a chosen file is stored
    // as a data-relative path and message 197 posted; a cancel changes nothing.
    void onDClick() override;
};
