#pragma once

// Finds the key segment that holds a time in a time-sorted array of keys (or of bare times).
// Playback asks for times that move forward a little each frame, so a cursor remembers the last
// segment and the search first tries it and the one after it before it falls back to a binary
// search.
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

private:
    // Keys are usually spread fairly evenly, so the search starts where t would fall if they were,
    // gallops outward until it has a bracket, and bisects that: a couple of cache lines instead of
    // a full binary search's, and never worse than twice its steps. Needs keys[0].time <= t.
    template <class Key>
    static int search(const Key* keys, int count, float t)
    {
        float first = timeOf(keys[0]);
        float span = timeOf(keys[count - 1]) - first;
        if (!(t < timeOf(keys[count - 1])))
            return count - 1;
        int guess = span > 0.0f ? static_cast<int>((t - first) / span * static_cast<float>(count - 1)) : 0;
        guess = guess < 0 ? 0 : (guess > count - 1 ? count - 1 : guess);
        int lo, hi; // timeOf(keys[lo]) <= t < timeOf(keys[hi])
        int step = 1;
        if (timeOf(keys[guess]) <= t) {
            lo = guess;
            hi = guess + 1;
            while (hi < count - 1 && timeOf(keys[hi]) <= t) {
                lo = hi;
                step *= 2;
                hi = lo + step < count - 1 ? lo + step : count - 1;
            }
        } else {
            hi = guess;
            lo = guess - 1;
            while (lo > 0 && timeOf(keys[lo]) > t) {
                hi = lo;
                step *= 2;
                lo = hi - step > 0 ? hi - step : 0;
            }
        }
        while (hi - lo > 1) {
            int mid = (lo + hi) >> 1;
            if (timeOf(keys[mid]) <= t)
                lo = mid;
            else
                hi = mid;
        }
        return lo;
    }

    static float timeOf(float time) { return time; }
    template <class Key>
    static float timeOf(const Key& key)
    {
        return key.time;
    }
};
