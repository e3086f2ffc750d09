#include "kit/jMemRegistry.h"

#include <string>

#include "kit/jAllocator.h"
#include "support/Scenario.h"

namespace {

struct Widget {
    int a = 1;
    double b = 2.0;
};

} // namespace

using jMemRegistryTest = Scenario;

TEST_F(jMemRegistryTest, SnapshotCountsLiveAllocationsPerTag)
{
    jMemSnapshot before = jMemRegistry::snapshot();
    Widget* w1 = jNew<Widget>("tests/kit/jMemRegistryTest", __LINE__, "Test::makeWidget");
    Widget* w2 = jNew<Widget>("tests/kit/jMemRegistryTest", __LINE__, "Test::makeWidget");
    void* raw = jAllocator::get()->localAlloc(64);
    memAddInfo(raw, true, "tests/kit/jMemRegistryTest", __LINE__, "Test::makeBuffer", 64);
    jMemSnapshot during = jMemRegistry::snapshot();
    EXPECT_EQ(during.count("Test::makeWidget"), 2u);
    EXPECT_EQ(during.count("Test::makeBuffer"), 1u);
    EXPECT_EQ(during.count("Test::unknownTag"), 0u);
    EXPECT_EQ(during.total(), before.total() + 3);
    EXPECT_EQ(jMemRegistry::liveCount(), before.total() + 3);
    EXPECT_EQ(during.changesSince(before), "Test::makeBuffer: +1\nTest::makeWidget: +2\n");
    jDelete(w1, "tests/kit/jMemRegistryTest", __LINE__, "Test::dropWidget");
    memRemoveInfo(raw, "tests/kit/jMemRegistryTest", __LINE__, "Test::dropBuffer");
    jAllocator::get()->localFree(raw);
    EXPECT_EQ(before.changesSince(jMemRegistry::snapshot()), "Test::makeWidget: -1\n");
    jDelete(w2, "tests/kit/jMemRegistryTest", __LINE__, "Test::dropWidget");
    EXPECT_EQ(jMemRegistry::snapshot(), before);
    EXPECT_EQ(jMemRegistry::snapshot().changesSince(before), "");
}

TEST_F(jMemRegistryTest, LeakReportNamesTagFileAndLine)
{
    Widget* leaked = jNew<Widget>("src/ui/SettingsPanel", 120, "SettingsPanel::open");
    char* buffer = static_cast<char*>(jAllocator::get()->localAlloc(10));
    memAddInfo(buffer, true, "kit/jString", 7, "jString::reserve", 10);
    std::string report = jMemRegistry::leakReport();
    std::string widgetLine = "SettingsPanel::open (src/ui/SettingsPanel:120) " + std::to_string(sizeof(Widget)) +
                             " bytes object\n";
    std::string bufferLine = "jString::reserve (kit/jString:7) 10 bytes buffer\n";
    size_t widgetAt = report.find(widgetLine);
    size_t bufferAt = report.find(bufferLine);
    EXPECT_NE(widgetAt, std::string::npos) << report;
    EXPECT_NE(bufferAt, std::string::npos) << report;
    EXPECT_LT(widgetAt, bufferAt); // in the order they were made
    jDelete(leaked, "src/ui/SettingsPanel", 130, "SettingsPanel::close");
    memRemoveInfo(buffer, "kit/jString", 8, "jString::release");
    jAllocator::get()->localFree(buffer);
    EXPECT_EQ(jMemRegistry::leakReport().find("SettingsPanel::open"), std::string::npos);
}

TEST_F(jMemRegistryTest, RegisteringTwiceIsLoggedAndKeepsTheFirstRecord)
{
    int object = 0;
    memAddInfo(&object, false, "tests/first", 1, "Test::first", sizeof(object));
    memAddInfo(&object, false, "tests/second", 2, "Test::second", sizeof(object));
    expectLogged("registered twice (Test::second at tests/second:2)");
    EXPECT_EQ(jMemRegistry::snapshot().count("Test::first"), 1u);
    EXPECT_EQ(jMemRegistry::snapshot().count("Test::second"), 0u);
    memRemoveInfo(&object, "tests/first", 3, "Test::done");
}

// Not a Scenario: the fixture rightly fails any test that unregisters an unknown pointer, and
// here that is the behaviour under test.
TEST(jMemRegistryUnknown, RemovingAnUnknownPointerIsLoggedAndCounted)
{
    bool wasStderr = jLog::setStderr(false);
    jLogBuffer log;
    size_t before = jMemRegistry::unknownRemovals();
    jMemSnapshot live = jMemRegistry::snapshot();
    int stranger = 0;
    memRemoveInfo(&stranger, "src/ui/TrackEditor", 88, "TrackEditor::release");
    EXPECT_EQ(jMemRegistry::unknownRemovals(), before + 1);
    EXPECT_EQ(jMemRegistry::snapshot(), live);
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_EQ(log.lines()[0].level, jLogLevel::Error);
    EXPECT_TRUE(log.contains("memRemoveInfo:unknown pointer")) << log.dump();
    EXPECT_TRUE(log.contains("(TrackEditor::release at src/ui/TrackEditor:88)")) << log.dump();
    jLog::setStderr(wasStderr);
}
