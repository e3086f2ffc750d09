#pragma once

#include <cstddef>

#include "TrackEditorPlugin.h"
#include "kit/jString.h"

// Tells a listener how far the open of a track file has come, in whole percent, each value once:
// the file's text is read in the first READ_PERCENT, the engine track is built by ENGINE_PERCENT,
// and the document's keys take the rest, key by key, so a track of a million keys shows steady
// progress. Outside an open every call but setListener does nothing.
class TrackLoadProgress {
public:
    static constexpr int READ_PERCENT = 30;
    static constexpr int ENGINE_PERCENT = 40;

    // Makes listener hear the progress with context; null stops it.
    void setListener(TrackProgressListener listener, void* context);
    // Starts the open of path: reports 0.
    void begin(const jString& path);
    // The file's text is read.
    void read();
    // The engine track is built and keys of the document's parameters are about to be made.
    void expect(size_t keys);
    // One more key of the document is made.
    void keyMade()
    {
        if (m_open && ++m_made >= m_next)
            made_step();
    }
    // Ends the open, whether it succeeded or not: reports 100.
    void end();

private:
    void made_step();
    void report(int percent);

    TrackProgressListener m_listener = nullptr;
    void* m_context = nullptr;
    jString m_path;
    bool m_open = false;
    int m_percent = -1;  // the last value reported
    size_t m_keys = 0;   // keys expected
    size_t m_made = 0;   // keys made
    size_t m_next = 0;   // the count of made keys at which the next percent is due
};
