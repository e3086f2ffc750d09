#pragma once

// Finds the key segment that holds a time in a time-sorted key array. Playback asks for times that
// move forward a little each frame, so a cursor remembers the last segment and the search first
// tries it and the one after it before it falls back to a binary search.
class TrackSegment {
public:
    // Returns the index of the last key whose time is at or before t, or -1 when t is before the
    // first key (and for an empty array). cursor is a hint that is updated to the answer; any value
    // is accepted.
    template <class Key>
    static int find(const Key* keys, int count, float t, int& cursor)
    {
        if (count <= 0 || t < keys[0].time)
            return -1;
        int c = cursor;
        if (c >= 0 && c < count && keys[c].time <= t) {
            if (c + 1 == count || t < keys[c + 1].time)
                return c;
            if (c + 2 == count || t < keys[c + 2].time) {
                cursor = c + 1;
                return c + 1;
            }
        }
        int lo = 1;
        int hi = count;
        while (lo < hi) {
            int mid = (lo + hi) >> 1;
            if (keys[mid].time <= t)
                lo = mid + 1;
            else
                hi = mid;
        }
        cursor = lo - 1;
        return lo - 1;
    }
};
