#include "kit/jString.h"

#include <string>

#include "support/Scenario.h"

using jStringTest = Scenario;

// Parameter paths and file names are taken apart with these: a failed search gives -1, pieces clamp
// to the text, splits keep or skip empty parts, and a null text counts as empty (it was once read through).
TEST_F(jStringTest, SearchesAndPiecesStayInsideTheText)
{
    jString s("Node.position.x");
    EXPECT_EQ(s.find(".", 5), 13);
    EXPECT_EQ(s.rfind("."), 13);
    EXPECT_EQ(s.find("missing"), -1);
    EXPECT_EQ(s.rfind("a much longer text than s"), -1);
    EXPECT_EQ(s.rfind(nullptr), 15);
    EXPECT_TRUE(s.contain("pos"));
    EXPECT_TRUE(s.contain(jString::null()));
    EXPECT_TRUE(s.lower().contain(jString("POS").lower()));
    EXPECT_EQ(s.substr(5, 100), "position.x");
    EXPECT_TRUE(s.substr(20, 2).empty());
    EXPECT_EQ(jString("C:\\tracks\\run.cycle.anim").baseName(), "run.cycle");
    EXPECT_EQ(jString("noext").baseName(), "noext");
    EXPECT_EQ(jString("data/tracks/walk.anim").dirName(), "data/tracks");
    EXPECT_TRUE(jString("walk.anim").dirName().empty());
    EXPECT_EQ(jString(nullptr, 4), "");
    jVector<jString> parts;
    EXPECT_EQ(jString(".a..b.").splitSelf('.', parts, true), 5);
    EXPECT_EQ(jString(".a..b.").splitSelf('.', parts, false), 2) << "empty parts skipped";
    EXPECT_EQ(parts[6], "b");
}

// Names are built from pieces of themselves; sorted lists rely on the byte-wise order (a prefix
// first); keys show floats in their shortest exact text.
TEST_F(jStringTest, JoiningAssigningOrderAndFloatText)
{
    jString joined = "x" + jString("a") + "." + jString("b");
    joined += 'c';
    joined += static_cast<const char*>(nullptr);
    EXPECT_EQ(joined, "xa.bc");
    joined = joined.c_str() + 3;
    EXPECT_EQ(joined, "bc");
    const jString& same = joined;
    joined = same;
    EXPECT_EQ(joined, "bc");
    EXPECT_TRUE(jString("ab") < jString("abc"));
    EXPECT_FALSE(jString("abc") < jString("abc"));
    EXPECT_FALSE(jString("b") < jString("a"));
    EXPECT_EQ(ToString(0.1f), "0.1");
    EXPECT_EQ(ToString(-1.5f), "-1.5");
    EXPECT_EQ(std::stof(ToString(1.0f / 3.0f).c_str()), 1.0f / 3.0f);
}
