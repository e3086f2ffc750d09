#pragma once

#include "kit/jMath.h"

// The four corners of an axis-aligned rectangle in canvas pixels, clockwise from the top-left, as
// the points of a canvas line or polygon.
struct UIRect {
    UIRect(float x0, float y0, float x1, float y1)
        : corners{{x0, y0, 0.0f}, {x1, y0, 0.0f}, {x1, y1, 0.0f}, {x0, y1, 0.0f}}
    {
    }

    vec3 corners[4];
};
