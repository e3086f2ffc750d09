#pragma once

#include <string>

#include "anim/TrackParameter.h"
#include "anim/TrackPlayback.h"
#include "anim/TrackReg.h"
#include "kit/jString.h"
#include "kit/jVector.h"

class Package;
class TrackCache;
class TrackReadAhead;
class TrackReader;
class World;

// An animation: a play range, a loop switch and parameters, each animating one property of a node,
// a material or the world. The track owns its parameters (removeParameter hands one back).
// Playing (set) resolves each parameter's target in the track's world once and keeps it, packed
// with the compiled curves into a playback layout that is rebuilt only when a parameter's keys,
// switches or binding changed; after the world's nodes or materials were replaced, call setWorld
// (or rebind) before playing again.
class Track {
public:
    // The .anim format version this build reads and writes.
    static constexpr int FORMAT_VERSION = 1;

    Track();
    virtual ~Track();
    Track(const Track&) = delete;
    Track& operator=(const Track&) = delete;

    // Destroys every parameter and every cached nested track; the range and loop switch stay.
    virtual void release();
    // Returns the range to 0..0 with looping, frame rate and snapping off; the parameters stay.
    virtual void reset();

    virtual float getBeginTime() const { return m_begin; }
    virtual float getEndTime() const { return m_end; }
    // Stores a begin time, clamped at 0.
    virtual void setBeginTime(float t);
    // Stores an end time, clamped at 0.
    virtual void setEndTime(float t);
    virtual bool isLoop() const { return m_loop; }
    virtual void setLoop(bool loop) { m_loop = loop; }
    // Frames per second the track is edited at; 0 means none (times are shown in seconds and
    // nothing snaps to frames). Playback never reads it.
    float getFrameRate() const { return m_frame_rate; }
    // Stores a frame rate; anything not above 0 (NaN included) stores 0, none.
    void setFrameRate(float fps) { m_frame_rate = fps > 0.0f ? fps : 0.0f; }
    // Whether the editor lands dragged keys, made keys and the play head on whole frames.
    bool isSnapping() const { return m_snapping; }
    void setSnapping(bool snapping) { m_snapping = snapping; }

    // Replaces the content of the track with a parsed .anim document and binds it to world (may be
    // null). Returns false and logs "Track::load:LINE:COLUMN: reason" for the first problem; the
    // track is then unchanged.
    bool load(Package* root, World* world);
    // Reads and loads a .anim file. Returns false and logs "path:LINE:COLUMN: reason"; the track is
    // then unchanged.
    bool loadFile(const char* path, World* world);
    // Reads a document into this track through reader, which collects every problem; the track is
    // replaced only when there was none. Returns whether it was. The parameters ahead read while
    // the document was parsed are taken from it.
    bool read(TrackReader& reader, const Package* root, World* world, TrackReadAhead* ahead = nullptr);
    // Writes the track into root (which becomes an object). Returns false (root then unspecified)
    // only when root is null.
    bool save(Package* root) const;
    // Writes the track to a .anim file atomically. Returns false and logs the path and the
    // system's reason (also kept as "path: reason" in error, when given) when it cannot; the file
    // on disk is then as it was.
    bool saveFile(const char* path, std::string* error = nullptr) const;

    int getNumParameters() const { return m_parameters.size(); }
    // Returns parameter i, or null for a bad index.
    TrackParameter* getParameter(int i) const;
    // Takes ownership of a parameter and appends it; false when it is null or already held by a
    // track.
    bool addParameter(TrackParameter* param);
    // Hands a parameter back to the caller; false when this track does not hold it.
    bool removeParameter(TrackParameter* param);
    // Takes ownership of a parameter and puts it at index (appends it when index is past the end);
    // false (logged) when it is null or already held by a track.
    bool insertParameter(int index, TrackParameter* param);
    // The place of param in the parameter list; -1 when this track does not hold it.
    int indexOf(TrackParameter* param) const { return m_parameters.find(param); }
    // Makes a parameter, held by no track, from one parameter object of a .anim document, as load
    // reads each. Returns null and logs "source:LINE:COLUMN: reason" for every problem.
    TrackParameter* readParameter(const Package* object, const char* source);

    // Plays the track at t: every enabled, bound parameter is evaluated and applied to its node,
    // material or world setting. A track that is already being played (a nested track playing
    // itself) is refused with an error.
    void set(float t);
    // Returns the time of the last set.
    float getTime() const { return m_time; }

    // The world the parameters are bound in (may be null).
    World* getWorld() const { return m_world; }
    // Uses world for binding and playing from now on; every target is resolved again.
    void setWorld(World* world);
    // Resolves every parameter's target again, now (the track's world must be alive).
    void rebind();

    // Binds param (held by this track) to a node of world: a node id of -1 means unbound. For a
    // node, the id (or, when no node has the id, the name) must find a node whose type typeName's
    // registration accepts; an internal id other than -1 must find an internal node of that node.
    // Returns false and logs why, leaving the parameter as it was.
    bool bindNode(TrackParameter* param, World* world, int nodeId, const jString& nodeName, int internalId,
                  const jString& internalName, const jString& typeName);
    // Binds param (held by this track) to the parameter with tag of a material that typeName's
    // registration accepts. Returns false and logs why, leaving the parameter as it was.
    bool bindMaterial(TrackParameter* param, const jString& material, const jString& tag, const jString& typeName);

    // Makes an empty parameter of a kind through the engine allocator (free it with jDelete, or hand
    // it to addParameter); null when kind is not 0 to 9.
    static TrackParameter* CreateParameter(int kind);

    // Returns every registration, always in the same order.
    static const jVector<TrackReg*>& GetAllRegs();
    // Returns the registration with this name, or null.
    static TrackReg* GetRegByName(const jString& name);

    // Returns the nested track of a file (a path relative to the data folder, or absolute), loading
    // it on first use; null (logged once) when it cannot be loaded. Every track played inside this
    // one shares the cache of the outermost track.
    Track* getNestedTrack(const jString& file);
    // Returns whether set is running on this track (used to refuse a track playing itself).
    bool isPlaying() const { return m_playing; }

private:
    friend class TrackCache;
    friend class TrackParameter;
    friend class TrackReadAhead;

    // Marks the playback layout out of date (a parameter changed); the next set rebuilds it.
    void invalidate_playback() { m_playback.invalidate(); }
    void build_playback();

    void clear_parameters();
    // Reads every parameter of a document's list into out, the second half on the worker thread
    // when it is free: a large track's keys are most of its reading.
    static void read_parameters(TrackReader& reader, const Package* list, jVector<TrackParameter*>& out);
    // Reads the list into out taking what ahead read, and reading the rest in order.
    static void take_parameters(TrackReader& reader, const Package* list, TrackReadAhead& ahead,
                                jVector<TrackParameter*>& out);
    // Reads the parameters from index from up to to of the list into out.
    static void read_range(TrackReader& reader, const Package* list, int from, int to, jVector<TrackParameter*>& out);
    static TrackParameter* read_parameter(TrackReader& reader, const Package* object);
    void resolve(TrackParameter* param);
    bool check_binding(TrackParameter* param, const TrackReg* reg, const jString& typeName, const char* function) const;
    TrackCache* cache();

    jVector<TrackParameter*> m_parameters;
    float m_begin = 0.0f;
    float m_end = 0.0f;
    bool m_loop = false;
    float m_frame_rate = 0.0f;
    bool m_snapping = false;
    float m_time = 0.0f;
    World* m_world = nullptr;
    bool m_playing = false;
    // The outermost track whose cache this nested track lives in; null for an outermost track.
    Track* m_outer = nullptr;
    TrackCache* m_cache = nullptr;
    TrackPlayback m_playback;
};
