#pragma once

#include <cstdint>

#include "anim/TrackCurveKernel.h"
#include "anim/TrackCurveTable.h"
#include "kit/jVector.h"

// Plays many compiled float curves at one time per frame, as Track::set does through its playback
// (TrackPlayback) for every float, vec3 and colour channel it plays: a channel per curve, each with
// a segment cursor that works as TrackCurveCursor does (steps onto the next segment, predicts the
// Bezier solution from the last frame, searches after a jump). The cursors live in blocks of LANES
// channels laid out lane by lane, so a frame is one pass of straight-line arithmetic over
// contiguous memory that the compiler turns into vector code. A lane that leaves its segment, or
// whose prediction does not settle, is played again on its own after a few more misses, when
// the segment it steps onto, asked for at once, has had time to arrive. The curves are copied into a
// curve table when playback starts, so that the segments the lanes step onto, spread over the
// whole table, cost one memory read each and no arithmetic. Frames of many channels are played
// partly on the engine's worker thread (jWorker): the caller plays the first channels and may use
// their values while the worker plays the rest (start, finish).
class TrackCurvePlayer {
public:
    static constexpr int LANES = 8;

    TrackCurvePlayer() = default;
    ~TrackCurvePlayer() { clear(); }
    TrackCurvePlayer(const TrackCurvePlayer&) = delete;
    TrackCurvePlayer& operator=(const TrackCurvePlayer&) = delete;

    // Adds a channel that plays curve, which must have keys and must not be recompiled or freed
    // while the channel plays it (the next play after an add copies every curve again). Returns
    // the channel's index (channels are numbered from 0 in the order they are added).
    int add(const TrackCurveData<float>* curve);
    // Returns the number of channels.
    int size() const { return m_curves.size(); }
    // Forgets every channel and frees the storage.
    void clear();

    // Writes every channel's value at t to out[0 .. size()). Not to be called for one player from
    // two threads at once.
    void play(float t, float* out)
    {
        start(t, out);
        finish();
    }
    // Starts writing every channel's value at t to out[0 .. size()) and returns how many channels,
    // from channel 0, have theirs in out already; the others have theirs once finish returns. A
    // frame of many channels is played partly on the worker thread, which goes on while the caller
    // uses the first values; out must not be touched past them, nor the player used, until then.
    int start(float t, float* out);
    // Returns once every value of the frame start began is in out.
    void finish();

private:
    using Line = TrackCurveTable::Line;

    // The cursors of LANES channels, a lane per channel: the segment each is on, as
    // TrackCurveShape holds it, and its last solution. Segments that need no solving keep the
    // timing polynomial of a straight line (s = u), so that every lane can take the same Newton
    // steps. Only what every frame reads is here (a frame streams through all blocks); where the
    // lanes go next is in Links.
    struct Block {
        float t0[LANES];
        float t1[LANES];
        float v0[LANES];
        float cv[LANES];
        float bv[LANES];
        float av[LANES];
        double inv[LANES];
        double ax[LANES];
        double bx[LANES];
        double cx[LANES];
        // The last solution as a line in normalised time: where it would be at u = 0 along ds/du,
        // and ds/du (eight bytes a lane, not twelve, on the stream every frame reads).
        float s0[LANES];
        float rate[LANES];
        uint32_t bezier; // bit l: lane l's segment needs solving
    };

    // For the lanes of a block, as indices of table lines (half the bytes of pointers, read every
    // frame): the line after the lane's, and the line of its curve's first key, where a looping
    // clip starts over. Both are NONE until the lane first searches its curve.
    struct Links {
        uint32_t next[LANES];
        uint32_t begin[LANES];
    };
    // No line: the table's first line, which holds curve 0 before its first key, is neither a line
    // after another nor a first key's.
    static constexpr uint32_t NONE = 0;

    // Bezier lanes that play_missed moved, waiting to be solved LANES at a time in one pass of
    // vector code instead of one chain of dependent divisions each: where each lane is, its
    // timing polynomial, normalised time and predicted solution, and then the refined solution.
    // Each thread that plays keeps its own on its stack: written for every lane that moves, one
    // shared between the threads would bounce between their caches.
    struct Pending {
        int block[LANES];
        int lane[LANES];
        double ax[LANES];
        double bx[LANES];
        double cx[LANES];
        double u[LANES];
        double s[LANES];
        TrackCurveKernel::Solution solution[LANES];
        int size = 0;
    };

    // The blocks [first, end) of a frame, for the worker thread.
    struct Share {
        TrackCurvePlayer* player;
        float t;
        float* out;
        int first;
        int end;
    };

    static void play_share(void* context);
    void play_blocks(int first, int end, float t, float* out);
    uint32_t play_fast(int k, float t, float* out);
    static uint32_t play_block(Block& b, float t, float* __restrict out);
    static TrackCurveKernel::Solution refine_lane(const Block& b, int l, double u);
    static void keep(Block& b, int l, double u, const TrackCurveKernel::Solution& r);
    void play_missed(int place, float t, float* out, Pending& pending);
    void seek(int k, int l, float t);
    void defer(Pending& p, int k, int l, double u, float* out);
    void solve_pending(Pending& p, float* out);
    static void refine_pending(Pending& p);
    void step(Block& b, Links& links, int l, float t) const;
    bool restarts(const Links& links, int l, float t) const;
    void search(Block& b, Links& links, int l, int channel, float t);
    static void load(Block& b, int l, const Line& line);
    void build_table();

    Share m_share{};      // the worker's blocks of the frame being played
    bool m_shared = false; // whether the worker plays them (and finish must wait for it)
    jVector<const TrackCurveData<float>*> m_curves;
    jVector<Block> m_blocks;
    jVector<Links> m_links;
    TrackCurveTable m_table;   // the curves' copies, a curve per channel (empty until the next play)
};
