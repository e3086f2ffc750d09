#pragma once

#include "anim/TrackCurveCursor.h"
#include "anim/TrackReg.h"
#include "kit/jVector.h"

class TrackParameter;

// What Track::set walks each frame: the enabled, bound parameters of a track in their order, packed
// into one flat array of outputs (the resolved target, its registration and how to fill it) and one
// of curve cursors for the float channels those outputs read. A frame then streams through two
// arrays instead of visiting every parameter object, and float and vec3 parameters are played
// without a virtual call; the other kinds are played through their own apply. The layout is
// rebuilt by the track when it is out of date: parameters push every change of their keys,
// switches or binding to their track (TrackParameter::changed), nothing is checked per frame.
class TrackPlayback {
public:
    TrackPlayback() = default;
    TrackPlayback(const TrackPlayback&) = delete;
    TrackPlayback& operator=(const TrackPlayback&) = delete;

    // Returns whether the layout is up to date (built, and not invalidated since).
    bool isValid() const { return m_valid; }
    // Lays out the enabled, bound parameters of params (targets already resolved), in their order.
    void build(const jVector<TrackParameter*>& params);
    // Hands the values played last back to the parameters (getValue reports them once unbound) and
    // marks the layout out of date. Does nothing when it already is.
    void invalidate();
    // Forgets the layout and frees its storage without touching the parameters (they are going away).
    void clear();
    // Plays every laid-out parameter at t.
    void play(float t);

private:
    enum KIND { GENERIC = 0, FLOAT = 1, VEC3 = 2 };

    // One played parameter. Float and vec3 outputs read their channels from m_channels, starting
    // at first (one per played component, in component order).
    struct Output {
        TrackParameter* param = nullptr;
        const TrackReg* reg = nullptr;
        TrackTarget target;
        int kind = GENERIC;
        int first = 0;
        unsigned mask = 0; // components played, bit c for component c
        float last[3] = {0.0f, 0.0f, 0.0f};
    };

    void add(TrackParameter* param);
    void play_float(Output& o, float t);
    void play_vector(Output& o, float t);
    void flush(const Output& o) const;

    jVector<Output> m_outputs;
    jVector<TrackCurveCursor<float>> m_channels;
    bool m_valid = false;
    // The time of the last frame, and how far the next one is expected to move on.
    float m_time = 0.0f;
    float m_ahead = 0.0f;
};
