#pragma once

#include <map>
#include <string>

#include "kit/jString.h"

class Track;
class World;

// The nested tracks played inside one outermost track, loaded once per resolved path. A file that
// cannot be loaded is remembered too, so that it is reported once rather than on every frame.
class TrackCache {
public:
    explicit TrackCache(Track* outer) : m_outer(outer) {}
    // Destroys every cached track.
    ~TrackCache();
    TrackCache(const TrackCache&) = delete;
    TrackCache& operator=(const TrackCache&) = delete;

    // Returns the track of file, loading it into the outer track's world on first use; null when it
    // cannot be loaded.
    Track* get(const jString& file, World* world);
    // Returns file joined to the engine's data folder (unless absolute), lexically normalised.
    static std::string Resolve(const jString& file);
    // Forgets the world of every cached track and binds them to world.
    void setWorld(World* world);

private:
    Track* m_outer;
    std::map<std::string, Track*> m_tracks;
};
