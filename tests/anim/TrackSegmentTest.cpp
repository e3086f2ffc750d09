#include "anim/TrackSegment.h"

#include <algorithm>
#include <random>
#include <vector>

#include "anim/TrackKey.h"
#include "support/Scenario.h"

namespace {

using TrackSegmentTest = Scenario;

//   keys:  0     1           2
//          |-----|-----------|
//   t:     1     2           5
TEST_F(TrackSegmentTest, FindsTheLastKeyAtOrBeforeTheTime)
{
    TrackKeyToggle keys[3] = {{1.0f, false}, {2.0f, true}, {5.0f, false}};
    int cursor = 0;
    EXPECT_EQ(TrackSegment::find(keys, 3, 0.999f, cursor), -1);
    EXPECT_EQ(TrackSegment::find(keys, 3, 1.0f, cursor), 0);
    EXPECT_EQ(TrackSegment::find(keys, 3, 1.5f, cursor), 0);
    EXPECT_EQ(TrackSegment::find(keys, 3, 2.0f, cursor), 1);
    EXPECT_EQ(TrackSegment::find(keys, 3, 4.999f, cursor), 1);
    EXPECT_EQ(TrackSegment::find(keys, 3, 5.0f, cursor), 2);
    EXPECT_EQ(TrackSegment::find(keys, 3, 50.0f, cursor), 2);
    EXPECT_EQ(cursor, 2);
    EXPECT_EQ(TrackSegment::find(keys, 3, 1.2f, cursor), 0);
    EXPECT_EQ(cursor, 0);
    EXPECT_EQ(TrackSegment::find(keys, 0, 1.0f, cursor), -1);
}

} // namespace

namespace {

TEST_F(TrackSegmentTest, AgreesWithABinarySearchOnUnevenAndRepeatedTimes)
{
    std::vector<float> times;
    std::mt19937 rng(2);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    float t = 0.0f;
    for (int i = 0; i < 500; ++i) {
        times.push_back(t);
        // Mostly even steps, some long gaps, some repeated times.
        float r = unit(rng);
        t += r < 0.1f ? 0.0f : (r < 0.2f ? 40.0f * unit(rng) : 0.1f);
    }
    for (int n = 0; n < 5000; ++n) {
        float q = unit(rng) * (t + 10.0f) - 5.0f;
        int cursor = static_cast<int>(unit(rng) * 600.0f) - 50;
        int expected = static_cast<int>(std::upper_bound(times.begin(), times.end(), q) - times.begin()) - 1;
        ASSERT_EQ(TrackSegment::find(times.data(), static_cast<int>(times.size()), q, cursor), expected) << q;
    }
}

} // namespace
