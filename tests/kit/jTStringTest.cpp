#include "kit/jTString.h"

#include <string>

#include "support/Scenario.h"

using jTStringTest = Scenario;

TEST_F(jTStringTest, TextsShorterThanTheBufferStayInline)
{
    jMemSnapshot before = jMemRegistry::snapshot();
    jTString<8> name("1234567"); // 7 characters and the terminating zero fill the buffer
    EXPECT_TRUE(name.isInline());
    EXPECT_EQ(name.capacity(), 8);
    EXPECT_STREQ(name.c_str(), "1234567");
    EXPECT_EQ(name.length(), 7);
    EXPECT_EQ(jMemRegistry::snapshot(), before);
}

TEST_F(jTStringTest, ALongerTextMovesToABufferOfItsLengthPlusOne)
{
    jTString<8> name("short");
    name = "12345678";
    EXPECT_FALSE(name.isInline());
    EXPECT_EQ(name.capacity(), 9);
    EXPECT_STREQ(name.c_str(), "12345678");
    EXPECT_EQ(jMemRegistry::snapshot().count("jTString::reserve"), 1u);
    name.append("9abc");
    EXPECT_EQ(name.capacity(), 13);
    EXPECT_STREQ(name.c_str(), "123456789abc");
    name = "x"; // a shorter text keeps the buffer it has
    EXPECT_EQ(name.capacity(), 13);
    EXPECT_STREQ(name.c_str(), "x");
}

TEST_F(jTStringTest, PrependBuildsDottedNamesFromTheLeafUp)
{
    jTString<256> name("c");
    for (const char* parent : {"b", "A"}) {
        name.prepend(".");
        name.prepend(parent);
    }
    EXPECT_STREQ(name.c_str(), "A.b.c");
    EXPECT_EQ(name.length(), 5);
    jTString<4> small("leaf");
    small.prepend(jString("root."));
    EXPECT_STREQ(small.c_str(), "root.leaf");
    EXPECT_EQ(small.capacity(), 10);
}

TEST_F(jTStringTest, AppendsTextAndStrings)
{
    jTString<16> name;
    EXPECT_TRUE(name.empty());
    name += "Node";
    name += jString(".position");
    name.append(nullptr);
    EXPECT_STREQ(name.c_str(), "Node.position");
    EXPECT_FALSE(name.empty());
}

TEST_F(jTStringTest, OwnTextCanBeAddedToItself)
{
    jTString<8> name("abc");
    name.append(name.c_str());
    EXPECT_STREQ(name.c_str(), "abcabc");
    name.prepend(name.c_str() + 3);
    EXPECT_STREQ(name.c_str(), "abcabcabc");
    name.assign(name.c_str() + 6);
    EXPECT_STREQ(name.c_str(), "abc");
}

TEST_F(jTStringTest, ConvertsToJString)
{
    jTString<4> name("a.long.name");
    jString text = name;
    EXPECT_EQ(text, "a.long.name");
    EXPECT_EQ(jTString<32>(jString("x")).toString(), "x");
}

TEST_F(jTStringTest, CopiesAndMovesKeepTheirOwnText)
{
    jTString<4> inlineText("ab");
    jTString<4> heapText("abcdef");
    jTString<4> copy(heapText);
    copy.append("g");
    EXPECT_STREQ(heapText.c_str(), "abcdef");
    jTString<4> moved(std::move(heapText));
    EXPECT_STREQ(moved.c_str(), "abcdef");
    EXPECT_TRUE(heapText.empty());
    jTString<4> movedInline(std::move(inlineText));
    EXPECT_STREQ(movedInline.c_str(), "ab");
    EXPECT_TRUE(movedInline.isInline());
    copy = movedInline;
    EXPECT_STREQ(copy.c_str(), "ab");
    moved = std::move(copy);
    EXPECT_STREQ(moved.c_str(), "ab");
}
