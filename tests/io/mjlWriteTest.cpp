#include "io/mjl.h"

#include <cmath>
#include <limits>
#include <string>

#include "support/Scenario.h"

namespace {

class mjlWrite : public Scenario {
protected:
    // Returns the canonical text of root, failing the test when writing fails.
    static std::string text(const Package& root)
    {
        std::string out;
        std::string error;
        EXPECT_TRUE(mjl::write(&root, out, &error)) << error;
        return out;
    }
    // Returns the canonical text of a number.
    static std::string number(double value)
    {
        Package root;
        root.setDouble(value);
        return text(root);
    }
    // Returns the error of a write that must fail.
    static std::string failure(const Package& root)
    {
        std::string out;
        std::string error;
        EXPECT_FALSE(mjl::write(&root, out, &error));
        return error;
    }
};

} // namespace

TEST_F(mjlWrite, IndentsMembersInTreeOrderWithScalarArraysOnOneLine)
{
    Package root;
    root.addString("name", "walk");
    root.addBool("loop", false);
    Package* keys = root.addArray("keys");
    Package* key = keys->addArray(nullptr);
    key->addInt(nullptr, 0);
    key->addDouble(nullptr, 1.5);
    key->addInt(nullptr, 0);
    keys->addArray(nullptr)->addDouble(nullptr, 2.0);
    root.addObject("meta");
    root.addArray("empty");
    root.add("none");
    Package* nested = root.addObject("nested");
    nested->addInt("depth", 2);
    EXPECT_EQ(text(root), "{\n"
                          "  \"name\": \"walk\",\n"
                          "  \"loop\": false,\n"
                          "  \"keys\": [\n"
                          "    [0, 1.5, 0],\n"
                          "    [2.0]\n"
                          "  ],\n"
                          "  \"meta\": {},\n"
                          "  \"empty\": [],\n"
                          "  \"none\": null,\n"
                          "  \"nested\": {\n"
                          "    \"depth\": 2\n"
                          "  }\n"
                          "}\n");
}

TEST_F(mjlWrite, ScalarRootsAndEmptyContainersTakeOneLine)
{
    Package root;
    EXPECT_EQ(text(root), "null\n");
    root.setInt(-7);
    EXPECT_EQ(text(root), "-7\n");
    root.setArray();
    EXPECT_EQ(text(root), "[]\n");
    root.setObject();
    EXPECT_EQ(text(root), "{}\n");
    std::string out;
    EXPECT_TRUE(mjl::write(nullptr, out));
    EXPECT_EQ(out, "null\n");
}

TEST_F(mjlWrite, AnArrayHoldingAContainerPutsEveryElementOnItsOwnLine)
{
    Package root;
    root.addInt(nullptr, 1);
    root.addArray(nullptr);
    root.addString(nullptr, "x");
    EXPECT_EQ(text(root), "[\n  1,\n  [],\n  \"x\"\n]\n");
}

TEST_F(mjlWrite, DoublesUseTheShortestTextThatReadsBackExactly)
{
    EXPECT_EQ(number(0.1), "0.1\n");
    EXPECT_EQ(number(1.0), "1.0\n");
    EXPECT_EQ(number(-0.0), "-0.0\n");
    EXPECT_EQ(number(0.30000000000000004), "0.30000000000000004\n");
    EXPECT_EQ(number(1e-300), "1e-300\n");
    EXPECT_EQ(number(123456789.0), "123456789.0\n");
    EXPECT_EQ(number(1.7976931348623157e308), "1.7976931348623157e+308\n");
    EXPECT_EQ(number(5e-324), "5e-324\n");
}

TEST_F(mjlWrite, IntegersAreWrittenWhole)
{
    Package root;
    root.addInt(nullptr, INT64_MIN);
    root.addInt(nullptr, INT64_MAX);
    root.addInt(nullptr, 9007199254740993);
    EXPECT_EQ(text(root), "[-9223372036854775808, 9223372036854775807, 9007199254740993]\n");
}

TEST_F(mjlWrite, EscapesStringsAndKeepsUtf8AsIs)
{
    Package root;
    root.addString("quote\"", "a\"b\\c/d\b\f\n\r\t\x01\x1f\x7f");
    root.addString("utf8", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
    root.find("utf8")->setString("\xC3\xA9\0\xE2\x82\xAC", 6);
    EXPECT_EQ(text(root), "{\n"
                          "  \"quote\\\"\": \"a\\\"b\\\\c/d\\b\\f\\n\\r\\t\\u0001\\u001f\x7f\",\n"
                          "  \"utf8\": \"\xC3\xA9\\u0000\xE2\x82\xAC\"\n"
                          "}\n");
}

TEST_F(mjlWrite, ANonFiniteNumberFailsNamingTheMember)
{
    Package root;
    Package* keys = root.addObject("track")->addArray("keys");
    keys->addArray(nullptr)->addDouble(nullptr, 1.0);
    Package* key = keys->addArray(nullptr);
    key->addDouble(nullptr, 0.0);
    key->addDouble(nullptr, std::numeric_limits<double>::infinity());
    EXPECT_EQ(failure(root), "track.keys[1][1] is not a finite number");

    Package scalar;
    scalar.setDouble(std::nan(""));
    EXPECT_EQ(failure(scalar), "the root is not a finite number");
}

TEST_F(mjlWrite, StringsThatAreNotUtf8FailNamingTheMember)
{
    Package root;
    root.addString("bad", "\xC3\x28");
    EXPECT_EQ(failure(root), "bad holds a string that is not valid UTF-8");
    root.clear();
    root.addString("overlong", "\xC0\xAF");
    EXPECT_EQ(failure(root), "overlong holds a string that is not valid UTF-8");
    root.clear();
    root.addString("truncated", "\xE2\x82");
    EXPECT_EQ(failure(root), "truncated holds a string that is not valid UTF-8");
}

TEST_F(mjlWrite, ALoneLowSurrogateIsWrittenAsAnEscapeThatReadsBackTheSameBytes)
{
    mjl reader;
    const char json[] = "[\"\\udc00x\", \"\\uDFAA\\uDd1e\"]";
    ASSERT_TRUE(reader.parse(json, sizeof json - 1, "surrogate"));
    EXPECT_EQ(text(*reader.getRoot()), "[\"\\udc00x\", \"\\udfaa\\udd1e\"]\n");
}

TEST_F(mjlWrite, NestingDeeperThanTheReaderAcceptsFails)
{
    Package root;
    Package* node = &root;
    for (int i = 0; i < mjl::MAX_DEPTH; ++i)
        node = node->addArray(nullptr);
    EXPECT_NE(failure(root).find("nests deeper than 512 levels"), std::string::npos);
}
