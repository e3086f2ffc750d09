#include "kit/jWorker.h"

#include <atomic>
#include <thread>

#include "support/Scenario.h"

namespace {

using jWorkerTest = Scenario;

// What a job saw: the thread it ran on, and a count it added to.
struct Work {
    std::thread::id thread;
    std::atomic<int> runs{0};
    std::atomic<bool> release{true}; // the job returns once this is true
};

void job(void* context)
{
    auto* work = static_cast<Work*>(context);
    work->thread = std::this_thread::get_id();
    while (!work->release.load())
        std::this_thread::yield();
    work->runs += 1;
}

} // namespace

// Large tracks hand half of a frame to the worker: each job runs once, on the other thread, and is
// done when wait returns; while one is out another caller is refused (the job waits for a flag).
TEST_F(jWorkerTest, JobsRunOnTheWorkerOneAtATime)
{
    Work work;
    for (int i = 1; i <= 500; ++i) {
        ASSERT_TRUE(jWorker::get()->start(job, &work));
        jWorker::get()->wait();
        ASSERT_EQ(work.runs.load(), i);
    }
    EXPECT_NE(work.thread, std::this_thread::get_id());
    Work held;
    held.release = false;
    ASSERT_TRUE(jWorker::get()->start(job, &held));
    EXPECT_FALSE(jWorker::get()->start(job, &work));
    held.release = true;
    jWorker::get()->wait();
    EXPECT_EQ(held.runs.load(), 1);
    EXPECT_EQ(work.runs.load(), 500);
}
