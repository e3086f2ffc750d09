#include "kit/jWorker.h"

#include <system_error>

#include "kit/jLog.h"

jWorker* jWorker::get()
{
    static jWorker worker;
    return &worker;
}

jWorker::~jWorker()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_quit = true;
    }
    m_wake.notify_one();
    if (m_thread.joinable())
        m_thread.join();
}

bool jWorker::start(Job job, void* context)
{
    bool idle = false;
    if (!m_busy.compare_exchange_strong(idle, true, std::memory_order_acquire))
        return false;
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_thread.joinable()) {
            try {
                m_thread = std::thread(&jWorker::run, this);
            } catch (const std::system_error& e) {
                jLog::warning("%s:no worker thread (%s); working on one thread", "jWorker::start", e.what());
                m_busy.store(false, std::memory_order_release);
                return false;
            }
        }
        m_done.store(false, std::memory_order_relaxed);
        m_job = job;
        m_context = context;
    }
    m_wake.notify_one();
    return true;
}

void jWorker::wait()
{
    // The caller has usually just done a share of the same size: the worker is about done, and a
    // sleep would cost more than it saves. A longer wait sleeps, so that the caller does not take
    // the core the worker needs from a busy machine.
    constexpr int SPINS = 1024; // a few hundred microseconds
    for (int i = 0; i < SPINS && !m_done.load(std::memory_order_acquire); ++i)
        std::this_thread::yield();
    if (!m_done.load(std::memory_order_acquire)) {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_finished.wait(lock, [this] { return m_done.load(std::memory_order_acquire); });
    }
    m_busy.store(false, std::memory_order_release);
}

void jWorker::run()
{
    for (;;) {
        Job job = nullptr;
        void* context = nullptr;
        {
            std::unique_lock<std::mutex> lock(m_mutex);
            m_wake.wait(lock, [this] { return m_job != nullptr || m_quit; });
            if (m_quit)
                return;
            job = m_job;
            context = m_context;
            m_job = nullptr;
        }
        job(context);
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_done.store(true, std::memory_order_release);
        }
        m_finished.notify_one();
    }
}
