#include "kit/jMap.h"

#include <string>
#include <vector>

#include "kit/jString.h"
#include "support/Scenario.h"

using jMapTest = Scenario;

namespace {

std::string keysOf(const jMap<jString, int>& map)
{
    std::string text;
    for (auto [key, value] : map)
        text += std::string(key.c_str()) + "=" + std::to_string(value) + " ";
    return text;
}

} // namespace

TEST_F(jMapTest, IteratesKeysAscendingWithTheirValues)
{
    jMap<jString, int> items;
    items.insert("Node.scale", 3);
    items.insert("Light", 1);
    items.insert("Node", 2);
    items.insert("Node.position", 4);
    items.insert("Camera.fov", 0);
    EXPECT_EQ(keysOf(items), "Camera.fov=0 Light=1 Node=2 Node.position=4 Node.scale=3 ");
}

TEST_F(jMapTest, LookupGivesTheValueOrNull)
{
    jMap<jString, int> items;
    items.insert("a", 1);
    ASSERT_NE(items.lookup("a"), nullptr);
    EXPECT_EQ(*items.lookup("a"), 1);
    EXPECT_EQ(items.lookup("b"), nullptr);
    *items.lookup("a") = 5;
    const jMap<jString, int>& view = items;
    EXPECT_EQ(*view.lookup("a"), 5);
    EXPECT_TRUE(view.contains("a"));
    EXPECT_FALSE(view.contains("A"));
}

TEST_F(jMapTest, InsertReplacesTheValueOfAnExistingKey)
{
    jMap<jString, int> items;
    EXPECT_TRUE(items.insert("a", 1));
    EXPECT_FALSE(items.insert("a", 2));
    EXPECT_EQ(items.size(), 1);
    EXPECT_EQ(*items.lookup("a"), 2);
}

TEST_F(jMapTest, IndexingInsertsADefaultValueWhenAbsent)
{
    jMap<jString, int> counts;
    EXPECT_EQ(counts["x"], 0);
    EXPECT_EQ(counts.size(), 1);
    counts["x"] += 2;
    counts["y"] = 7;
    EXPECT_EQ(counts["x"], 2);
    EXPECT_EQ(keysOf(counts), "x=2 y=7 ");
    jMap<int, jString> names;
    EXPECT_TRUE(names[4].empty());
}

TEST_F(jMapTest, EraseRemovesOnlyPresentKeys)
{
    jMap<jString, int> items;
    items.insert("a", 1);
    items.insert("b", 2);
    EXPECT_FALSE(items.erase("c"));
    EXPECT_EQ(items.size(), 2);
    EXPECT_TRUE(items.erase("a"));
    EXPECT_EQ(items.lookup("a"), nullptr);
    EXPECT_EQ(keysOf(items), "b=2 ");
}

TEST_F(jMapTest, IteratorsCanChangeValues)
{
    jMap<int, jString> names;
    names[2] = "two";
    names[1] = "one";
    for (auto it = names.begin(); it != names.end(); ++it)
        it.value() += jString("!") + ToString(static_cast<float>(it.key()));
    EXPECT_EQ(*names.lookup(1), "one!1");
    EXPECT_EQ(*names.lookup(2), "two!2");
}

TEST_F(jMapTest, StringKeysAndValuesAreFreedWithTheMap)
{
    jMemSnapshot before = jMemRegistry::snapshot();
    {
        jMap<jString, jString> paths;
        for (int i = 0; i < 20; ++i)
            paths[jString("item") + ToString(static_cast<float>(i))] = "a value long enough";
        paths.erase("item3");
        jMap<jString, jString> copy(paths);
        EXPECT_EQ(copy.size(), 19);
        EXPECT_NE(jMemRegistry::snapshot(), before);
    }
    EXPECT_EQ(jMemRegistry::snapshot(), before);
}
