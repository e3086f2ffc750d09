#pragma once

#include "anim/TrackCurvePlayer.h"
#include "anim/TrackReg.h"
#include "kit/jVector.h"

class TrackParameter;

// What Track::set walks each frame: the enabled, bound parameters of a track in their order, packed
// into one flat array of outputs (the resolved target, its registration and how to fill it) and a
// curve player with a channel for every float curve those outputs read. A frame plays all channels
// at once into a value array, then streams through the outputs instead of visiting every parameter
// object: float, vec3 and colour parameters (a colour is four linear channels) are played without a
// virtual call; the other kinds are played through their own apply. The outputs of the channels
// played first are written while the player's worker thread still plays the others. The layout is
// rebuilt by the track when it is out of date: parameters push every change of their keys, switches
// or binding to their track (TrackParameter::changed), nothing is checked per frame.
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
    enum KIND { GENERIC = 0, FLOAT = 1, VEC3 = 2, COLOR = 3 };

    // One played parameter. Float, vec3 and colour outputs read their channels' values from m_values,
    // starting at first (one per played component, in component order). A frame only reads
    // outputs, so that streaming through them dirties no memory.
    struct Output {
        TrackParameter* param = nullptr;
        const TrackReg* reg = nullptr;
        TrackTarget target;
        int kind = GENERIC;
        int first = 0;
        unsigned mask = 0; // components played, bit c for component c
    };

    void add(TrackParameter* param);
    int play_outputs(int first, float t, int ready, float*& held);
    void play_channels(const Output& o, int count);
    void play_vector(const Output& o, float*& held);
    void flush(const Output& o, const float*& held) const;

    jVector<Output> m_outputs;
    TrackCurvePlayer m_player;
    // The value of every channel of m_player in the last frame (before the first, the values the
    // parameters had), and the components of vec3 outputs that no channel plays as last written,
    // output after output: what invalidate hands back to the parameters.
    jVector<float> m_values;
    jVector<float> m_held;
    bool m_valid = false;
};
