#pragma once

#include <string>

// Finds the program's data whatever the working folder: the bundled samples sit in a "data" folder
// beside the executable or in one of its parents (an installation, or a build tree inside the
// repository).
class DataLocator {
public:
    // The file whose presence marks the data folder.
    static constexpr const char* MARKER = "data/samples/demo.world";

    // Returns the folder holding the running executable, or "" when the system does not tell.
    static std::string executableDir();
    // Returns the nearest of start and its parents that holds MARKER (the folder above "data"),
    // or "" when none does.
    static std::string findRoot(const std::string& start);
};
