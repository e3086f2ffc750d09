#include "EditorPlugin.h"

#include <cstdlib>

#include "TrackEditorPlugin.h"

std::string EditorPlugin::folder(const std::string& programDir)
{
    const char* dir = std::getenv(DIR_VARIABLE);
    return dir && *dir ? std::string(dir) : programDir;
}

bool EditorPlugin::load(const std::string& dir)
{
    m_api = nullptr;
    std::string path = (dir.empty() ? std::string(".") : dir) + "/" + LIBRARY_NAME;
    if (!m_library.open(path)) {
        m_error = "cannot load the track editor module " + m_library.getError();
        return false;
    }
    using Entry = const TrackEditorPluginApi* (*)();
    auto entry = reinterpret_cast<Entry>(m_library.symbol(ENTRY_NAME));
    if (!entry) {
        m_error = "the track editor module has no entry table: " + m_library.getError();
        m_library.close();
        return false;
    }
    const TrackEditorPluginApi* api = entry();
    if (!api || api->version != TrackEditorPluginApi::VERSION) {
        m_error = path + ": the track editor module has entry table version " +
                  (api ? std::to_string(api->version) : std::string("(none)")) + ", this editor needs version " +
                  std::to_string(TrackEditorPluginApi::VERSION);
        m_library.close();
        return false;
    }
    m_api = api;
    m_error.clear();
    return true;
}
