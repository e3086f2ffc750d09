#include "kit/jVector.h"

#include <vector>

#include "kit/jString.h"
#include "support/Scenario.h"

namespace {

jString longName(int i)
{
    return jString("a name that needs its own buffer ") + ToString(static_cast<float>(i));
}

} // namespace

using jVectorTest = Scenario;

// Keys are appended one at a time: storage starts at ten and doubles when full, also from a reserved
// size, and release gives it back at once. Inserts and removals keep the order.
TEST_F(jVectorTest, GrowthDoublesFromTenAndEditsKeepTheOrder)
{
    jMemSnapshot before = jMemRegistry::snapshot();
    jVector<int> v;
    for (int i = 0; i < 21; ++i) {
        v.append(i);
        EXPECT_EQ(v.capacity(), i < 10 ? 10 : i < 20 ? 20 : 40) << i;
    }
    v.release();
    EXPECT_EQ(v.size(), 0);
    EXPECT_EQ(jMemRegistry::snapshot(), before);
    v.reserve(3);
    for (int i = 0; i < 4; ++i)
        v.append(i);
    EXPECT_EQ(v.capacity(), 6);
    v.insert(0, 10);
    v.insert(2, 11);
    v.insert(99, 13); // out of range appends
    EXPECT_EQ(std::vector<int>(v.begin(), v.end()), (std::vector<int>{10, 0, 11, 1, 2, 3, 13}));
    EXPECT_TRUE(v.remove(0));
    EXPECT_FALSE(v.remove(6));
    EXPECT_TRUE(v.removeValue(2));
    EXPECT_FALSE(v.removeValue(42));
    EXPECT_EQ(std::vector<int>(v.begin(), v.end()), (std::vector<int>{0, 11, 1, 3, 13}));
}

// Exactly the elements held are alive (the fixture fails on a string left registered or freed twice),
// also after appending an element from the storage being replaced; copies are deep.
TEST_F(jVectorTest, ElementsLiveExactlyAsLongAsTheyAreHeld)
{
    jMemSnapshot before = jMemRegistry::snapshot();
    jVector<jString> a;
    for (int i = 0; i < 20; ++i)
        a.append(longName(i));
    a.remove(3);
    a.insert(1, "inserted");
    a.append(a[0]);
    EXPECT_EQ(a[20], longName(0));
    EXPECT_EQ(a[4], longName(4));
    EXPECT_EQ(jMemRegistry::snapshot().count("jString::reserve"), before.count("jString::reserve") + 21);
    jVector<jString> b(a);
    b[0] = "changed";
    EXPECT_EQ(a[0], longName(0));
    jVector<jString> c(std::move(b));
    EXPECT_EQ(b.size(), 0);
    a = c;
    EXPECT_EQ(a[0], "changed");
    c = std::move(a);
    EXPECT_EQ(a.size(), 0);
    c.clear();
    EXPECT_EQ(jMemRegistry::snapshot().count("jString::reserve"), before.count("jString::reserve"));
}
