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
        int lo = 1;
        int hi = count;
        while (lo < hi) {
            int mid = (lo + hi) >> 1;
            if (timeOf(keys[mid]) <= t)
                lo = mid + 1;
            else
                hi = mid;
        }
        cursor = lo - 1;
        return lo - 1;
    }

private:
    static float timeOf(float time) { return time; }
    template <class Key>
    static float timeOf(const Key& key)
    {
        return key.time;
    }
};
