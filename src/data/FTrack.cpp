#include "data/FTrack.h"

#include "anim/Track.h"
#include "kit/jAllocator.h"
#include "kit/jLog.h"

FTrack::FTrack()
    : m_track(jNew<Track>("src/data/FTrack", __LINE__, "FTrack::FTrack"))
{
}

void FTrack::release()
{
    clear();
    jDelete(m_track, "src/data/FTrack", __LINE__, "FTrack::release");
    m_track = nullptr;
}

bool FTrack::load(Package* root, World* world)
{
    clear();
    if (!m_track) {
        jLog::error("%s:%s", "FTrack::load", "m_track");
        return false;
    }
    return m_track->load(root, world);
}

void FTrack::clear()
{
    if (m_track)
        m_track->release();
}

bool FTrack::isEmpty() const
{
    return !m_track || m_track->getNumParameters() < 1;
}
