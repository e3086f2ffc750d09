#include "data/TrackLoadProgress.h"

#include <algorithm>

void TrackLoadProgress::setListener(TrackProgressListener listener, void* context)
{
    m_listener = listener;
    m_context = listener ? context : nullptr;
}

void TrackLoadProgress::begin(const jString& path)
{
    m_path = path;
    m_open = true;
    m_percent = -1;
    m_keys = m_made = m_next = 0;
    report(0);
}

void TrackLoadProgress::read()
{
    if (m_open)
        report(READ_PERCENT);
}

void TrackLoadProgress::expect(size_t keys)
{
    if (!m_open)
        return;
    report(ENGINE_PERCENT);
    m_keys = keys;
    m_made = 0;
    m_next = 0;
    made_step();
}

void TrackLoadProgress::made_step()
{
    const size_t share = 100 - ENGINE_PERCENT - 1; // 100 waits for end
    if (m_keys == 0) {
        m_next = static_cast<size_t>(-1);
        return;
    }
    const size_t done = std::min(m_made * share / m_keys, share);
    report(ENGINE_PERCENT + static_cast<int>(done));
    // The first count of made keys that gives the next whole percent.
    m_next = done >= share ? static_cast<size_t>(-1) : ((done + 1) * m_keys + share - 1) / share;
}

void TrackLoadProgress::end()
{
    if (!m_open)
        return;
    report(100);
    m_open = false;
    m_path = jString();
}

void TrackLoadProgress::report(int percent)
{
    if (percent <= m_percent)
        return;
    m_percent = percent;
    if (m_listener)
        m_listener(m_context, m_path.c_str(), percent);
}
