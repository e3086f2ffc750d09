#pragma once

#include <string>

// What the user asked kuvo-editor to do.
struct HostOptions {
    std::string scene;      // --scene FILE: the .world to open; empty opens the bundled sample
    std::string track;      // --track FILE: the .anim to open; empty opens the bundled sample
    std::string script;     // --script FILE: an automation script to replay
    std::string screenshot; // --screenshot FILE: save the main window after the first frames
    std::string recoveryInterval;  // --recovery-interval SECONDS, as given
    double recoverySeconds = 30.0; // the time between recovery copies while edits are unsaved
    bool restoreRecovery = false;  // --restore-recovery: restore the newest recovery copy unasked
    bool discardRecovery = false;  // --discard-recovery: delete the newest recovery copy unasked
    bool headless = false;  // --headless: run without a display
    bool checkLeaks = false; // --check-leaks: exit with status 3 when allocations outlive the run
    bool help = false;       // --help: print the usage and exit
};

// Reads kuvo-editor's command line.
class CommandLine {
public:
    // Exit status for a command line that cannot be read.
    static constexpr int USAGE_STATUS = 2;

    // Fills options from argv. Returns false and keeps a one-line reason ("--scene needs a FILE")
    // in error when an option is unknown, lacks its argument, is given twice, or the recovery
    // options do not fit (an interval that is not a number of seconds above 0, both answers).
    static bool parse(int argc, const char* const* argv, HostOptions& options, std::string& error);
    // Returns the usage text, one option per line.
    static const char* usage();
};
