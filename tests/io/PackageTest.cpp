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

