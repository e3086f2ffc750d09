#include "anim/TrackCurvePlayer.h"

#include <algorithm>
#include <cmath>

#include "anim/TrackCurveKernel.h"
#include "kit/jPlatform.h"
#include "kit/jWorker.h"

namespace {

const int LANES = TrackCurvePlayer::LANES;
const uint32_t ALL_LANES = (1u << LANES) - 1;
const int BEZIER = TrackCurveSegment<float>::BEZIER;

// Missed lanes are played LAG misses after their own: the segments they step onto, asked for when
// the miss is seen, arrive while the blocks between are played. They are played CHUNK at a time,
// so that the loop that plays them ends at a count the processor predicts, not once per block.
const int LAG = 16;
const int CHUNK = 16;
const int RING = 64; // room for the missed lanes in flight: at least LAG + CHUNK + LANES, a power of two

// From how many blocks on a frame is played on two threads: below, handing a share over costs more
// than it saves. The caller plays CALLER_SHARE percent of the blocks, a little less than half,
// since it goes on to use the first values while the worker plays the rest.
const int PARALLEL_BLOCKS = 512;
const int CALLER_SHARE = 46;

// The normalised time of t in a lane's segment, as TrackCurve::normalised gives it (0 for segments
// that hold one value, where t - t0 may be infinite).
double normalised(float t, float t0, double inv)
{
    return inv != 0.0 ? static_cast<double>(t - t0) * inv : 0.0;
}

// The same for a finite t without a branch, so that the block pass stays vector code: segments
// that hold one value measure from t itself.
double normalised_finite(float t, float t0, double inv)
{
    float from = inv != 0.0 ? t0 : t;
    return static_cast<double>(t - from) * inv;
}

using K = TrackCurveKernel;

} // namespace

int TrackCurvePlayer::add(const TrackCurveData<float>* curve)
{
    int channel = m_curves.size();
    m_table.clear();
    if (channel % LANES == 0) {
        m_blocks.append(Block{});
        m_links.append(Links{});
    }
    m_curves.append(curve);
    return channel;
}

void TrackCurvePlayer::clear()
{
    m_table.clear();
    m_curves.release();
    m_blocks.release();
    m_links.release();
}

// Copies every curve into the table and puts every lane on no segment (every time misses it, so
// its first play searches its curve).
void TrackCurvePlayer::build_table()
{
    m_table.build(m_curves.data(), m_curves.size());
    for (Block& b : m_blocks)
        b = Block{};
    for (Links& links : m_links)
        links = Links{};
}

// Lane l's last solution predicted at normalised time u and refined.
__attribute__((always_inline)) inline K::Solution
TrackCurvePlayer::refine_lane(const Block& b, int l, double u)
{
    double s = K::predict(b.s0[l], 0.0, b.rate[l], u);
    return K::refine(b.ax[l], b.bx[l], b.cx[l], u, s, K::WARM_STEPS);
}

// Plays every lane of b at t from its prediction: with Newton steps on blocks with a Bezier lane
// (where the lanes that need no solving settle on s = u at once), without on the others. Returns
// the lanes that t has left or whose solution did not settle. Free of branches, so that the
// compiler can play several lanes per instruction.
__attribute__((always_inline)) inline uint32_t
TrackCurvePlayer::play_block(Block& b, float t, float* __restrict out)
{
    int32_t played[LANES];
    if (!b.bezier) {
        for (int l = 0; l < LANES; ++l) {
            double u = normalised_finite(t, b.t0[l], b.inv[l]);
            out[l] = static_cast<float>(K::value(b.v0[l], b.cv[l], b.bv[l], b.av[l], u));
            played[l] = (t >= b.t0[l]) & (t < b.t1[l]);
        }
    } else {
        for (int l = 0; l < LANES; ++l) {
            double u = normalised_finite(t, b.t0[l], b.inv[l]);
            K::Solution r = refine_lane(b, l, u);
            keep(b, l, u, r);
            out[l] = static_cast<float>(K::value(b.v0[l], b.cv[l], b.bv[l], b.av[l], r.s));
            played[l] = (t >= b.t0[l]) & (t < b.t1[l]) & r.settled();
        }
    }
    uint32_t missed = 0;
    for (int l = 0; l < LANES; ++l)
        missed |= static_cast<uint32_t>(!played[l]) << l;
    return missed;
}

// Plays the lanes of block k that stay in their segments into out. Returns the others, whose next
// segments (or first, when t went back) are asked for now. Compiled twice, for processors with and
// without the wider vectors, and chosen when the library is loaded.
J_MULTIVERSION uint32_t TrackCurvePlayer::play_fast(int k, float t, float* out)
{
    Block& b = m_blocks[k];
    int first = k * LANES;
    int lanes = std::min(size() - first, LANES);
    uint32_t missed = lanes == LANES ? ALL_LANES : (1u << lanes) - 1;
    // The block pass takes normalised time from t - t0, which infinities would turn into NaN.
    if (std::isfinite(t)) {
        float values[LANES];
        missed &= play_block(b, t, values);
        std::copy(values, values + lanes, out + first);
    }
    // Every lane asks, without a branch (worked out for all lanes first, in vector code): the
    // lanes that stay ask for their own block again.
    const Links& links = m_links[k];
    const void* ask[LANES];
    for (int l = 0; l < LANES; ++l) {
        const Line* line = m_table.line(t < b.t0[l] ? links.begin[l] : links.next[l]);
        ask[l] = (missed >> l) & 1u ? static_cast<const void*>(line) : &b;
    }
    for (const void* p : ask)
        J_PREFETCH(p);
    return missed;
}

int TrackCurvePlayer::start(float t, float* out)
{
    if (m_table.size() != size())
        build_table();
    const int blocks = m_blocks.size();
    const int mine = blocks * CALLER_SHARE / 100;
    m_share = Share{this, t, out, mine, blocks};
    m_shared = blocks >= PARALLEL_BLOCKS && jWorker::get()->start(play_share, &m_share);
    if (!m_shared) {
        play_blocks(0, blocks, t, out);
        return size();
    }
    play_blocks(0, mine, t, out);
    return mine * LANES;
}

void TrackCurvePlayer::finish()
{
    if (m_shared)
        jWorker::get()->wait();
    m_shared = false;
}

void TrackCurvePlayer::play_share(void* context)
{
    auto* share = static_cast<Share*>(context);
    share->player->play_blocks(share->first, share->end, share->t, share->out);
}

// Plays blocks [first, end) at t into out.
void TrackCurvePlayer::play_blocks(int first, int end, float t, float* out)
{
    Pending pending;
    // The missed lanes, by their place among all lanes, in the order they were missed.
    int missed[RING];
    unsigned added = 0, played = 0;
    for (int k = first; k < end; ++k) {
        uint32_t m = play_fast(k, t, out);
        for (int l = 0; l < LANES; ++l) {
            missed[added & (RING - 1)] = k * LANES + l;
            added += (m >> l) & 1u;
        }
        if (added - played >= LAG + CHUNK) {
            for (int i = 0; i < CHUNK; ++i)
                play_missed(missed[played++ & (RING - 1)], t, out, pending);
        }
    }
    while (played != added)
        play_missed(missed[played++ & (RING - 1)], t, out, pending);
    solve_pending(pending, out);
}

void TrackCurvePlayer::keep(Block& b, int l, double u, const K::Solution& r)
{
    b.s0[l] = static_cast<float>(r.s - u * r.rate);
    b.rate[l] = static_cast<float>(r.rate);
}

// Moves the missed lane at place (among all lanes) onto the segment that holds t and plays it; a
// Bezier lane waits to be solved with others.
void TrackCurvePlayer::play_missed(int place, float t, float* out, Pending& pending)
{
    int k = place / LANES, l = place % LANES;
    Block& b = m_blocks[k];
    seek(k, l, t);
    double u = normalised(t, b.t0[l], b.inv[l]);
    if (b.bezier & (1u << l))
        defer(pending, k, l, u, out);
    else
        out[place] = static_cast<float>(K::value(b.v0[l], b.cv[l], b.bv[l], b.av[l], u));
}

// Moves lane l of block k onto the segment that holds t: the next one, the first one of a clip
// that loops, or whichever a search finds.
void TrackCurvePlayer::seek(int k, int l, float t)
{
    Block& b = m_blocks[k];
    if (t >= b.t0[l] && t < b.t1[l])
        return;
    Links& links = m_links[k];
    uint32_t next = links.next[l];
    if (next != NONE && t >= b.t1[l] && t < m_table.line(next)->t1) {
        step(b, links, l, t);
    } else if (restarts(links, l, t)) {
        links.next[l] = links.begin[l];
        step(b, links, l, t);
    } else {
        search(b, links, l, k * LANES + l, t);
    }
}

// Queues Bezier lane l of block k at normalised time u in p, solving the queue when it is full.
void TrackCurvePlayer::defer(Pending& p, int k, int l, double u, float* out)
{
    const Block& b = m_blocks[k];
    int i = p.size++;
    p.block[i] = k;
    p.lane[i] = l;
    p.ax[i] = b.ax[l];
    p.bx[i] = b.bx[l];
    p.cx[i] = b.cx[l];
    p.u[i] = u;
    p.s[i] = K::predict(b.s0[l], 0.0, b.rate[l], u);
    if (p.size == LANES)
        solve_pending(p, out);
}

// Refines every slot of the queue from its prediction, side by side. Compiled as play_fast is (and
// defined before its first use, as multiversioned functions must be).
J_MULTIVERSION void TrackCurvePlayer::refine_pending(Pending& p)
{
    for (int i = 0; i < LANES; ++i)
        p.solution[i] = K::refine(p.ax[i], p.bx[i], p.cx[i], p.u[i], p.s[i], K::WARM_STEPS);
}

// Solves the queued lanes, which the queue's vector pass leaves settled but for the few whose
// first guess on a new segment was poor: those are solved cold.
void TrackCurvePlayer::solve_pending(Pending& p, float* out)
{
    if (p.size == 0)
        return;
    for (int i = p.size; i < LANES; ++i) {
        p.ax[i] = p.bx[i] = p.u[i] = p.s[i] = 0.0;
        p.cx[i] = 1.0;
    }
    refine_pending(p);
    for (int i = 0; i < p.size; ++i) {
        Block& b = m_blocks[p.block[i]];
        int l = p.lane[i];
        K::Solution r = K::settle(b.ax[l], b.bx[l], b.cx[l], p.u[i], p.solution[i]);
        keep(b, l, p.u[i], r);
        out[p.block[i] * LANES + l] = static_cast<float>(K::value(b.v0[l], b.cv[l], b.bv[l], b.av[l], r.s));
    }
    p.size = 0;
}

// Steps lane l onto the line after its own (there always is one: the table ends each curve with a
// line that no time steps onto).
void TrackCurvePlayer::step(Block& b, Links& links, int l, float t) const
{
    const Line* g = m_table.line(links.next[l]);
    load(b, l, *g);
    links.next[l] += 1;
    // Asked for now, the line is near when the lane steps on a few frames later.
    J_PREFETCH(g + 1);
    if (g->mode == BEZIER) {
        double u = TrackCurve::normalised(*g, t);
        b.s0[l] = static_cast<float>(K::enter(g->bx, g->cx, u));
        b.rate[l] = 0.0f;
    }
}

// Whether t is in the first segment of lane l's curve, where a looping clip starts over.
bool TrackCurvePlayer::restarts(const Links& links, int l, float t) const
{
    if (links.begin[l] == NONE)
        return false;
    const Line* first = m_table.line(links.begin[l]);
    return t >= first->t0 && t < first->t1;
}

// Puts lane l on the line of its channel's curve that holds t.
void TrackCurvePlayer::search(Block& b, Links& links, int l, int channel, float t)
{
    const TrackCurveTable::Curve& curve = m_table.curve(channel);
    int i = TrackCurveTable::find(curve, t);
    links.begin[l] = m_table.place(curve.lines + 1);
    load(b, l, curve.lines[i]);
    links.next[l] = m_table.place(curve.lines + i + 1);
}

// Puts shape into lane l, with the prediction s = u until the lane is solved.
void TrackCurvePlayer::load(Block& b, int l, const Line& shape)
{
    bool bezier = shape.mode == BEZIER;
    b.t0[l] = shape.t0;
    b.t1[l] = shape.t1;
    b.inv[l] = shape.inv;
    b.v0[l] = shape.v0;
    b.cv[l] = shape.cv;
    b.bv[l] = shape.bv;
    b.av[l] = shape.av;
    b.ax[l] = bezier ? shape.ax : 0.0;
    b.bx[l] = bezier ? shape.bx : 0.0;
    b.cx[l] = bezier ? shape.cx : 1.0;
    b.s0[l] = 0.0f;
    b.rate[l] = 1.0f;
    b.bezier = bezier ? b.bezier | (1u << l) : b.bezier & ~(1u << l);
}
