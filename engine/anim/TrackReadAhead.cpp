#include "anim/TrackReadAhead.h"

#include "anim/Track.h"
#include "anim/TrackParameter.h"
#include "anim/TrackReader.h"
#include "io/Package.h"
#include "kit/jAllocator.h"
#include "kit/jWorker.h"

namespace {

const char* const FILE_TAG = "engine/anim/TrackReadAhead";

// Returns whether two nodes are the same element: a shown element is a copy of the node that
// ends up in the tree, with the same children.
bool sameElement(const Package* shown, const Package* node)
{
    return shown && node && shown->getType() == node->getType() &&
           shown->getNumChildren() == node->getNumChildren() &&
           (shown->getNumChildren() == 0 || shown->getChild(0) == node->getChild(0));
}

} // namespace

TrackReadAhead::TrackReadAhead(bool strict) : m_strict(strict) {}

TrackReadAhead::~TrackReadAhead()
{
    stop();
    for (TrackParameter* p : m_read)
        jDelete(p, FILE_TAG, __LINE__, "TrackReadAhead::~TrackReadAhead");
}

void TrackReadAhead::element(int index, const Package* node)
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        if (m_elements.size() <= static_cast<size_t>(index)) {
            m_elements.resize(index + 1, nullptr);
            m_read.resize(index + 1, nullptr);
        }
        m_elements[index] = node;
    }
    m_arrived.notify_one();
    if (!m_asked) {
        m_asked = true;
        m_working = jWorker::get()->start(work, this);
        m_read_any = m_working;
    }
}

void TrackReadAhead::end(bool parsed)
{
    if (parsed) {
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            m_ended = true;
        }
        m_arrived.notify_one();
        if (m_working)
            read_waiting(false);
    }
    stop();
}

TrackParameter* TrackReadAhead::take(const Package* list, int index)
{
    if (index < 0 || static_cast<size_t>(index) >= m_read.size() || !list ||
        !sameElement(m_elements[index], list->getChild(index)))
        return nullptr;
    TrackParameter* p = m_read[index];
    m_read[index] = nullptr;
    return p;
}

void TrackReadAhead::work(void* self)
{
    static_cast<TrackReadAhead*>(self)->read_waiting(true);
}

void TrackReadAhead::read_waiting(bool wait)
{
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        if (wait)
            m_arrived.wait(lock, [this] { return m_next < m_elements.size() || m_ended; });
        if (m_next >= m_elements.size())
            return;
        const size_t index = m_next++;
        const Package* node = m_elements[index];
        lock.unlock();
        TrackReader reader(m_strict);
        TrackParameter* p = node ? Track::read_parameter(reader, node) : nullptr;
        if (p && reader.failed()) {
            jDelete(p, FILE_TAG, __LINE__, "TrackReadAhead::read_waiting");
            p = nullptr;
        }
        lock.lock();
        m_read[index] = p;
    }
}

void TrackReadAhead::stop()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_ended = true;
        m_next = m_elements.size();
    }
    m_arrived.notify_one();
    if (m_working)
        jWorker::get()->wait();
    m_working = false;
}
