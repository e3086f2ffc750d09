#include "kit/jVector.h"

#include <cstring>
#include <string>

#include "kit/jString.h"
#include "support/Scenario.h"

namespace {

// Counts how many instances are alive, to show that the vector constructs and destroys exactly
// the elements it holds.
struct Tracked {
    static int alive;
    int value;
    Tracked(int v = 0) : value(v) { ++alive; }
    Tracked(const Tracked& other) : value(other.value) { ++alive; }
    Tracked(Tracked&& other) noexcept : value(other.value) { ++alive; }
    Tracked& operator=(const Tracked&) = default;
    Tracked& operator=(Tracked&&) noexcept = default;
    ~Tracked() { --alive; }
    bool operator==(const Tracked& other) const { return value == other.value; }
};
int Tracked::alive = 0;

std::string textOf(const jVector<int>& v)
{
    std::string text;
    for (int x : v)
        text += std::to_string(x) + " ";
    return text;
}

jVector<int> range(int n)
{
    jVector<int> v;
    for (int i = 0; i < n; ++i)
        v.append(i);
    return v;
}

} // namespace

using jVectorTest = Scenario;

TEST_F(jVectorTest, GrowthDoublesFromTen)
{
    jVector<int> v;
    EXPECT_EQ(v.capacity(), 0);
    v.append(0);
    EXPECT_EQ(v.capacity(), 10);
    for (int i = 1; i < 11; ++i)
        v.append(i);
    EXPECT_EQ(v.size(), 11);
    EXPECT_EQ(v.capacity(), 20);
    for (int i = 11; i < 21; ++i)
        v.append(i);
    EXPECT_EQ(v.capacity(), 40);
    EXPECT_EQ(v[20], 20);
}

TEST_F(jVectorTest, ReserveAllocatesExactly)
{
    jVector<int> v;
    v.reserve(3);
    EXPECT_EQ(v.capacity(), 3);
    v.append(1);
    v.append(2);
    v.append(3);
    v.append(4); // full at 3: 3 * 2
    EXPECT_EQ(v.capacity(), 6);
    v.reserve(25);
    EXPECT_EQ(v.capacity(), 25);
    EXPECT_EQ(textOf(v), "1 2 3 4 ");
    v.reserve(2); // below the count: nothing would fit
    EXPECT_EQ(v.capacity(), 25);
}

TEST_F(jVectorTest, ReleaseFreesTheStorage)
{
    jMemSnapshot before = jMemRegistry::snapshot();
    jVector<int> v = range(15);
    EXPECT_EQ(jMemRegistry::snapshot().count("jVector::reserve"), before.count("jVector::reserve") + 1);
    v.release();
    EXPECT_EQ(v.size(), 0);
    EXPECT_EQ(v.capacity(), 0);
    EXPECT_EQ(v.data(), nullptr);
    EXPECT_EQ(jMemRegistry::snapshot(), before);
    v.append(7); // usable again
    EXPECT_EQ(textOf(v), "7 ");
}

TEST_F(jVectorTest, InsertAndRemoveKeepTheOrder)
{
    jVector<int> v = range(4);
    v.insert(0, 10);
    v.insert(2, 11);
    v.insert(6, 12); // at the end
    v.insert(99, 13); // out of range appends
    EXPECT_EQ(textOf(v), "10 0 11 1 2 3 12 13 ");
    EXPECT_TRUE(v.remove(0));
    EXPECT_TRUE(v.remove(6));
    EXPECT_FALSE(v.remove(6));
    EXPECT_FALSE(v.remove(-1));
    EXPECT_EQ(textOf(v), "0 11 1 2 3 12 ");
    EXPECT_TRUE(v.removeValue(2));
    EXPECT_FALSE(v.removeValue(42));
    EXPECT_EQ(v.find(12), 4);
    EXPECT_EQ(v.find(42), -1);
    EXPECT_EQ(textOf(v), "0 11 1 3 12 ");
}

TEST_F(jVectorTest, AnExternalBufferIsUsedUntilGrowthAndNeverFreed)
{
    alignas(jString) unsigned char storage[3 * sizeof(jString)];
    jString* buffer = reinterpret_cast<jString*>(storage);
    jMemSnapshot before = jMemRegistry::snapshot();
    {
        jVector<jString> v(buffer, 3);
        EXPECT_TRUE(v.isExternal());
        v.append("a");
        v.append("b");
        v.append("c");
        EXPECT_EQ(v.data(), buffer);
        EXPECT_EQ(jMemRegistry::snapshot().count("jVector::reserve"), before.count("jVector::reserve"));
        v.append("d");
        EXPECT_NE(v.data(), buffer);
        EXPECT_FALSE(v.isExternal());
        EXPECT_EQ(v.capacity(), 6);
        EXPECT_EQ(v[0], "a");
        EXPECT_EQ(v[3], "d");
    }
    EXPECT_EQ(jMemRegistry::snapshot(), before);
    jVector<int> small(nullptr, 0);
    small.append(1); // grows from an empty external buffer like from nothing
    EXPECT_EQ(small.capacity(), 10);
}

TEST_F(jVectorTest, ElementsLiveExactlyAsLongAsTheyAreHeld)
{
    Tracked::alive = 0;
    {
        jVector<Tracked> v;
        for (int i = 0; i < 25; ++i)
            v.append(Tracked(i));
        EXPECT_EQ(Tracked::alive, 25);
        v.remove(3);
        v.insert(1, Tracked(99));
        EXPECT_EQ(Tracked::alive, 25);
        v.append(v[0]); // a reference into the storage that is about to grow
        EXPECT_EQ(v[25].value, 0);
        EXPECT_EQ(Tracked::alive, 26);
        v.clear();
        EXPECT_EQ(Tracked::alive, 0);
        EXPECT_EQ(v.capacity(), 40);
        v.append(Tracked(1));
    }
    EXPECT_EQ(Tracked::alive, 0);
}

TEST_F(jVectorTest, StringElementsAreFreed)
{
    jVector<jString> names;
    for (int i = 0; i < 30; ++i)
        names.append(jString("a name that needs its own buffer ") + ToString(static_cast<float>(i)));
    names.remove(0);
    names.insert(5, "inserted");
    names.append(names[2]);
    EXPECT_EQ(names[5], "inserted");
    EXPECT_EQ(names[30], names[2]);
    // the fixture fails the test if any of the strings' buffers is still registered at the end
}

TEST_F(jVectorTest, CopiesAreDeepAndMovesTakeTheStorage)
{
    jVector<jString> a;
    a.append("x");
    a.append("y");
    jVector<jString> b(a);
    b[0] = "changed";
    EXPECT_EQ(a[0], "x");
    EXPECT_EQ(b.capacity(), 2);
    const jString* storage = b.data();
    jVector<jString> c(std::move(b));
    EXPECT_EQ(c.data(), storage);
    EXPECT_EQ(b.size(), 0);
    EXPECT_EQ(b.capacity(), 0);
    a = c;
    EXPECT_EQ(a[0], "changed");
    c = std::move(a);
    EXPECT_EQ(c.size(), 2);
    EXPECT_EQ(a.size(), 0);
}

TEST_F(jVectorTest, MovingAVectorOnAnExternalBufferCopiesTheElements)
{
    alignas(int) int buffer[4];
    jVector<int> onStack(buffer, 4);
    onStack.append(5);
    jVector<int> moved(std::move(onStack));
    EXPECT_NE(moved.data(), buffer);
    EXPECT_EQ(textOf(moved), "5 ");
    EXPECT_EQ(onStack.size(), 0);
    EXPECT_EQ(onStack.data(), buffer);
}

TEST_F(jVectorTest, FieldsKeepTheirOrder)
{
    // The type, the external flag, the count, the capacity and the storage follow the virtual table
    // in this order, which code that reads vectors in memory depends on.
    struct Layout {
        void* vtable;
        int type;
        bool external;
        int count;
        int capacity;
        int* data;
    };
    static_assert(sizeof(jVector<int>) == sizeof(Layout));
    jVector<int> v = range(3);
    Layout seen;
    std::memcpy(&seen, static_cast<void*>(&v), sizeof(seen));
    EXPECT_EQ(seen.count, 3);
    EXPECT_EQ(seen.capacity, 10);
    EXPECT_EQ(seen.data, v.data());
    EXPECT_FALSE(seen.external);
}
