#pragma once

#include <string>
#include <vector>

class Track;
class World;

// What every verb of kuvo-anim shares: the exit codes, the usage text and loading a track file with
// every problem reported as "FILE:LINE:COLUMN: reason".
class AnimCommand {
public:
    static constexpr int OK = 0;
    static constexpr int INVALID = 1;
    static constexpr int USAGE = 2;

    // Prints the usage text (after message, when given) to stderr; returns USAGE.
    static int usage(const std::string& message);
    // Prints the usage text to stdout, as --help asks; returns OK.
    static int help();

    // Reads and checks a .anim file into track (bound to world, may be null). With strict true,
    // it also reports what the engine tolerates (see TrackReader). Returns the problems as "FILE:LINE:COLUMN: reason"
    // lines; empty when the track was loaded.
    static std::vector<std::string> load(const std::string& path, Track& track, World* world, bool strict);
    // Reads a .world file into world. Returns its problem as "FILE: reason" or
    // "FILE:LINE:COLUMN: reason"; empty when the scene was loaded.
    static std::vector<std::string> loadWorld(const std::string& path, World& world);
    // An option that takes a value ("--world SCENE") and where its value goes.
    struct Option {
        const char* name;
        std::string* value;
    };
    // Sorts args into the values of options and two files, in and out (as the glTF verbs take them);
    // returns why they are not usable (shape when there are not two files), or "" when they are.
    static std::string splitFiles(const std::vector<std::string>& args, const std::vector<Option>& options,
                                  std::string& in, std::string& out, const std::string& shape);
    // Prints each problem line to stderr. Returns whether there was none.
    static bool report(const std::vector<std::string>& problems);

    // The verbs; args are the arguments after the verb. Each returns the exit code.
    static int info(const std::vector<std::string>& args);
    static int validate(const std::vector<std::string>& args);
    static int fmt(const std::vector<std::string>& args);
    static int eval(const std::vector<std::string>& args);
    static int importGltf(const std::vector<std::string>& args);
    static int exportGltf(const std::vector<std::string>& args);
};
