#pragma once

#include "ui/UITrackLine.h"

// The key line of a float parameter: the plain band; its marks show the keys' times only.
class UITrackLineFloat : public UITrackLine {
};
