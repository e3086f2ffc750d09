#pragma once

#include "ui/UITrackLine.h"

// The key line of a double parameter: the plain band; its marks show the keys' times only.
class UITrackLineDouble : public UITrackLine {
};
