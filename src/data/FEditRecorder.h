#pragma once

#include <string>
#include <vector>

#include "data/FTrackSettings.h"
#include "kit/jString.h"

class AppData;
class FParameter;
class FTrack;
class TrackParameter;
class UndoCommand;

// Gathers one step of the document's history while the user makes it: every place that is about
// to change a parameter touches it first, which records that parameter's state then, once per
// step; the track's settings are noted when the step begins. Finishing the step compares only what
// was touched, so a step costs what it touched, not the document.
class FEditRecorder {
public:
    // Records the steps of hub's document.
    explicit FEditRecorder(const AppData& hub) : m_hub(&hub) {}

    // Starts a step at the document as it is now: notes the track's settings and forgets what was
    // touched.
    void begin();
    // Records param's state (an engine parameter of the document's track) before the change about
    // to be made to it; nothing when it was touched or made in this step, or the track lacks it.
    void touch(TrackParameter* param);
    // Touches the engine parameter parameter is part of (a component's compound's).
    void touch(const FParameter* parameter);
    // Notes that this step made param, which the document's track now holds.
    void made(TrackParameter* param);
    // Notes that now took the place of old in the track: what was touched of old is now's.
    void replaced(const TrackParameter* old, TrackParameter* now);
    // The step's command (made with jNew), named name: each touched or made parameter whose saved
    // object changed, and the settings when they changed; null when the saved file would read as it
    // did. Begins the next step either way.
    UndoCommand* finish(const jString& name);

private:
    // A touched parameter, its place then and its object then (empty for one the step made).
    struct Touched {
        TrackParameter* param;
        int index;
        std::string before;
    };
    bool is_touched(const TrackParameter* param) const;
    FTrack* document() const;

    const AppData* m_hub;

    std::vector<Touched> m_touched;
    FTrackSettings m_settings;
};
