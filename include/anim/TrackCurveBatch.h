#pragma once

#include "anim/TrackCurveTable.h"

// Samples many curves of a curve table, each at its own time: kuvo-anim eval samples every float
// curve of a track at every asked time through it, in whatever order the times were asked. One
// sample at a random time of a long curve waits on a chain of cache misses (its time index bucket,
// then the segment), which neither a cursor (made for times that move on a little) nor the player
// (one time for all curves) avoids, so the batch runs its samples through those steps as a
// pipeline: while one sample is evaluated, the reads of the samples behind it are already on their
// way, and their misses overlap instead of queueing.
class TrackCurveBatch {
public:
    // Writes to out[i], for every i < count, the value of the table's curve curves[i] at times[i]:
    // what TrackCurve::evaluate gives there (Bezier segments solved to well within a millionth of
    // the value), and 0 for a curve without keys. Curves copied without their time index are
    // searched instead; any time is accepted (before the first key the first key's value, from the
    // last key on, and for NaN, the last key's). A curve may appear any number of times; out must
    // not overlap the inputs.
    static void sample(const TrackCurveTable& table, const int* curves, const float* times, int count, float* out);
};
