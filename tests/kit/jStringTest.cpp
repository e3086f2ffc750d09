#include "kit/jString.h"

#include "support/Scenario.h"

using jStringTest = Scenario;

TEST_F(jStringTest, SearchesReturnPositionsOrMinusOne)
{
    jString s("Node.position.x");
    EXPECT_EQ(s.find("."), 4);
    EXPECT_EQ(s.find(".", 5), 13);
    EXPECT_EQ(s.rfind("."), 13);
    EXPECT_EQ(s.rfind("missing"), -1);
    EXPECT_EQ(s.find("missing"), -1);
    EXPECT_EQ(jString().rfind("a"), -1);
    EXPECT_TRUE(s.contain("pos"));
    EXPECT_TRUE(s.contain(jString::null()));
    EXPECT_FALSE(s.contain("POS"));
    EXPECT_TRUE(s.lower().contain(jString("POS").lower()));
}

TEST_F(jStringTest, SubstringsClampToTheText)
{
    jString s("material");
    EXPECT_EQ(s.substr(4), "rial");
    EXPECT_EQ(s.substr(0, 3), "mat");
    EXPECT_EQ(s.substr(6, 100), "al");
    EXPECT_TRUE(s.substr(8).empty());
    EXPECT_TRUE(s.substr(20, 2).empty());
    EXPECT_TRUE(s.substr(2, 0).empty());
}

TEST_F(jStringTest, CaseAndConcatenation)
{
    jString s("Light.Color");
    jString low = s.lower();
    EXPECT_EQ(low, "light.color");
    EXPECT_EQ(s, "Light.Color");
    s.lowerSelf();
    EXPECT_EQ(s, "light.color");
    jString joined = jString("a") + "." + jString("b");
    joined += "c";
    joined += 'd';
    EXPECT_EQ(joined, "a.bcd");
    EXPECT_EQ("x" + jString("y"), "xy");
    EXPECT_EQ(joined.length(), 5);
    EXPECT_TRUE(joined.nempty());
    EXPECT_TRUE(jString::null().empty());
}

TEST_F(jStringTest, SplitKeepsOrAndSkipsEmptyParts)
{
    jVector<jString> parts;
    EXPECT_EQ(jString("A.b.c").splitSelf('.', parts, false), 3);
    ASSERT_EQ(parts.size(), 3);
    EXPECT_EQ(parts[0], "A");
    EXPECT_EQ(parts[2], "c");
    parts.release();
    EXPECT_EQ(jString(".a..b.").splitSelf('.', parts, true), 5);
    EXPECT_EQ(parts[1], "a");
    EXPECT_TRUE(parts[2].empty());
    parts.release();
    EXPECT_EQ(jString(".a..b.").splitSelf('.', parts, false), 2);
    EXPECT_EQ(jString("plain").splitSelf('.', parts, false), 1);
    EXPECT_EQ(parts[2], "plain");
}

TEST_F(jStringTest, PathPieces)
{
    EXPECT_EQ(jString("data/tracks/walk.anim").baseName(), "walk");
    EXPECT_EQ(jString("walk.cycle.anim").baseName(), "walk.cycle");
    EXPECT_EQ(jString("C:\\tracks\\run.anim").baseName(), "run");
    EXPECT_EQ(jString("noext").baseName(), "noext");
    EXPECT_EQ(jString("data/tracks/walk.anim").dirName(), "data/tracks");
    EXPECT_TRUE(jString("walk.anim").dirName().empty());
}

TEST_F(jStringTest, OrderIsStrictAndTotal)
{
    EXPECT_TRUE(jString("a") < jString("b"));
    EXPECT_TRUE(jString("ab") < jString("abc"));
    EXPECT_FALSE(jString("abc") < jString("abc"));
    EXPECT_FALSE(jString("b") < jString("a"));
    EXPECT_TRUE(jString() < jString("a"));
}

TEST_F(jStringTest, CopiesAndSelfAssignmentKeepTheText)
{
    jString a("shared text");
    jString b(a);
    b += "!";
    EXPECT_EQ(a, "shared text");
    const jString& same = a;
    a = same;
    EXPECT_EQ(a, "shared text");
    a = a.c_str() + 7;
    EXPECT_EQ(a, "text");
    jString moved(std::move(b));
    EXPECT_EQ(moved, "shared text!");
}

TEST_F(jStringTest, FloatTextIsShortestExact)
{
    EXPECT_EQ(ToString(0.1f), "0.1");
    EXPECT_EQ(ToString(2.0f), "2");
    EXPECT_EQ(ToString(-1.5f), "-1.5");
    EXPECT_EQ(std::stof(ToString(1.0f / 3.0f).c_str()), 1.0f / 3.0f);
}

TEST_F(jStringTest, NullTextCountsAsEmpty)
{
    jString s("abc");
    EXPECT_EQ(s.rfind(nullptr), s.rfind(""));
    EXPECT_EQ(s.rfind(""), 3);
    EXPECT_EQ(s.find(nullptr), 0);
    EXPECT_EQ(jString(nullptr, 4), "");
    EXPECT_EQ(jString(nullptr), "");
    s += static_cast<const char*>(nullptr);
    EXPECT_EQ(s, "abc");
    s = static_cast<const char*>(nullptr);
    EXPECT_TRUE(s.empty());
}
