#pragma once

#include <condition_variable>
#include <mutex>
#include <vector>

#include "io/mjl.h"

class Package;
class TrackParameter;

// Reads a track document's parameters on the worker thread while the parser is still reading the
// rest of the file, so that reading a large track costs little more than parsing it. Given to
// mjl::open as its listener and then to Track::read, which takes the parameters read ahead and
// reads the others itself: a parameter with a problem is dropped here and read again there, once
// the document can name the problem's line. When the worker is busy, nothing is read ahead.
class TrackReadAhead : public mjl::ElementListener {
public:
    // strict is the strictness of the reader Track::read will be given.
    explicit TrackReadAhead(bool strict);
    // Stops the worker and frees the parameters nobody took.
    ~TrackReadAhead() override;
    TrackReadAhead(const TrackReadAhead&) = delete;
    TrackReadAhead& operator=(const TrackReadAhead&) = delete;

    const char* arrayName() const override { return "parameters"; }
    void element(int index, const Package* node) override;
    // With parsed true the parsing thread reads what is still waiting, beside the worker.
    void end(bool parsed) override;

    // Returns whether the worker read along with the parser (it was not busy with another job).
    bool readAny() const { return m_read_any; }
    // Hands over the parameter read from element index of list and forgets it; null when that
    // element was not read ahead without a problem, or list is not the array this listened to.
    TrackParameter* take(const Package* list, int index);

private:
    static void work(void* self);
    // Reads waiting elements until none is left; with wait true, waits for more until the parse ends.
    void read_waiting(bool wait);
    // Stops the worker: no element is taken after this returns.
    void stop();

    const bool m_strict;
    std::mutex m_mutex;
    std::condition_variable m_arrived;
    // The elements shown so far (null where an index was skipped) and what was read from each.
    std::vector<const Package*> m_elements;
    std::vector<TrackParameter*> m_read;
    size_t m_next = 0; // the first element nobody has taken to read
    bool m_ended = false;
    bool m_asked = false; // the worker was asked to read
    bool m_working = false; // the worker took the job and has not been waited for
    bool m_read_any = false;
};
