#include "kit/jWorker.h"

#include <atomic>
#include <thread>

#include "support/Scenario.h"

namespace {

using jWorkerTest = Scenario;

// What a job saw: the thread it ran on, and a sum it added to.
struct Work {
    std::thread::id thread;
    std::atomic<int> sum{0};
    std::atomic<bool> release{true}; // the job returns once this is true
};

void job(void* context)
{
    auto* work = static_cast<Work*>(context);
    work->thread = std::this_thread::get_id();
    while (!work->release.load())
        std::this_thread::yield();
    work->sum += 1;
}

} // namespace

TEST_F(jWorkerTest, AJobRunsOnAnotherThreadAndIsDoneWhenWaitReturns)
{
    Work work;
    ASSERT_TRUE(jWorker::get()->start(job, &work));
    jWorker::get()->wait();
    EXPECT_EQ(work.sum.load(), 1);
    EXPECT_NE(work.thread, std::this_thread::get_id());
}

TEST_F(jWorkerTest, ASecondJobIsRefusedUntilTheFirstWasWaitedFor)
{
    Work first, second;
    first.release = false;
    ASSERT_TRUE(jWorker::get()->start(job, &first));
    EXPECT_FALSE(jWorker::get()->start(job, &second)); // the caller does that work itself
    first.release = true;
    jWorker::get()->wait();
    EXPECT_EQ(first.sum.load(), 1);
    EXPECT_EQ(second.sum.load(), 0);
    ASSERT_TRUE(jWorker::get()->start(job, &second));
    jWorker::get()->wait();
    EXPECT_EQ(second.sum.load(), 1);
}

TEST_F(jWorkerTest, JobsInQuickSuccessionAllRun)
{
    Work work;
    for (int i = 0; i < 2000; ++i) {
        ASSERT_TRUE(jWorker::get()->start(job, &work));
        jWorker::get()->wait();
    }
    EXPECT_EQ(work.sum.load(), 2000);
}
