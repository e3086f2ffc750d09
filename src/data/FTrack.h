#pragma once

class Package;
class Track;
class World;

// The editor's document: owns one engine track, which the engine plays and saves. The editor
// objects that mirror its parameters (rows, key marks, selection) join this class with the
// document views.
class FTrack {
public:
    // Makes a document with an empty engine track.
    FTrack();
    FTrack(const FTrack&) = delete;
    FTrack& operator=(const FTrack&) = delete;

    // Returns the engine track (null only after release).
    virtual Track* getEngineTrack() const { return m_track; }
    // Replaces the engine track pointer without releasing the old one; the caller owns the exchange.
    virtual void setEngineTrack(Track* track) { m_track = track; }
    // Empties the document and frees the engine track; the document must not be used afterwards.
    virtual void release();

    // Replaces the document with a parsed track file bound to world. Returns false when the engine
    // refuses the file (the reason is logged); the document is then empty.
    bool load(Package* root, World* world);
    // Empties the engine track; it stays allocated.
    void clear();
    // True when there is no engine track or it has no parameter.
    bool isEmpty() const;

private:
    Track* m_track;
};
