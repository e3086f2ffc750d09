#include <gtest/gtest.h>

#include <random>
#include <set>

#include "../../engine/kit/jPointerTable.h"

namespace {

void* address(uintptr_t a)
{
    return reinterpret_cast<void*>(a);
}

// Compares the table's entries with the set of keys that should be in it.
void expectSame(const jPointerTable<int>& table, const std::set<uintptr_t>& keys)
{
    std::set<uintptr_t> seen;
    table.forEach([&](void* key, int value) {
        EXPECT_EQ(value, static_cast<int>(reinterpret_cast<uintptr_t>(key) % 1000));
        seen.insert(reinterpret_cast<uintptr_t>(key));
    });
    EXPECT_EQ(seen, keys);
    EXPECT_EQ(table.size(), keys.size());
}

} // namespace

TEST(jPointerTable, RefusesAKeyTwiceAndForgetsOnlyWhatItHolds)
{
    jPointerTable<int> table;
    EXPECT_TRUE(table.insert(address(0x1000), 96));
    EXPECT_FALSE(table.insert(address(0x1000), 5));
    EXPECT_FALSE(table.erase(address(0x2000)));
    EXPECT_TRUE(table.erase(address(0x1000)));
    EXPECT_FALSE(table.erase(address(0x1000)));
    EXPECT_EQ(table.size(), 0u);
}

// Neighbouring addresses share table runs; erasing from the middle of a run must leave every later
// entry reachable, also across growth and across the end of the table.
TEST(jPointerTable, KeepsEveryEntryReachableThroughMixedInsertsAndErases)
{
    jPointerTable<int> table;
    std::set<uintptr_t> keys;
    std::mt19937 rng(11);
    std::uniform_int_distribution<uintptr_t> near(0, 1 << 16);
    for (int round = 0; round < 20000; ++round) {
        const uintptr_t a = 0x10000 + near(rng) * 16;
        if (rng() % 3 == 0) {
            EXPECT_EQ(table.erase(address(a)), keys.erase(a) == 1) << round;
        } else {
            EXPECT_EQ(table.insert(address(a), static_cast<int>(a % 1000)), keys.insert(a).second) << round;
        }
    }
    expectSame(table, keys);
    for (uintptr_t a : std::set<uintptr_t>(keys))
        if (a % 32 == 0) {
            EXPECT_TRUE(table.erase(address(a)));
            keys.erase(a);
        }
    expectSame(table, keys);
}
