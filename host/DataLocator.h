#pragma once

#include <string>

// Finds the program's data whatever the working folder: the folder KUVO_DATA_DIR names, else the
// installed data beside the program's folder (share/kuvo next to bin), else the source folder's data
// recorded when the build was configured, so that a build folder anywhere runs as it is.
class DataLocator {
public:
    // The file, relative to the data folder, whose presence marks the data folder.
    static constexpr const char* MARKER = "samples/demo.world";
    // The environment variable that names the data folder, overriding every other place.
    static constexpr const char* DATA_VARIABLE = "KUVO_DATA_DIR";

    // Returns the folder holding the running executable, or "" when the system does not tell.
    static std::string executableDir();
    // Returns the data folder for a program in programDir, without a trailing separator. Returns ""
    // and sets error to a message naming the folders tried and the missing MARKER when
    // $KUVO_DATA_DIR (when set and not empty) or else every other place lacks MARKER.
    static std::string dataDir(const std::string& programDir, std::string& error);
    // Returns programDir/relative, lexically normal ("/usr/bin" and "../share/kuvo" give "/usr/share/kuvo").
    static std::string beside(const std::string& programDir, const std::string& relative);

private:
    static bool holdsData(const std::string& dir);
};
