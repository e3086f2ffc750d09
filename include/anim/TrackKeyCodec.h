#pragma once

#include "anim/TrackKey.h"

class Package;
class TrackReader;

// How each key record is written in a .anim file: one array per key, so that the canonical writer
// puts every key on a line of its own.
//   toggle          [time, 0 or 1]
//   float, double   [time, value, in_dt, in_dv, out_dt, out_dv, key type]
//   colour          [time, red, green, blue, alpha]
//   string          [time, "text"]
// Times, float values and tangents are written in the shortest form that reads back as the same
// 32-bit float.
class TrackKeyCodec {
public:
    // Each read returns false after recording the problem in reader; key is then unspecified.
    static bool read(TrackReader& reader, const Package* record, TrackKeyToggle& key);
    static bool read(TrackReader& reader, const Package* record, TrackKeyFloat& key);
    static bool read(TrackReader& reader, const Package* record, TrackKeyDouble& key);
    static bool read(TrackReader& reader, const Package* record, TrackKeyColor& key);
    static bool read(TrackReader& reader, const Package* record, TrackKeyString& key);

    // Each write appends one record to the array.
    static void write(Package* array, const TrackKeyToggle& key);
    static void write(Package* array, const TrackKeyFloat& key);
    static void write(Package* array, const TrackKeyDouble& key);
    static void write(Package* array, const TrackKeyColor& key);
    static void write(Package* array, const TrackKeyString& key);

    // Returns the double whose shortest text is the shortest text of value, so that a float is
    // written as "0.1" rather than as its exact binary expansion.
    static double widen(float value);
};
