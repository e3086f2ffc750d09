#pragma once

#include <cstddef>
#include <string>

#include "kit/jMemRegistry.h"

// What the host does at exit about allocations that are still alive. Allocations the engine makes
// once when its library loads (its built-in tables) live for the whole process; only what outlives
// the run beyond a snapshot taken at its start counts.
class LeakCheck {
public:
    // Exit status of a run that leaked under --check-leaks.
    static constexpr int LEAK_STATUS = 3;

    // Returns the exit status of a run: runStatus, unless checking is on and allocations outlived
    // the run, which gives LEAK_STATUS.
    static int exitStatus(int runStatus, size_t leaked, bool checking);
    // Returns the allocation registry's report lines ("tag (file:line) size bytes") of the
    // allocations alive now beyond those of baseline: for each tag that grew, its newest ones.
    static std::string reportSince(const jMemSnapshot& baseline);
    // Returns how many more allocations are alive now than in baseline, counted per tag.
    static size_t countSince(const jMemSnapshot& baseline);
    // Writes the report to stderr when anything outlived the run and, when checking, logs an error
    // naming the count. Returns the exit status as exitStatus does.
    static int finish(int runStatus, bool checking, const jMemSnapshot& baseline);
};
