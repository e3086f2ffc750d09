#pragma once

#include "data/FParameterString.h"
#include "ui/UITrackLineKeyStringMaterial.h"

// A string parameter naming a material; its keys are picked from the world's materials.
class FParameterStringMaterial : public FParameterString<UITrackLineKeyStringMaterial> {
public:
    int getType() const override { return 9; }

protected:
    const FParameterTags& tags() const override;
};
