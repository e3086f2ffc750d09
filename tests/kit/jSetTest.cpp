#include "kit/jSet.h"

#include <random>
#include <set>
#include <vector>

#include "kit/jString.h"
#include "support/Scenario.h"

using jSetTest = Scenario;

namespace {

template <class K>
std::vector<K> itemsOf(const jSet<K>& set)
{
    std::vector<K> items;
    for (const K& key : set)
        items.push_back(key);
    return items;
}

} // namespace

TEST_F(jSetTest, InsertTellsWhetherTheKeyWasNew)
{
    jSet<int> set;
    EXPECT_TRUE(set.insert(3));
    EXPECT_TRUE(set.insert(1));
    EXPECT_FALSE(set.insert(3));
    EXPECT_EQ(set.size(), 2);
    EXPECT_TRUE(set.contains(1));
    EXPECT_FALSE(set.contains(2));
}

TEST_F(jSetTest, IteratesAscending)
{
    jSet<jString> set;
    for (const char* name : {"pear", "apple", "fig", "apple", "banana"})
        set.insert(name);
    std::vector<jString> items = itemsOf(set);
    ASSERT_EQ(items.size(), 4u);
    EXPECT_EQ(items[0], "apple");
    EXPECT_EQ(items[1], "banana");
    EXPECT_EQ(items[2], "fig");
    EXPECT_EQ(items[3], "pear");
}

TEST_F(jSetTest, EraseOfPresentAndAbsentKeys)
{
    jSet<int> set;
    set.insert(1);
    set.insert(2);
    EXPECT_FALSE(set.erase(5));
    EXPECT_TRUE(set.erase(1));
    EXPECT_FALSE(set.contains(1));
    EXPECT_EQ(itemsOf(set), std::vector<int>{2});
}

TEST_F(jSetTest, MatchesStdSetUnderRandomUse)
{
    std::mt19937 random(7);
    jSet<int> set;
    std::set<int> reference;
    for (int step = 0; step < 3000; ++step) {
        int key = static_cast<int>(random() % 500);
        if (random() % 2)
            EXPECT_EQ(set.insert(key), reference.insert(key).second);
        else
            EXPECT_EQ(set.erase(key), reference.erase(key) == 1);
    }
    EXPECT_EQ(itemsOf(set), std::vector<int>(reference.begin(), reference.end()));
    set.release();
    EXPECT_EQ(set.size(), 0);
    EXPECT_TRUE(itemsOf(set).empty());
}
