#pragma once

#include <string>

// What the user asked kuvo-editor to do.
struct HostOptions {
    std::string scene;      // --scene FILE: the .world to open; empty opens the bundled sample
    std::string track;      // --track FILE: the .anim to open; empty opens the bundled sample
    std::string script;     // --script FILE: an automation script to replay
    std::string screenshot; // --screenshot FILE: save the main window after the first frames
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
    // in error when an option is unknown, lacks its argument or is given twice.
    static bool parse(int argc, const char* const* argv, HostOptions& options, std::string& error);
    // Returns the usage text, one option per line.
    static const char* usage();
};
