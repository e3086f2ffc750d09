#include "anim/TrackCache.h"

#include <filesystem>

#include "anim/Track.h"
#include "kit/jAllocator.h"
#include "scene/Engine.h"

namespace {
const char* const FILE_TAG = "engine/anim/TrackCache";
}

TrackCache::~TrackCache()
{
    for (auto& entry : m_tracks)
        jDelete(entry.second, FILE_TAG, __LINE__, "TrackCache::~TrackCache");
}

std::string TrackCache::Resolve(const jString& file)
{
    std::filesystem::path path(file.c_str());
    const jString& data = Engine::get()->getDataPath();
    if (path.is_relative() && data.nempty())
        path = std::filesystem::path(data.c_str()) / path;
    return path.lexically_normal().string();
}

Track* TrackCache::get(const jString& file, World* world)
{
    std::string path = Resolve(file);
    auto found = m_tracks.find(path);
    if (found != m_tracks.end())
        return found->second;
    Track* track = jNew<Track>(FILE_TAG, __LINE__, "TrackCache::get");
    track->m_outer = m_outer;
    if (!track->loadFile(path.c_str(), world)) {
        jDelete(track, FILE_TAG, __LINE__, "TrackCache::get");
        track = nullptr;
    }
    m_tracks[path] = track;
    return track;
}

void TrackCache::setWorld(World* world)
{
    for (auto& entry : m_tracks) {
        if (entry.second)
            entry.second->setWorld(world);
    }
}
