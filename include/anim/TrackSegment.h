#pragma once

template <class Value>
struct TrackCurveShape;

// Finds the key segment that holds a time in a time-sorted array of keys (or of bare times, or of
// segments ready for sampling).
// Playback asks for times that move forward a little each frame, so a cursor remembers the last
// segment and the search first tries it and the one after it before it falls back to a binary
// search (scrubbing, which asks for any time at all).
class TrackSegment {
public:
    // Returns the index of the last entry whose time is at or before t, or -1 when t is before the
    // first entry (and for an empty array). cursor is a hint that is updated to the answer; any
    // value is accepted.
    template <class Key>
    static int find(const Key* keys, int count, float t, int& cursor)
    {
        if (count <= 0 || t < timeOf(keys[0]))
            return -1;
        int c = cursor;
        if (c >= 0 && c < count && timeOf(keys[c]) <= t) {
            if (c + 1 == count || t < timeOf(keys[c + 1]))
                return c;
            if (c + 2 == count || t < timeOf(keys[c + 2])) {
                cursor = c + 1;
                return c + 1;
            }
        }
        cursor = search(keys, count, t);
        return cursor;
    }

    // Returns the last index in [lo, hi) whose time is at or before t, given that keys[lo]'s time is
    // and keys[hi]'s is not (a range that a time index has narrowed down).
    template <class Key>
    static int within(const Key* keys, int lo, int hi, float t)
    {
        return bisect(keys, lo, hi, t);
    }

private:
    // Half the width of the window around the guess that search tries first.
    static constexpr int WINDOW = 16;

    // Keys are usually spread fairly evenly, so the search starts where t would fall if they were
    // and bisects the few cache lines around that guess; only when t is not among them does it
    // bisect the whole array. Needs keys[0].time <= t.
    template <class Key>
    static int search(const Key* keys, int count, float t)
    {
        float first = timeOf(keys[0]);
        float span = timeOf(keys[count - 1]) - first;
        if (!(t < timeOf(keys[count - 1])))
            return count - 1;
        int guess = span > 0.0f ? static_cast<int>((t - first) / span * static_cast<float>(count - 1)) : 0;
        int lo = guess - WINDOW < 0 ? 0 : guess - WINDOW;
        int hi = guess + WINDOW > count - 1 ? count - 1 : guess + WINDOW;
        if (!(timeOf(keys[lo]) <= t && t < timeOf(keys[hi]))) {
            lo = 0;
            hi = count - 1;
        }
        return bisect(keys, lo, hi, t);
    }

    // Returns the last index in [lo, hi) whose time is at or before t, given that keys[lo] is and
    // keys[hi] is not. Each step picks a half without a branch, so a mispredicted comparison never
    // throws away the work of the samples after this one.
    template <class Key>
    static int bisect(const Key* keys, int lo, int hi, float t)
    {
        const Key* base = keys + lo;
        int n = hi - lo;
        while (n > 1) {
            int half = n >> 1;
            base = timeOf(base[half]) <= t ? base + half : base;
            n -= half;
        }
        return static_cast<int>(base - keys);
    }

    static float timeOf(float time) { return time; }
    // A segment ready for sampling, as a curve table holds it, starts at its key's time.
    template <class Value>
    static float timeOf(const TrackCurveShape<Value>& shape)
    {
        return shape.t0;
    }
    template <class Key>
    static float timeOf(const Key& key)
    {
        return key.time;
    }
};
