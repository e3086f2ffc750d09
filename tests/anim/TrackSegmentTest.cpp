#include "anim/TrackSegment.h"

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
