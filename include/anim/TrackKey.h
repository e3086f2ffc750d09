#pragma once

#include "kit/jMath.h"
#include "kit/jString.h"

// Key records as the engine parameters keep them, in time order. Tangents are handle offsets from
// the key: (in_dt, in_dv, out_dt, out_dv) in x, y, z, w; the in handle points back in time and the
// out handle forward.

struct TrackKeyFloat {
    float time = 0.0f;
    float value = 0.0f;
    vec4 tangents;
    int type = 1; // TRACK_KEY_TYPE
};

struct TrackKeyDouble {
    float time = 0.0f;
    double value = 0.0;
    vec4 tangents;
    int type = 1; // TRACK_KEY_TYPE
};

struct TrackKeyColor {
    float time = 0.0f;
    vec4 value;
};

struct TrackKeyToggle {
    float time = 0.0f;
    bool value = false;
};

struct TrackKeyString {
    float time = 0.0f;
    jString value;
};
