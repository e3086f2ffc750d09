#pragma once

#include <string>

#include "PluginLibrary.h"

struct TrackEditorPluginApi;

// The track editor module as the host sees it: its shared library, loaded from a folder, and the
// entry table through which the host drives the editor.
class EditorPlugin {
public:
    // The module's file name and the entry point it exports.
    static constexpr const char* LIBRARY_NAME = "libtrack_editor.so";
    static constexpr const char* ENTRY_NAME = "kuvo_track_editor_plugin";
    // The environment variable that names another folder to load the module from.
    static constexpr const char* DIR_VARIABLE = "KUVO_PLUGIN_DIR";

    // Returns the folder to load the module from: $KUVO_PLUGIN_DIR when set and not empty, else
    // programDir when it holds the module (a build folder), else the installed module folder beside
    // programDir (lib/kuvo next to bin).
    static std::string folder(const std::string& programDir);

    // Loads dir/libtrack_editor.so and takes its entry table. Returns false and keeps a message
    // naming the library's path and the reason (the loader's error, a missing entry point, or a
    // module built for another version of the table) in getError().
    bool load(const std::string& dir);
    // Returns the entry table, or null until load succeeded.
    const TrackEditorPluginApi* api() const { return m_api; }
    const std::string& getError() const { return m_error; }
    const std::string& getPath() const { return m_library.getPath(); }

private:
    PluginLibrary m_library;
    const TrackEditorPluginApi* m_api = nullptr;
    std::string m_error;
};
