#pragma once

#include "ui/UITrackLine.h"

// A key line that names what its engine parameter is bound to (the node, or the material), for
// the kinds whose keys are not curves. A component of a compound parameter has no such label.
class UITrackLineLabeled : public UITrackLine {
public:
    // The bound node's or material's name; logs "<fn>:parent not support" for a component.
    jString getText() const override;

protected:
    // The qualified name logged for a component ("UITrackLineColor::getText" and so on).
    virtual const char* text_function() const = 0;
};
