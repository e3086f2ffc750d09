#pragma once

// The kind of a track parameter (TrackParameter::getType). The numbers are stored in .anim files
// and never change meaning.
enum TRACK_PARAMETER_TYPE {
    TRACK_PARAMETER_TOGGLE = 0,
    TRACK_PARAMETER_FLOAT = 1,
    TRACK_PARAMETER_DOUBLE = 2,
    TRACK_PARAMETER_COLOR = 3,
    TRACK_PARAMETER_VEC3 = 4,
    TRACK_PARAMETER_DVEC3 = 5,
    // Engine data that editors do not show; it is played (as a no-op) and saved back unchanged.
    TRACK_PARAMETER_OPAQUE = 6,
    TRACK_PARAMETER_TRACK = 7,
    TRACK_PARAMETER_STRING_FILE = 8,
    TRACK_PARAMETER_STRING_MATERIAL = 9,
};

// How the segment that starts at a float or double key is shaped.
enum TRACK_KEY_TYPE {
    TRACK_KEY_CONSTANT = 0, // holds the key's value until the next key
    TRACK_KEY_LINEAR = 1,   // straight line to the next key
    TRACK_KEY_SMOOTH = 2,   // Bezier; tangents recomputed from the neighbours on every update
    TRACK_KEY_BREAK = 3,    // Bezier with independent stored in and out tangents
    TRACK_KEY_AUTO = 4,     // Bezier with stored tangents that the editor computed
};
constexpr int TRACK_KEY_TYPE_COUNT = 5;

// One component of a vec3 or dvec3 parameter.
enum VEC3_SWIZZLE_TYPE {
    VEC3_SWIZZLE_X = 0,
    VEC3_SWIZZLE_Y = 1,
    VEC3_SWIZZLE_Z = 2,
};
