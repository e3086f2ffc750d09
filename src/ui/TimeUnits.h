#pragma once

#include "kit/jString.h"

// How the editor writes, reads and rounds times: in seconds, or in frames of the track's frame rate
// (fps; 0 means the track has none). Fields, rulers and snapping all go through these, so a time
// reads the same everywhere.
class TimeUnits {
public:
    // The most decimals a time in seconds is written with.
    static constexpr int DECIMALS = 4;

    // The text of time t in a field: with a frame rate the time of the nearest frame, else t; either
    // rounded to four decimals without trailing zeros ("1.5", "0.4583", "2").
    static jString format(float t, float fps);
    // Reads a typed time: seconds ("1.5", "1.5s") or, with a frame rate, frames ("36f" is 1.5 at 24
    // fps). Returns false and leaves out untouched for any other text.
    static bool parse(const char* text, float fps, float& out);
    // The time of the frame nearest t; t itself without a frame rate.
    static float toFrame(float t, float fps);
    // Where a gesture of the user puts t: the nearest frame of the document while its snapping is
    // on (off while Ctrl is held; the other way round while snapping is off), else t.
    static float landing(float t);
    // The ruler's step in seconds whose ticks lie at least minPixels apart where one pixel spans
    // secondsPerPixel: whole frames (1, 2, 5, 10, 20, ... frames) with a frame rate, else
    // 1, 2 or 5 x 10^n seconds; 0 when secondsPerPixel is not positive and finite.
    static double rulerStep(double secondsPerPixel, float fps, int minPixels);
    // The ruler's label of the tick at t on a grid of step: its frame number with a frame rate,
    // else its seconds with the digits the step needs ("0.5", "12").
    static jString label(double t, double step, float fps);
};
