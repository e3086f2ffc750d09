#include "LeakCheck.h"

#include "kit/jAllocator.h"
#include "support/Scenario.h"

using LeakCheckTest = Scenario;

namespace {

const char* const k_file = "tests/host/LeakCheckTest";

} // namespace

TEST_F(LeakCheckTest, ABalancedRunKeepsItsStatusAndPrintsNothing)
{
    jMemSnapshot baseline = jMemRegistry::snapshot();
    int* passing = jNew<int>(k_file, __LINE__, "LeakCheckTest::passing", 1);
    jDelete(passing, k_file, __LINE__, "LeakCheckTest::passing");
    testing::internal::CaptureStderr();
    EXPECT_EQ(LeakCheck::finish(0, true, baseline), 0);
    EXPECT_EQ(LeakCheck::finish(1, true, baseline), 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(LeakCheckTest, OnlyAllocationsMadeAfterTheBaselineAreReported)
{
    int* before = jNew<int>(k_file, __LINE__, "LeakCheckTest::leak", 1);
    jMemSnapshot baseline = jMemRegistry::snapshot();
    const int leakLine = __LINE__ + 1;
    int* leaked = jNew<int>(k_file, leakLine, "LeakCheckTest::leak", 2);
    double* other = jNew<double>(k_file, leakLine + 1, "LeakCheckTest::other", 3.0);
    EXPECT_EQ(LeakCheck::countSince(baseline), 2u);
    EXPECT_EQ(LeakCheck::reportSince(baseline),
              "LeakCheckTest::leak (tests/host/LeakCheckTest:" + std::to_string(leakLine) +
                  ") 4 bytes object\nLeakCheckTest::other (tests/host/LeakCheckTest:" + std::to_string(leakLine + 1) +
                  ") 8 bytes object\n");
    jDelete(other, k_file, __LINE__, "LeakCheckTest::other");
    jDelete(leaked, k_file, __LINE__, "LeakCheckTest::leak");
    jDelete(before, k_file, __LINE__, "LeakCheckTest::leak");
}

TEST_F(LeakCheckTest, ACheckedRunThatLeakedExitsWithThreeAndLogsAnError)
{
    jMemSnapshot baseline = jMemRegistry::snapshot();
    int* leaked = jNew<int>(k_file, __LINE__, "LeakCheckTest::leak", 7);
    testing::internal::CaptureStderr();
    EXPECT_EQ(LeakCheck::finish(0, true, baseline), LeakCheck::LEAK_STATUS);
    std::string printed = testing::internal::GetCapturedStderr();
    EXPECT_NE(printed.find("kuvo-editor: 1 allocations still alive at exit:\nLeakCheckTest::leak ("), std::string::npos)
        << printed;
    expectLogged("LeakCheck::finish:1 allocations leaked");
    // Without --check-leaks the report is still printed but the status stands.
    testing::internal::CaptureStderr();
    EXPECT_EQ(LeakCheck::finish(1, false, baseline), 1);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("LeakCheckTest::leak"), std::string::npos);
    jDelete(leaked, k_file, __LINE__, "LeakCheckTest::leak");
}
