#pragma once

#include <string>

// Where the editor finds its data: icons, translations, sample scenes. Paths the editor names are
// relative to the folder that holds "data" ("data/core/editor/gui/key.png"); the data root is that
// "data" folder itself, so that an installation, a build tree and the tests can each point at their
// own copy. The root is, in order: the folder given to set(), the environment variable
// KUVO_DATA_DIR, or "data" in the working folder.
class DataDir {
public:
    // Makes dir the data root for the rest of the process; an empty dir restores the default.
    static void set(const char* dir);
    // Returns the current data root, without a trailing separator.
    static std::string get();
    // Returns where path lives: absolute paths are kept, "data/..." is placed under the data root,
    // any other relative path is taken as relative to the data root.
    static std::string resolve(const char* path);
    // Returns the editor's icon folder, "data/core/editor/gui/", resolved, with a trailing separator.
    static std::string iconDir();
};
