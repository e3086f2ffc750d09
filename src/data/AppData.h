#pragma once

#include <string>

#include "data/FEditRecorder.h"
#include "data/TrackLoadProgress.h"
#include "editor/UndoStack.h"
#include "kit/jMath.h"
#include "kit/jString.h"

class FParameter;
class FTrack;
class Package;
class mjl;
class World;

// The one place through which the editor's views and commands reach the document: the track, the
// name and path of its file, the play range and the current time. The current time stays inside
// the range by the rule of setTime; the range itself is only clamped at zero.
class AppData {
public:
    // Returns the single instance, made (with an empty document spanning 0 to 10 s) on first use.
    static AppData* get();

    // The base name of the track file last opened; empty for a new document.
    virtual const jString& getName() const { return m_name; }
    // The path of the track file last opened or saved.
    virtual const jString& getPath() const { return m_path; }
    virtual float getBeginTime() const { return m_begin; }
    // Stores t, or 0 when t is not positive.
    virtual void setBeginTime(float t);
    virtual float getEndTime() const { return m_end; }
    // Stores t, or 0 when t is not positive.
    virtual void setEndTime(float t);
    virtual float getTime() const { return m_time; }
    virtual FTrack* getTrack() const { return m_track; }
    // Replaces the document pointer without releasing the old one; the caller owns the exchange.
    virtual void setTrack(FTrack* track) { m_track = track; }

    // Empties the document and its history, spans 0 to 10 s with the cursor at the start, and
    // forgets the file.
    void reset();
    // Moves the cursor: below the begin gives the begin, otherwise the smaller of t and the end.
    void setTime(float t);
    // Opens a track file. Returns false and logs "Open world error:<path>" when it cannot be read
    // (nothing changes); returns false when the engine refuses it (the document is then empty, with
    // the new path and name). On success the range is the track's and the cursor at its begin.
    bool loadTrack(const jString& path, World* world);
    // Opens the track file at path as the document of the file named document: a recovery copy of
    // that file, or a template when document is empty (the document then stays untitled). Fails
    // as loadTrack does, the refused document taking document's path and name.
    bool loadTrackAs(const jString& path, const jString& document, World* world);
    // Loads the document from an already parsed track file; the path and name are forgotten.
    bool loadTrack(Package* root, World* world);
    // Writes the document to a track file and takes its path (not the name). Returns false, with
    // the path unchanged and the reason logged, when the file cannot be written.
    bool saveTrack(const jString& path);
    // Writes the document to a track file atomically, keeping the document's path (a recovery
    // copy). Returns false (logged with the path and the reason; the file untouched) on failure.
    bool saveCopy(const jString& path) const;
    // The document track's frame rate (0: none, or no track).
    float getFrameRate() const;
    // Sets the document track's frame rate (anything not above 0 clears it); nothing without a track.
    void setFrameRate(float fps);
    // Whether the document track snaps to whole frames (false without a track).
    bool isSnapping() const;
    // Sets the document track's snapping switch; nothing without a track.
    void setSnapping(bool snapping);
    // True when the document has no engine track or the track has no parameter.
    bool isEmpty() const;

    // Releases and frees a parameter the document no longer lists; true (nothing done) for null.
    bool destoryParameter(FParameter* p);
    // The palette index a new row takes: the number of key-owning parameters, modulo 14.
    int getNextRowColor() const;
    // Palette colour i (0 to 13), alpha 1.
    static vec4 RowColor(int i);
    static constexpr int ROW_COLORS = 14;

    // The document's edit history; loading or clearing a track empties it.
    UndoStack& getHistory() { return m_history; }
    // Gathers the step of the history being made: whatever is about to change a parameter touches
    // it here first. Loading, clearing and restoring begin a new step.
    FEditRecorder& getEdits() { return m_edits; }
    // Clamps the play range and the current time into the track's limits (after the limits changed).
    void fitRange();
    // Writes the document as its saved file would read into bytes. Returns false (the reason logged)
    // when the engine cannot write it.
    bool snapshot(std::string& bytes) const;
    // Replaces the document's track with one written by snapshot, bound to the track's world,
    // keeping the file's path and name, the play range (clamped into the track's limits) and the
    // current time. Returns false (logged) when the bytes are no track; the document is then empty.
    bool restore(const std::string& bytes);

    // How far the open of a track file has come, for the host to show.
    TrackLoadProgress& getLoadProgress() { return m_progress; }

    // Frees the document and forgets the file's path and name when the module is unloaded, so nothing
    // is left to report as leaked. The hub must not be used afterwards.
    void release();

private:
    AppData();
    // Loads the document from root; parsed, when given, is the reader that holds root, and its
    // tree is freed as soon as the engine track has read it.
    bool take_loaded(Package* root, World* world, mjl* parsed = nullptr);

    jString m_name;
    jString m_path;
    float m_begin = 0.0f;
    float m_end = 0.0f;
    float m_time = 0.0f;
    FTrack* m_track = nullptr;
    TrackLoadProgress m_progress;
    UndoStack m_history;
    FEditRecorder m_edits{*this};
};
