#include "io/Package.h"

#include <cmath>
#include <cstring>
#include <string>

#include "kit/jMemRegistry.h"
#include "support/Scenario.h"

using PackageTest = Scenario;

namespace {

std::string keyName(int i)
{
    std::string name = std::to_string(i);
    name.insert(name.begin(), 'k');
    return name;
}

} // namespace

TEST_F(PackageTest, NewRootIsNullWithoutNameOrPosition)
{
    Package root;
    EXPECT_EQ(root.getType(), Package::NUL);
    EXPECT_TRUE(root.isNull());
    EXPECT_STREQ(root.getName(), "");
    EXPECT_EQ(root.getNameLength(), 0);
    EXPECT_EQ(root.getLine(), 0);
    EXPECT_EQ(root.getColumn(), 0);
    EXPECT_EQ(root.getNumChildren(), 0);
    EXPECT_EQ(root.getChild(0), nullptr);
}

TEST_F(PackageTest, SettersReplaceTypeAndValue)
{
    Package node;
    node.setBool(true);
    EXPECT_TRUE(node.isBool());
    EXPECT_TRUE(node.getBool());
    node.setInt(-42);
    EXPECT_EQ(node.getType(), Package::INT);
    EXPECT_TRUE(node.isNumber());
    EXPECT_EQ(node.getInt(), -42);
    node.setDouble(2.5);
    EXPECT_EQ(node.getType(), Package::DOUBLE);
    EXPECT_EQ(node.getDouble(), 2.5);
    node.setString("walk");
    EXPECT_TRUE(node.isString());
    EXPECT_STREQ(node.getString(), "walk");
    EXPECT_EQ(node.getStringLength(), 4);
    node.setNull();
    EXPECT_TRUE(node.isNull());
}

TEST_F(PackageTest, NumbersConvertBothWaysAndDoublesTruncate)
{
    Package node;
    node.setInt(7);
    EXPECT_EQ(node.getDouble(), 7.0);
    node.setDouble(-3.9);
    EXPECT_EQ(node.getInt(), -3);
    node.setDouble(1e300);
    EXPECT_EQ(node.getInt(), INT64_MAX);
    node.setDouble(-1e300);
    EXPECT_EQ(node.getInt(), INT64_MIN);
}

TEST_F(PackageTest, GettersOfAnotherTypeReturnTheFallback)
{
    Package node;
    node.setString("12");
    EXPECT_EQ(node.getInt(99), 99);
    EXPECT_EQ(node.getDouble(0.5), 0.5);
    EXPECT_TRUE(node.getBool(true));
    node.setInt(1);
    EXPECT_FALSE(node.getBool(false));
    EXPECT_STREQ(node.getString(), "");
    EXPECT_EQ(node.getStringLength(), 0);
    node.setDouble(std::nan(""));
    EXPECT_EQ(node.getInt(-5), -5);
}

TEST_F(PackageTest, StringsKeepZeroBytesAndTheirLength)
{
    Package node;
    node.setString("a\0b", 3);
    ASSERT_EQ(node.getStringLength(), 3);
    EXPECT_EQ(std::string(node.getString(), 3), std::string("a\0b", 3));
    node.setString(nullptr);
    EXPECT_TRUE(node.isString());
    EXPECT_EQ(node.getStringLength(), 0);
}

TEST_F(PackageTest, SettingAStringFromItselfKeepsTheText)
{
    Package node;
    node.setString("looping");
    node.setString(node.getString() + 1, 3);
    EXPECT_STREQ(node.getString(), "oop");
}

TEST_F(PackageTest, AddOnNullWithANameMakesAnObject)
{
    Package root;
    Package* speed = root.addDouble("speed", 1.5);
    ASSERT_NE(speed, nullptr);
    EXPECT_TRUE(root.isObject());
    EXPECT_STREQ(speed->getName(), "speed");
    EXPECT_EQ(speed->getNameLength(), 5);
    EXPECT_EQ(root.find("speed"), speed);
    EXPECT_EQ(root.find("missing"), nullptr);
}

TEST_F(PackageTest, AddOnNullWithoutANameMakesAnArrayOfUnnamedElements)
{
    Package root;
    root.addInt(nullptr, 1);
    root.addInt("ignored", 2);
    EXPECT_TRUE(root.isArray());
    ASSERT_EQ(root.getNumChildren(), 2);
    EXPECT_STREQ(root.getChild(1)->getName(), "");
    EXPECT_EQ(root.getChild(1)->getInt(), 2);
    EXPECT_EQ(root.find("ignored"), nullptr);
}

TEST_F(PackageTest, ChildrenKeepTheirOrderAndAddressesWhileTheArrayGrows)
{
    Package root;
    Package* first = root.addInt("k0", 0);
    for (int i = 1; i < 1000; ++i)
        root.addInt(keyName(i).c_str(), i);
    ASSERT_EQ(root.getNumChildren(), 1000);
    EXPECT_EQ(root.getChild(0), first);
    for (int i = 0; i < 1000; ++i) {
        EXPECT_EQ(root.getChild(i)->getInt(), i);
        EXPECT_EQ(std::string(root.getChild(i)->getName()), keyName(i));
    }
    EXPECT_EQ(root.getChild(1000), nullptr);
    EXPECT_EQ(root.getChild(-1), nullptr);
}

TEST_F(PackageTest, RepeatedNamesAreKeptAndFindReturnsTheFirst)
{
    Package root;
    Package* a = root.addString("key", "first");
    root.addString("key", "second");
    EXPECT_EQ(root.getNumChildren(), 2);
    EXPECT_EQ(root.find("key"), a);
    EXPECT_STREQ(root.getChild(1)->getString(), "second");
}

TEST_F(PackageTest, NestedContainersHoldTheirOwnChildren)
{
    Package root;
    Package* keys = root.addArray("keys");
    Package* key = keys->addArray(nullptr);
    key->addDouble(nullptr, 0.25);
    key->addDouble(nullptr, 1.0);
    Package* meta = root.addObject("meta");
    meta->addBool("visible", true);
    EXPECT_EQ(root.find("keys")->getChild(0)->getChild(1)->getDouble(), 1.0);
    EXPECT_TRUE(root.find("meta")->find("visible")->getBool());
    EXPECT_EQ(root.find("meta")->getNumChildren(), 1);
}

TEST_F(PackageTest, AddOnAScalarLogsAndReturnsNull)
{
    Package root;
    root.setInt(3);
    EXPECT_EQ(root.add("x"), nullptr);
    expectLogged("Package::add:cannot add a child to a node of type int");
    root.setString("s");
    EXPECT_EQ(root.addDouble(nullptr, 1.0), nullptr);
    expectLogged("node of type string");
    EXPECT_TRUE(root.isString());
}

TEST_F(PackageTest, SettingAContainerDropsItsChildren)
{
    Package root;
    Package* list = root.addArray("list");
    list->addInt(nullptr, 1);
    list->setArray();
    EXPECT_EQ(list->getNumChildren(), 0);
    list->setInt(5);
    EXPECT_EQ(list->getNumChildren(), 0);
    EXPECT_EQ(list->getChild(0), nullptr);
}

TEST_F(PackageTest, ClearOnAChildOnlyResetsItsValue)
{
    Package root;
    Package* child = root.addObject("child");
    child->addInt("x", 1);
    child->clear();
    EXPECT_TRUE(child->isNull());
    EXPECT_STREQ(child->getName(), "child");
    EXPECT_EQ(root.getNumChildren(), 1);
}

TEST_F(PackageTest, RootClearFreesItsArenaAndBalancesTheRegistry)
{
    jMemSnapshot before = jMemRegistry::snapshot();
    Package root;
    for (int i = 0; i < 5000; ++i)
        root.addString("name", "a string long enough to need several chunks");
    jMemSnapshot filled = jMemRegistry::snapshot();
    EXPECT_GT(filled.count("PackageArena::allocate"), 1u);
    EXPECT_EQ(filled.count("Package::arena"), before.count("Package::arena") + 1);
    root.clear();
    EXPECT_TRUE(root.isNull());
    EXPECT_EQ(jMemRegistry::snapshot().changesSince(before), "");
    root.addInt("again", 1);
    EXPECT_EQ(root.find("again")->getInt(), 1);
}

TEST_F(PackageTest, DestroyingARootFreesEverything)
{
    jMemSnapshot before = jMemRegistry::snapshot();
    {
        Package root;
        root.addArray("a")->addObject(nullptr)->addString("s", "text");
        EXPECT_NE(jMemRegistry::snapshot().changesSince(before), "");
    }
    EXPECT_EQ(jMemRegistry::snapshot().changesSince(before), "");
}

TEST_F(PackageTest, EqualsComparesTypesNamesValuesAndOrder)
{
    Package a;
    Package b;
    a.addInt("x", 1);
    a.addString("y", "two");
    b.addInt("x", 1);
    b.addString("y", "two");
    EXPECT_TRUE(a.equals(b));
    b.find("y")->setString("Two");
    EXPECT_FALSE(a.equals(b));

    Package c;
    c.addString("y", "two");
    c.addInt("x", 1);
    EXPECT_FALSE(a.equals(c)) << "order matters";

    Package d;
    d.addInt("x", 1);
    d.addString("z", "two");
    EXPECT_FALSE(a.equals(d)) << "names matter";
}

TEST_F(PackageTest, EqualsTreatsIntAndDoubleOfTheSameValueAsEqual)
{
    Package a;
    Package b;
    a.setInt(3);
    b.setDouble(3.0);
    EXPECT_TRUE(a.equals(b));
    EXPECT_TRUE(b.equals(a));
    b.setDouble(3.5);
    EXPECT_FALSE(a.equals(b));
    a.setInt(9007199254740993); // 2^53 + 1 has no exact double
    b.setDouble(9007199254740992.0);
    EXPECT_FALSE(a.equals(b));
    a.setBool(true);
    b.setInt(1);
    EXPECT_FALSE(a.equals(b));
}

TEST_F(PackageTest, EqualsComparesASubtreeWithARootRegardlessOfItsName)
{
    Package doc;
    doc.addObject("part")->addInt("n", 4);
    Package copy;
    copy.addInt("n", 4);
    EXPECT_TRUE(doc.find("part")->equals(copy));
}
