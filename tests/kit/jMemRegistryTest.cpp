#include "kit/jMemRegistry.h"

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "kit/jAllocator.h"
#include "support/Scenario.h"

using jMemRegistryTest = Scenario;

// Every scenario's balance check reads live allocations per tag and what changed between snapshots.
TEST_F(jMemRegistryTest, SnapshotCountsLiveAllocationsPerTag)
{
    jMemSnapshot before = jMemRegistry::snapshot();
    double* widget = jNew<double>("tests/kit/jMemRegistryTest", __LINE__, "Test::makeWidget");
    void* raw = jAllocator::get()->localAlloc(64);
    memAddInfo(raw, true, "tests/kit/jMemRegistryTest", __LINE__, "Test::makeBuffer", 64);
    jMemSnapshot during = jMemRegistry::snapshot();
    EXPECT_EQ(during.total(), before.total() + 2);
    EXPECT_EQ(during.changesSince(before), "Test::makeBuffer: +1\nTest::makeWidget: +1\n");
    memRemoveInfo(raw, "tests/kit/jMemRegistryTest", __LINE__, "Test::dropBuffer");
    jAllocator::get()->localFree(raw);
    EXPECT_EQ(before.changesSince(jMemRegistry::snapshot()), "Test::makeWidget: -1\n");
    jDelete(widget, "tests/kit/jMemRegistryTest", __LINE__, "Test::dropWidget");
    EXPECT_EQ(jMemRegistry::snapshot(), before);
}

// A large track registers and frees millions of blocks in any order of addresses, small objects and
// large buffers mixed: whatever the order, the counts follow and the report keeps the oldest first.
TEST_F(jMemRegistryTest, CountsHoldWhateverTheOrderOfFrees)
{
    const jMemSnapshot before = jMemRegistry::snapshot();
    std::mt19937 rng(5);
    std::vector<void*> blocks;
    for (int i = 0; i < 20000; ++i) {
        const size_t size = 16 + rng() % 400;
        blocks.push_back(jAllocator::get()->localAlloc(size));
        memAddInfo(blocks.back(), true, "tests/kit/jMemRegistryTest", i % 3, i % 2 ? "Test::odd" : "Test::even", size);
    }
    EXPECT_EQ(jMemRegistry::snapshot().changesSince(before), "Test::even: +10000\nTest::odd: +10000\n");
    const std::string report = jMemRegistry::leakReport();
    EXPECT_LT(report.find("Test::even (tests/kit/jMemRegistryTest:0)"), report.find("Test::odd (tests/kit/jMemRegistryTest:1)"));
    std::shuffle(blocks.begin() + 1, blocks.end(), rng);
    for (size_t i = 1; i < blocks.size(); ++i) {
        memRemoveInfo(blocks[i], "tests/kit/jMemRegistryTest", __LINE__, "Test::free");
        jAllocator::get()->localFree(blocks[i]);
    }
    EXPECT_EQ(jMemRegistry::snapshot().changesSince(before), "Test::even: +1\n");
    memRemoveInfo(blocks[0], "tests/kit/jMemRegistryTest", __LINE__, "Test::free");
    jAllocator::get()->localFree(blocks[0]);
    EXPECT_EQ(jMemRegistry::snapshot(), before);
}

// The host prints this report at exit: each leak with its tag, file, line, size and kind, oldest first.
TEST_F(jMemRegistryTest, LeakReportNamesTagFileAndLine)
{
    double* leaked = jNew<double>("src/ui/SettingsPanel", 120, "SettingsPanel::open");
    char* buffer = static_cast<char*>(jAllocator::get()->localAlloc(10));
    memAddInfo(buffer, true, "kit/jString", 7, "jString::reserve", 10);
    std::string report = jMemRegistry::leakReport();
    size_t widgetAt = report.find("SettingsPanel::open (src/ui/SettingsPanel:120) 8 bytes object\n");
    size_t bufferAt = report.find("jString::reserve (kit/jString:7) 10 bytes buffer\n");
    EXPECT_NE(bufferAt, std::string::npos) << report;
    EXPECT_LT(widgetAt, bufferAt) << report;
    jDelete(leaked, "src/ui/SettingsPanel", 130, "SettingsPanel::close");
    memRemoveInfo(buffer, "kit/jString", 8, "jString::release");
    jAllocator::get()->localFree(buffer);
    EXPECT_EQ(jMemRegistry::leakReport().find("SettingsPanel::open"), std::string::npos);
}

// Not a Scenario, which fails on an unknown removal: here that is under test. A pointer registered
// twice keeps its first record, whether it is a small object of the allocator or any other address.
TEST(jMemRegistryMisuse, DoubleRegistrationAndUnknownRemovalAreLogged)
{
    bool wasStderr = jLog::setStderr(false);
    int object = 0;
    void* small = jAllocator::get()->localAlloc(sizeof(object));
    for (void* p : {static_cast<void*>(&object), small}) {
        jLogBuffer log;
        size_t before = jMemRegistry::unknownRemovals();
        jMemSnapshot live = jMemRegistry::snapshot();
        memAddInfo(p, false, "tests/first", 1, "Test::first", sizeof(object));
        memAddInfo(p, false, "tests/second", 2, "Test::second", sizeof(object));
        EXPECT_EQ(jMemRegistry::snapshot().count("Test::first"), 1u);
        EXPECT_EQ(jMemRegistry::snapshot().count("Test::second"), 0u);
        memRemoveInfo(p, "tests/first", 3, "Test::done");
        memRemoveInfo(p, "src/ui/TrackEditor", 88, "TrackEditor::release");
        EXPECT_EQ(jMemRegistry::unknownRemovals(), before + 1);
        EXPECT_EQ(jMemRegistry::snapshot(), live);
        ASSERT_EQ(log.countAtLeast(jLogLevel::Error), 2u) << log.dump();
        EXPECT_TRUE(log.contains("registered twice (Test::second at tests/second:2)")) << log.dump();
        EXPECT_TRUE(log.contains("memRemoveInfo:unknown pointer")) << log.dump();
        EXPECT_TRUE(log.contains("(TrackEditor::release at src/ui/TrackEditor:88)")) << log.dump();
    }
    jAllocator::get()->localFree(small);
    jLog::setStderr(wasStderr);
}
