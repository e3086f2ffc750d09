#include "io/mjl.h"

#include <cmath>
#include <string>

#include "support/Scenario.h"

// Hand-written files in the canonical layout: reading and saving one must give back its bytes.
namespace {

class GoldenFiles : public Scenario {
protected:
    static std::string golden(const char* name) { return std::string(KUVO_TESTS_DIR) + "/io/golden/" + name; }

    // Opens the golden file, saves it to a temporary folder and returns the saved text.
    std::string resaved(const char* name)
    {
        mjl reader;
        EXPECT_TRUE(reader.open(golden(name).c_str())) << reader.getError();
        std::string copy = dir.file(name);
        EXPECT_TRUE(mjl::save(copy.c_str(), reader.getRoot()));
        return readFileText(copy);
    }

    TempDir dir;
};

} // namespace

TEST_F(GoldenFiles, EachFileRoundTripsByteForByte)
{
    for (const char* name : {"track.json", "unicode.json", "numbers.json"}) {
        std::string original = readFileText(golden(name));
        ASSERT_NE(original, "<missing>") << name;
        EXPECT_EQ(resaved(name), original) << name;
    }
}

TEST_F(GoldenFiles, TheTrackReadsAsItsValues)
{
    mjl reader;
    ASSERT_TRUE(reader.open(golden("track.json").c_str()));
    Package* root = reader.getRoot();
    EXPECT_STREQ(root->find("name")->getString(), "walk_cycle");
    EXPECT_EQ(root->find("fps")->getType(), Package::DOUBLE);
    Package* keys = root->find("tracks")->getChild(0)->find("params")->getChild(1)->find("keys");
    ASSERT_EQ(keys->getNumChildren(), 2);
    EXPECT_EQ(keys->getChild(1)->getChild(0)->getInt(), 48);
    EXPECT_EQ(keys->getChild(1)->getChild(1)->getDouble(), -0.3490658503988659);
    EXPECT_EQ(keys->getChild(1)->getLine(), 28);
    EXPECT_EQ(keys->getChild(1)->getColumn(), 13);
    EXPECT_TRUE(root->find("tracks")->getChild(1)->find("events")->getChild(0)->find("payload")->isNull());
}

TEST_F(GoldenFiles, NumbersKeepTheirTypeAndExactValue)
{
    mjl reader;
    ASSERT_TRUE(reader.open(golden("numbers.json").c_str()));
    Package* root = reader.getRoot();
    Package* integers = root->find("integers");
    EXPECT_EQ(integers->getChild(4)->getInt(), 9007199254740993);
    EXPECT_EQ(integers->getChild(6)->getInt(), INT64_MAX);
    EXPECT_EQ(integers->getChild(7)->getInt(), INT64_MIN);
    Package* doubles = root->find("doubles");
    EXPECT_TRUE(std::signbit(doubles->getChild(1)->getDouble()));
    EXPECT_EQ(doubles->getChild(2)->getDouble(), 0.1);
    EXPECT_EQ(root->find("small")->getChild(1)->getDouble(), 5e-324);
    Package* mixed = root->find("mixed");
    EXPECT_EQ(mixed->getChild(0)->getType(), Package::INT);
    EXPECT_EQ(mixed->getChild(1)->getType(), Package::DOUBLE);
}

TEST_F(GoldenFiles, NonCanonicalNumbersSettleOnTheirCanonicalForm)
{
    const char text[] = "[123456789012345678901234567890, 18446744073709551615, 1E2, 0.10, -0, 1.5e-0]";
    mjl reader;
    ASSERT_TRUE(reader.parse(text, sizeof text - 1, "numbers"));
    std::string once;
    ASSERT_TRUE(mjl::write(reader.getRoot(), once));
    EXPECT_EQ(once, "[1.2345678901234568e+29, 18446744073709551616.0, 100.0, 0.1, 0, 1.5]\n");
    ASSERT_TRUE(reader.parse(once.data(), once.size(), "once"));
    std::string twice;
    ASSERT_TRUE(mjl::write(reader.getRoot(), twice));
    EXPECT_EQ(twice, once);
}
