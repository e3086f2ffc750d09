#include "anim/TrackCurve.h"

#include <cmath>
#include <random>
#include <vector>

#include "anim/TrackKey.h"
#include "support/Scenario.h"

namespace {

using TrackCurveTest = Scenario;

const float EPS = 1e-4f;

// Three keys used by the edge tests:
//
//   value
//     4 |      b
//     2 | a
//     1 |              c
//       +--|---|-------|----> t
//          1   2       4
//   sampled at 1-eps, 1, 1.5, 2, 3, 4, 4+eps (and 0, long before the first key).
std::vector<TrackKeyFloat> threeKeys(int type)
{
    std::vector<TrackKeyFloat> keys(3);
    keys[0] = {1.0f, 2.0f, vec4(-0.2f, 0.0f, 0.25f, 0.5f), type};
    keys[1] = {2.0f, 4.0f, vec4(-0.25f, -0.25f, 0.5f, 0.5f), type};
    keys[2] = {4.0f, 1.0f, vec4(-0.5f, 0.75f, 0.3f, 0.0f), type};
    return keys;
}

// A compiled curve, as parameters keep one.
struct Curve {
    explicit Curve(const std::vector<TrackKeyFloat>& keys)
    {
        TrackCurve::compile(keys.data(), static_cast<int>(keys.size()), times, segments);
    }
    float operator()(float t, int& cursor) const
    {
        return TrackCurve::evaluate(times.data(), segments.data(), times.size(), t, cursor);
    }
    float operator()(float t) const
    {
        int cursor = 0;
        return (*this)(t, cursor);
    }
    jVector<float> times;
    jVector<TrackCurveSegment<float>> segments;
};

float sample(const std::vector<TrackKeyFloat>& keys, float t)
{
    return Curve(keys)(t);
}

float segment(const TrackKeyFloat& a, const TrackKeyFloat& b, float t)
{
    return sample({a, b}, t);
}

// An independent evaluation: Bernstein form in double precision, the curve parameter found by
// bisection far past what playback needs.
double referenceBezier(double t0, double v0, double t1, double v1, double t2, double v2, double t3, double v3, double t)
{
    auto bern = [](double a, double b, double c, double d, double s) {
        double r = 1.0 - s;
        return r * r * r * a + 3.0 * r * r * s * b + 3.0 * r * s * s * c + s * s * s * d;
    };
    double lo = 0.0, hi = 1.0;
    for (int i = 0; i < 200; ++i) {
        double mid = 0.5 * (lo + hi);
        if (bern(t0, t1, t2, t3, mid) < t)
            lo = mid;
        else
            hi = mid;
    }
    return bern(v0, v1, v2, v3, 0.5 * (lo + hi));
}

// The reference for the segment from a to b using the stored handles (which these tests keep inside
// the segment, so no clamping applies).
double referenceSegment(const TrackKeyFloat& a, const TrackKeyFloat& b, double t)
{
    double ta = a.time, va = a.value, tb = b.time, vb = b.value;
    return referenceBezier(ta, va, ta + a.tangents.z, va + a.tangents.w, tb + b.tangents.x, vb + b.tangents.y, tb, vb, t);
}

TEST_F(TrackCurveTest, ConstantKeysHoldUntilTheNextKey)
{
    auto keys = threeKeys(TRACK_KEY_CONSTANT);
    EXPECT_EQ(sample(keys, 0.0f), 2.0f);
    EXPECT_EQ(sample(keys, 1.0f - EPS), 2.0f);
    EXPECT_EQ(sample(keys, 1.0f), 2.0f);
    EXPECT_EQ(sample(keys, 1.5f), 2.0f);
    EXPECT_EQ(sample(keys, 2.0f - EPS), 2.0f);
    EXPECT_EQ(sample(keys, 2.0f), 4.0f);
    EXPECT_EQ(sample(keys, 3.0f), 4.0f);
    EXPECT_EQ(sample(keys, 4.0f), 1.0f);
    EXPECT_EQ(sample(keys, 4.0f + EPS), 1.0f);
    EXPECT_EQ(sample(keys, 100.0f), 1.0f);
}

TEST_F(TrackCurveTest, LinearKeysInterpolateStraight)
{
    auto keys = threeKeys(TRACK_KEY_LINEAR);
    EXPECT_EQ(sample(keys, 1.0f - EPS), 2.0f);
    EXPECT_EQ(sample(keys, 1.0f), 2.0f);
    EXPECT_FLOAT_EQ(sample(keys, 1.5f), 3.0f);
    EXPECT_EQ(sample(keys, 2.0f), 4.0f);
    EXPECT_FLOAT_EQ(sample(keys, 3.0f), 2.5f);
    EXPECT_FLOAT_EQ(sample(keys, 3.5f), 1.75f);
    EXPECT_EQ(sample(keys, 4.0f), 1.0f);
    EXPECT_EQ(sample(keys, 4.0f + EPS), 1.0f);
}

TEST_F(TrackCurveTest, BezierKeysFollowTheIndependentEvaluation)
{
    for (int type : {TRACK_KEY_SMOOTH, TRACK_KEY_BREAK, TRACK_KEY_AUTO}) {
        auto keys = threeKeys(type);
        SCOPED_TRACE(type);
        EXPECT_EQ(sample(keys, 1.0f - EPS), 2.0f);
        EXPECT_EQ(sample(keys, 1.0f), 2.0f);
        EXPECT_EQ(sample(keys, 2.0f), 4.0f);
        EXPECT_EQ(sample(keys, 4.0f), 1.0f);
        EXPECT_EQ(sample(keys, 4.0f + EPS), 1.0f);
        for (float t : {1.001f, 1.25f, 1.5f, 1.9f, 1.9999f}) {
            EXPECT_NEAR(sample(keys, t), referenceSegment(keys[0], keys[1], t), 2e-6) << "t=" << t;
        }
        for (float t : {2.0001f, 2.5f, 3.0f, 3.7f, 3.9999f}) {
            EXPECT_NEAR(sample(keys, t), referenceSegment(keys[1], keys[2], t), 2e-6) << "t=" << t;
        }
    }
}

TEST_F(TrackCurveTest, RandomBezierSegmentsStayWithinAMillionthOfTheReference)
{
    std::mt19937 rng(7);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    double worst = 0.0;
    for (int n = 0; n < 2000; ++n) {
        float d = 0.05f + unit(rng) * 3.0f;
        TrackKeyFloat a{unit(rng) * 10.0f, unit(rng) * 2.0f - 1.0f, vec4(), TRACK_KEY_BREAK};
        TrackKeyFloat b{a.time + d, unit(rng) * 2.0f - 1.0f, vec4(), TRACK_KEY_BREAK};
        a.tangents = vec4(0.0f, 0.0f, unit(rng) * d, unit(rng) - 0.5f);
        b.tangents = vec4(-unit(rng) * d, unit(rng) - 0.5f, 0.0f, 0.0f);
        float t = a.time + unit(rng) * d * 0.999f;
        double error = std::fabs(segment(a, b, t) - referenceSegment(a, b, t));
        worst = std::max(worst, error);
    }
    EXPECT_LT(worst, 1e-6);
}

TEST_F(TrackCurveTest, HandlesReachingPastTheSegmentAreClampedKeepingTheirSlope)
{
    // The out handle reaches 2 s into a 1 s segment: it is shortened to 1 s with half its rise.
    TrackKeyFloat a{0.0f, 0.0f, vec4(0.0f, 0.0f, 2.0f, 1.0f), TRACK_KEY_BREAK};
    TrackKeyFloat b{1.0f, 1.0f, vec4(-3.0f, -3.0f, 0.0f, 0.0f), TRACK_KEY_BREAK};
    for (float t : {0.1f, 0.5f, 0.9f}) {
        double expected = referenceBezier(0.0, 0.0, 1.0, 0.5, 0.0, 0.0, 1.0, 1.0, t);
        EXPECT_NEAR(segment(a, b, t), expected, 2e-6) << "t=" << t;
    }
    // Handles pointing the wrong way in time are pulled back onto the key.
    TrackKeyFloat c{0.0f, 0.0f, vec4(0.0f, 0.0f, -1.0f, 0.5f), TRACK_KEY_BREAK};
    TrackKeyFloat e{1.0f, 1.0f, vec4(0.5f, 0.0f, 0.0f, 0.0f), TRACK_KEY_BREAK};
    EXPECT_NEAR(segment(c, e, 0.5f), referenceBezier(0, 0, 0, 0.5, 1, 1, 1, 1, 0.5), 2e-6);
}

TEST_F(TrackCurveTest, DoubleKeysKeepTheirPrecision)
{
    TrackKeyDouble keys[2] = {{0.0f, 1e9, vec4(), TRACK_KEY_LINEAR}, {2.0f, 1e9 + 2.0, vec4(), TRACK_KEY_LINEAR}};
    jVector<float> times;
    jVector<TrackCurveSegment<double>> segments;
    TrackCurve::compile(keys, 2, times, segments);
    int cursor = 0;
    EXPECT_DOUBLE_EQ(TrackCurve::evaluate(times.data(), segments.data(), 2, 0.5f, cursor), 1e9 + 0.5);
    EXPECT_DOUBLE_EQ(TrackCurve::evaluate(times.data(), segments.data(), 2, 3.0f, cursor), 1e9 + 2.0);
}

TEST_F(TrackCurveTest, AutoTangentsAverageTheThirdsToBothNeighbours)
{
    auto keys = threeKeys(TRACK_KEY_AUTO);
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

TEST_F(TrackCurveTest, SmoothTangentsAreRecomputedOnlyForSmoothKeys)
{
    auto keys = threeKeys(TRACK_KEY_BREAK);
    keys[1].type = TRACK_KEY_SMOOTH;
    vec4 storedFirst = keys[0].tangents;
    TrackCurve::smoothTangents(keys.data(), 3);
    EXPECT_EQ(keys[0].tangents, storedFirst);
    EXPECT_EQ(keys[1].tangents, TrackCurve::autoTangents(keys.data(), 3, 1));
    // Moving the neighbour changes the smooth key's tangents at the next update.
    keys[2].time = 6.0f;
    TrackCurve::smoothTangents(keys.data(), 3);
    EXPECT_FLOAT_EQ(keys[1].tangents.z, (6.0f - 1.0f) / 6.0f);
}

TEST_F(TrackCurveTest, EvenlySpacedHandlesNeedNoSolving)
{
    // Handles at a third of each side make the curve's time linear; the value is then the plain
    // cubic in the normalised time.
    TrackKeyFloat a{0.0f, 0.0f, vec4(0.0f, 0.0f, 1.0f, 1.0f), TRACK_KEY_AUTO};
    TrackKeyFloat b{3.0f, 0.0f, vec4(-1.0f, 1.0f, 0.0f, 0.0f), TRACK_KEY_AUTO};
    Curve curve({a, b});
    EXPECT_EQ(curve.segments[0].mode, TrackCurveSegment<float>::BEZIER_EVEN);
    for (float t : {0.3f, 1.5f, 2.9f}) {
        double s = t / 3.0;
        EXPECT_NEAR(curve(t), 3.0 * s * (1.0 - s) * (1.0 - s) + 3.0 * s * s * (1.0 - s), 1e-6) << "t=" << t;
    }
}

TEST_F(TrackCurveTest, EqualKeyTimesJumpWithoutDividingByZero)
{
    std::vector<TrackKeyFloat> keys(3);
    keys[0] = {0.0f, 0.0f, vec4(), TRACK_KEY_LINEAR};
    keys[1] = {1.0f, 5.0f, vec4(), TRACK_KEY_LINEAR};
    keys[2] = {1.0f, 9.0f, vec4(), TRACK_KEY_LINEAR};
    EXPECT_FLOAT_EQ(sample(keys, 0.5f), 2.5f);
    EXPECT_EQ(sample(keys, 1.0f), 9.0f);
    EXPECT_EQ(sample(keys, 2.0f), 9.0f);
}

TEST_F(TrackCurveTest, TheCursorGivesTheSameAnswersForwardBackwardAndAtRandom)
{
    Curve curve(threeKeys(TRACK_KEY_LINEAR));
    int cursor = 0;
    std::vector<float> times = {0.5f, 1.0f, 1.2f, 1.9f, 2.0f, 3.9f, 4.0f, 5.0f, 1.1f, 3.0f, 0.0f, 2.5f};
    for (float t : times)
        EXPECT_EQ(curve(t, cursor), curve(t)) << "t=" << t;
    cursor = 12345;
    EXPECT_FLOAT_EQ(curve(1.5f, cursor), 3.0f);
    cursor = -7;
    EXPECT_FLOAT_EQ(curve(3.0f, cursor), 2.5f);
}

} // namespace
