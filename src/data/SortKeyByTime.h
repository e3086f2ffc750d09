#pragma once

// Orders keys and key marks by ascending time: SortKeyByTime<FKey>::Compare for the editor keys,
// SortKeyByTime<UITrackLineKey> and SortKeyByTime<UITrackCurveKey> for their marks (whose getTime
// reads the key they show). Keys of equal time keep no guaranteed order.
template <class T>
struct SortKeyByTime {
    static bool Compare(const T* a, const T* b) { return a->getTime() < b->getTime(); }
};
