#include "anim/TrackCurve.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <numeric>
#include <random>
#include <vector>

#include "anim/Track.h"
#include "anim/TrackCurveBatch.h"
#include "anim/TrackCurveCursor.h"
#include "anim/TrackCurvePlayer.h"
#include "anim/TrackParameterFloat.h"
#include "kit/jAllocator.h"
#include "scene/Node.h"
#include "scene/World.h"
#include "support/BezierReference.h"
#include "support/CurveKeys.h"
#include "support/Scenario.h"

// Compiled curves, sampled by each of the engine's evaluators and checked against one independent
// reference, and the rules of compiling keys.

namespace {

using Keys = std::vector<TrackKeyFloat>;

const float INF = std::numeric_limits<float>::infinity();

// The value of keys at t by the rules of the key types, worked out apart from the engine: the first
// key's value before it, the last key's from it on, the later of two keys at one time, and every
// Bezier segment by bezierReference. exact tells whether that is a key's value as it is (before the
// first key, on a key, from the last on, or on a constant segment): evaluators must give it exactly.
double reference(const Keys& keys, float t, bool& exact)
{
    size_t i = 0;
    while (i + 1 < keys.size() && keys[i + 1].time <= t)
        ++i;
    const TrackKeyFloat& a = keys[i];
    exact = t <= a.time || i + 1 == keys.size() || a.type == TRACK_KEY_CONSTANT;
    if (exact)
        return a.value;
    const TrackKeyFloat& b = keys[i + 1];
    if (a.type == TRACK_KEY_LINEAR)
        return a.value + (static_cast<double>(b.value) - a.value) * (t - a.time) / (b.time - a.time);
    return bezierReference(a, b, t);
}

// Every evaluator below plays a set of curves: play(t, out) writes each curve's value at t, frame
// after frame, as the evaluator's users ask for them.

// TrackCurve::evaluate from a cold start, as scrubbing samples a curve, over the curves compiled
// with their time index as parameters compile theirs (which the other evaluators play).
struct ColdStart {
    explicit ColdStart(const std::vector<Keys>& curves)
        : data(curves.size())
    {
        for (size_t i = 0; i < curves.size(); ++i)
            TrackCurve::compile(curves[i].data(), static_cast<int>(curves[i].size()), data[i]);
    }
    void play(float t, float* out) const
    {
        for (const TrackCurveData<float>& c : data) {
            int cursor = 0;
            *out++ = TrackCurve::evaluate(c.times.data(), c.segments.data(), c.times.size(), t, cursor);
        }
    }
    std::vector<TrackCurveData<float>> data;
};

// A TrackCurveCursor per curve.
struct Cursor : ColdStart {
    explicit Cursor(const std::vector<Keys>& curves)
        : ColdStart(curves)
        , cursors(curves.size())
    {
        for (size_t i = 0; i < data.size(); ++i)
            cursors[i].attach(&data[i]);
    }
    void play(float t, float* out)
    {
        for (size_t i = 0; i < cursors.size(); ++i)
            out[i] = cursors[i].value(t);
    }
    std::vector<TrackCurveCursor<float>> cursors;
};

// A TrackCurvePlayer with a channel per curve.
struct Player : ColdStart {
    explicit Player(const std::vector<Keys>& curves)
        : ColdStart(curves)
    {
        for (const TrackCurveData<float>& curve : data)
            player.add(&curve);
    }
    void play(float t, float* out) { player.play(t, out); }
    TrackCurvePlayer player;
};

// Samples curves[ids[i]] at times[i] in one batch.
std::vector<float> batch(const std::vector<TrackCurveData<float>>& curves, const std::vector<int>& ids,
                         const std::vector<float>& times)
{
    std::vector<const TrackCurveData<float>*> all;
    for (const TrackCurveData<float>& curve : curves)
        all.push_back(&curve);
    TrackCurveTable table;
    table.build(all.data(), static_cast<int>(all.size()));
    std::vector<float> out(times.size(), -12345.0f);
    TrackCurveBatch::sample(table, ids.data(), times.data(), static_cast<int>(times.size()), out.data());
    return out;
}

// TrackCurveBatch sampling every curve at the frame's time.
struct Batch : ColdStart {
    using ColdStart::ColdStart;
    void play(float t, float* out) const
    {
        std::vector<int> ids(data.size());
        std::iota(ids.begin(), ids.end(), 0);
        std::vector<float> values = batch(data, ids, std::vector<float>(data.size(), t));
        std::copy(values.begin(), values.end(), out);
    }
};

// Track::set over a float parameter per curve, each bound to the intensity of a lamp of its own.
struct Playback {
    explicit Playback(const std::vector<Keys>& curves)
    {
        for (size_t i = 0; i < curves.size(); ++i) {
            int id = 100 + static_cast<int>(i);
            lamps.push_back(world.addNode(LIGHT_POINT, "", id));
            TrackParameterFloat* p = jNew<TrackParameterFloat>("tests/anim/TrackCurveTest", __LINE__, "Playback");
            for (const TrackKeyFloat& k : curves[i])
                p->appendKey(k.time, k.value, k.tangents, k.type);
            p->update();
            track.addParameter(p);
            EXPECT_TRUE(track.bindNode(p, &world, id, "", -1, "", "Light.intensity"));
        }
    }
    ~Playback()
    {
        track.release();
        world.release();
    }
    void play(float t, float* out)
    {
        track.set(t);
        for (size_t i = 0; i < lamps.size(); ++i)
            out[i] = lamps[i]->getLightIntensity();
    }
    World world;
    Track track;
    std::vector<Node*> lamps;
};

// The engine's evaluators of one curve, which must all give what the reference gives.
using Evaluators = ::testing::Types<ColdStart, Cursor, Player, Batch, Playback>;

template <class Evaluator>
class CurveEvaluatorTest : public Scenario {
protected:
    // Plays curves at every time of times in turn and checks every value against the reference:
    // within bound(t) (the solver's error bound, a millionth), and exactly where it is a key's value.
    void expectReference(const std::vector<Keys>& curves, const std::vector<float>& times,
                         const std::function<double(float)>& bound = [](float) { return 1e-6; })
    {
        Evaluator evaluator(curves);
        std::vector<float> out(curves.size());
        for (float t : times) {
            evaluator.play(t, out.data());
            for (size_t i = 0; i < curves.size(); ++i) {
                bool exact = false;
                double expected = reference(curves[i], t, exact);
                if (exact)
                    ASSERT_EQ(out[i], expected) << "curve " << i << " t=" << t;
                else
                    ASSERT_NEAR(out[i], expected, bound(t)) << "curve " << i << " t=" << t;
            }
        }
    }
};

TYPED_TEST_SUITE(CurveEvaluatorTest, Evaluators);

// Four keys of one type with a zero-length segment at 2 (keys b and c share it):
//
//   value
//     4 |      b
//     2 | a
//     1 |      c       d
//       +--|---|-------|----> t
//          1   2       4
// Smooth keys get the tangents the engine gives them, as parameters do.
Keys edgeKeys(int type)
{
    Keys keys = {{1.0f, 2.0f, vec4(-0.2f, 0.0f, 0.25f, 0.5f), type},
                 {2.0f, 4.0f, vec4(-0.25f, -0.25f, 0.5f, 0.5f), type},
                 {2.0f, 1.0f, vec4(-0.25f, 0.5f, 0.6f, -0.5f), type},
                 {4.0f, 1.0f, vec4(-0.5f, 0.75f, 0.3f, 0.0f), type}};
    TrackCurve::smoothTangents(keys.data(), 4);
    return keys;
}

// The edges of every key type, of a curve of one key (which holds everywhere) and of a Bezier
// segment with its handles at a third of it each way (time is then linear in the curve parameter,
// so nothing is solved): long before the first key, just before, on and just after each key,
// between keys, after the last and the extremes, played forward and then backward.
TYPED_TEST(CurveEvaluatorTest, EdgeSamplesOfEveryKeyTypeMatchTheReference)
{
    std::vector<Keys> curves;
    for (int type = TRACK_KEY_CONSTANT; type < TRACK_KEY_TYPE_COUNT; ++type)
        curves.push_back(edgeKeys(type));
    curves.push_back({{0.5f, -3.0f, vec4(-1.0f, 1.0f, 1.0f, 1.0f), TRACK_KEY_BREAK}});
    curves.push_back({{0.0f, 0.0f, vec4(0.0f, 0.0f, 1.0f, 1.0f), TRACK_KEY_AUTO},
                      {3.0f, 0.0f, vec4(-1.0f, 1.0f, 0.0f, 0.0f), TRACK_KEY_AUTO}});
    const std::vector<float> edges = {-INF, -1e30f, 0.0f, 0.9999f, 1.0f, 1.0001f, 1.5f, 1.9999f, 2.0f,
                                      2.0001f, 3.0f, 3.9999f, 4.0f, 4.0001f, 100.0f, 1e30f, INF};
    std::vector<float> times = edges;
    times.insert(times.end(), edges.rbegin(), edges.rend());
    this->expectReference(curves, times);
}

// 21 curves (for the player, two full blocks of channels and part of a third) played frame by frame
// at 240, 60 and 24 frames a second from before the first key to past the last, then as the editor
// moves the time: mostly a frame forward, sometimes back, back to the start of a loop, or anywhere.
TYPED_TEST(CurveEvaluatorTest, FramesForwardBackwardAndJumpingMatchTheReference)
{
    std::vector<Keys> curves;
    for (unsigned seed = 1; seed <= 21; ++seed)
        curves.push_back(randomKeys(60, seed));
    std::vector<float> times;
    for (int rate : {240, 60, 24}) {
        for (float t = -0.2f; t < 9.5f; t += 1.0f / static_cast<float>(rate))
            times.push_back(t);
    }
    std::mt19937 rng(5);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    float t = 0.0f;
    for (int n = 0; n < 3000; ++n) {
        float r = unit(rng);
        t = r < 0.8f ? t + 1.0f / 60.0f : (r < 0.85f ? t - 1.0f / 30.0f : (r < 0.9f ? 0.0f : unit(rng) * 10.5f - 1.0f));
        times.push_back(t);
    }
    this->expectReference(curves, times);
}

// Enough curves that the player plays a frame partly on its worker thread.
TYPED_TEST(CurveEvaluatorTest, ThousandsOfCurvesMatchTheReference)
{
    std::vector<Keys> curves;
    for (unsigned seed = 1; seed <= 4100; ++seed)
        curves.push_back(randomKeys(12, seed));
    this->expectReference(curves, {0.0f, 0.3f, 0.31f, 0.32f, 0.9f, 0.1f, 5.0f});
}

// An out handle of zero length (the curve leaves the key with no speed in time), both handles as
// long as the segment (the timing curve stops in its middle, at 1.5 s) and an in handle of zero
// length. Where the timing curve stops, a millionth of the segment in time is worth far more in value.
TYPED_TEST(CurveEvaluatorTest, HandlesThatFlattenTheTimingCurveStillSolve)
{
    const Keys keys = {
        {0.0f, 0.0f, vec4(0.0f, 0.0f, 0.0f, 1.0f), TRACK_KEY_BREAK},
        {1.0f, 1.0f, vec4(-1.0f, 0.5f, 1.0f, 0.5f), TRACK_KEY_BREAK},
        {2.0f, -1.0f, vec4(-1.0f, 0.5f, 0.5f, -0.5f), TRACK_KEY_BREAK},
        {3.0f, 0.5f, vec4(0.0f, 2.0f, 0.0f, 0.0f), TRACK_KEY_BREAK},
    };
    std::vector<float> times;
    for (float t = 0.0f; t < 3.0f; t += 1.0f / 120.0f)
        times.push_back(t);
    this->expectReference({keys}, times, [](float t) { return std::fabs(t - 1.5f) < 1e-4f ? 1e-3 : 1e-6; });
}

// A handle that reaches past its segment is shortened to it keeping its slope, and one that points
// the wrong way in time is pulled back onto its key keeping its rise: played, the keys give what
// the reference gives for the handles so corrected.
TYPED_TEST(CurveEvaluatorTest, HandlesReachingPastTheSegmentAreClampedKeepingTheirSlope)
{
    // a's out handle reaches 2 s into a 1 s segment (half its rise is kept), b's in handle 3 s back
    // (a third of its drop); b's out handle points back and c's in handle forward.
    const Keys keys = {{0.0f, 0.0f, vec4(0.0f, 0.0f, 2.0f, 1.0f), TRACK_KEY_BREAK},
                       {1.0f, 1.0f, vec4(-3.0f, -3.0f, -1.0f, 0.5f), TRACK_KEY_BREAK},
                       {2.0f, 0.0f, vec4(0.5f, 0.0f, 0.0f, 0.0f), TRACK_KEY_BREAK}};
    const Keys corrected = {{0.0f, 0.0f, vec4(0.0f, 0.0f, 1.0f, 0.5f), TRACK_KEY_BREAK},
                            {1.0f, 1.0f, vec4(-1.0f, -1.0f, 0.0f, 0.5f), TRACK_KEY_BREAK},
                            {2.0f, 0.0f, vec4(0.0f, 0.0f, 0.0f, 0.0f), TRACK_KEY_BREAK}};
    TypeParam evaluator({keys});
    for (float t : {0.1f, 0.5f, 0.9f, 1.2f, 1.5f, 1.8f}) {
        float value = 0.0f;
        evaluator.play(t, &value);
        bool exact = false;
        EXPECT_NEAR(value, reference(corrected, t, exact), 2e-6) << "t=" << t;
    }
}

using TrackCurveBatchTest = Scenario;

TEST_F(TrackCurveBatchTest, ACurveRecompiledWithoutItsIndexIsSearchedInstead)
{
    std::vector<TrackCurveData<float>> curves(1);
    std::vector<TrackKeyFloat> keys = {{1.0f, 2.0f, vec4(), TRACK_KEY_LINEAR}, {2.0f, 4.0f, vec4(), TRACK_KEY_LINEAR},
                                       {4.0f, 1.0f, vec4(), TRACK_KEY_LINEAR}};
    TrackCurve::compile(keys.data(), 3, curves[0]);
    std::vector<TrackKeyFloat> fewer = {{0.0f, 0.0f, vec4(), TRACK_KEY_LINEAR}, {10.0f, 10.0f, vec4(), TRACK_KEY_LINEAR}};
    TrackCurve::compile(fewer.data(), 2, curves[0].times, curves[0].segments);
    std::vector<float> out = batch(curves, {0, 0, 0}, {2.5f, 3.75f, 9.0f});
    EXPECT_FLOAT_EQ(out[0], 2.5f);
    EXPECT_FLOAT_EQ(out[1], 3.75f);
    EXPECT_FLOAT_EQ(out[2], 9.0f);
}

// Curves of every length (those without keys give 0), with and without their time index, and one
// whose keys are nearly all in its first second (one at 1,000 s) so that most of them share a
// bucket, each sampled at its own time (any time: infinities and NaN too, for which a curve gives
// its last key's value) in batches shorter and longer than the pipeline, so that it fills and
// drains at every depth.
TEST_F(TrackCurveBatchTest, ManyCurvesEachAtItsOwnTimeMatchSingleSamples)
{
    std::vector<TrackCurveData<float>> curves(17);
    size_t i = 0;
    for (int count : {0, 1, 2, 3, 5, 17, 100, 1000}) {
        std::vector<TrackKeyFloat> keys = randomKeys(count, static_cast<unsigned>(i + 1));
        TrackCurve::compile(keys.data(), count, curves[i++]);
        TrackCurve::compile(keys.data(), count, curves[i].times, curves[i].segments);
        ++i;
    }
    std::vector<TrackKeyFloat> clustered;
    for (int i = 0; i < 999; ++i)
        clustered.push_back({i / 999.0f, std::sin(i * 0.1f), vec4(), TRACK_KEY_LINEAR});
    clustered.push_back({1000.0f, 5.0f, vec4(), TRACK_KEY_LINEAR});
    TrackCurve::compile(clustered.data(), 1000, curves[16]);
    std::mt19937 rng(21);
    std::uniform_real_distribution<float> early(-0.1f, 1.1f), anywhere(-5.0f, 160.0f);
    const float extremes[3] = {-std::numeric_limits<float>::infinity(), std::numeric_limits<float>::infinity(),
                               std::numeric_limits<float>::quiet_NaN()};
    for (int size : {1, 2, 7, 25, 5000}) {
        std::vector<int> ids;
        std::vector<float> at;
        for (int n = 0; n < size; ++n) {
            ids.push_back(static_cast<int>(rng() % curves.size()));
            at.push_back(n % 2 ? early(rng) : (n % 10 == 4 ? extremes[n % 3] : anywhere(rng)));
        }
        std::vector<float> out = batch(curves, ids, at);
        for (int n = 0; n < size; ++n) {
            const TrackCurveData<float>& c = curves[ids[n]];
            int cursor = 0;
            int segment = TrackSegment::find(c.times.data(), c.times.size(), at[n], cursor);
            float single = c.times.empty() ? 0.0f : TrackCurve::evaluate(c.times.data(), c.segments.data(),
                                                                          c.times.size(), at[n], cursor);
            // Only solved Bezier segments may differ, by rounding; everything else is the same value.
            if (segment >= 0 && c.segments[segment].mode == TrackCurveSegment<float>::BEZIER)
                ASSERT_NEAR(out[n], single, 1e-6) << "sample " << n << " of " << size << " at t=" << at[n];
            else
                ASSERT_EQ(out[n], single) << "sample " << n << " of " << size << " at t=" << at[n];
        }
    }
}

using TrackCurveTest = Scenario;

TEST_F(TrackCurveTest, AutoTangentsAverageTheThirdsToBothNeighbours)
{
    // Keys (1, 2), (2, 4), (4, 1).
    std::vector<TrackKeyFloat> keys = {{1.0f, 2.0f, vec4(), TRACK_KEY_AUTO},
                                       {2.0f, 4.0f, vec4(), TRACK_KEY_AUTO},
                                       {4.0f, 1.0f, vec4(), TRACK_KEY_AUTO}};
    // Middle key: in = ((1-2)/3, (2-4)/3), out = ((4-2)/3, (1-4)/3); a = (in - out) / 2.
    vec4 middle = TrackCurve::autoTangents(keys.data(), 3, 1);
    EXPECT_FLOAT_EQ(middle.x, -0.5f);
    EXPECT_FLOAT_EQ(middle.y, 1.0f / 6.0f);
    EXPECT_FLOAT_EQ(middle.z, 0.5f);
    EXPECT_FLOAT_EQ(middle.w, -1.0f / 6.0f);
    // First key: only the out side: a = -out / 2.
    vec4 first = TrackCurve::autoTangents(keys.data(), 3, 0);
    EXPECT_FLOAT_EQ(first.x, -1.0f / 6.0f);
    EXPECT_FLOAT_EQ(first.y, -1.0f / 3.0f);
    EXPECT_FLOAT_EQ(first.z, 1.0f / 6.0f);
    EXPECT_FLOAT_EQ(first.w, 1.0f / 3.0f);
    // A key alone gets flat, zero-length tangents.
    EXPECT_EQ(TrackCurve::autoTangents(keys.data(), 1, 0), vec4_zero);
}

} // namespace
