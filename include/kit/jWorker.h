#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>

// A second thread for work that splits in two: a caller hands one half to the worker, does the
// other half itself and then waits for the worker's. One job at a time: while another caller's job
// runs, start refuses and that caller does all of its work itself, so nobody ever queues behind
// somebody else's job.
class jWorker {
public:
    using Job = void (*)(void* context);

    // Returns the process-wide worker; its thread starts with the first job.
    static jWorker* get();

    jWorker() = default;
    ~jWorker();
    jWorker(const jWorker&) = delete;
    jWorker& operator=(const jWorker&) = delete;

    // Runs job(context) on the worker thread and returns true, or returns false and runs nothing
    // when a job accepted earlier has not been waited for yet (or the thread cannot be started).
    bool start(Job job, void* context);
    // Waits until the job start accepted last has finished; only the caller whose job it is may
    // wait, and it must, before the worker takes another job.
    void wait();

private:
    void run();

    std::mutex m_mutex;
    std::condition_variable m_wake;     // a job was handed over, or the worker must quit
    std::condition_variable m_finished; // the job has finished
    std::thread m_thread;
    Job m_job = nullptr; // the job handed over and not yet taken
    void* m_context = nullptr;
    bool m_quit = false;
    std::atomic<bool> m_busy{false}; // a job was accepted and not yet waited for
    std::atomic<bool> m_done{false}; // the accepted job has finished
};
