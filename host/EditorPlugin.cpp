#include "EditorPlugin.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "DataLocator.h"
#include "TrackEditorPlugin.h"

std::string EditorPlugin::folder(const std::string& programDir)
{
    const char* dir = std::getenv(DIR_VARIABLE);
    if (dir && *dir)
        return dir;
    std::error_code missing; // no module beside the program: it is an installed one
    if (std::filesystem::is_regular_file(std::filesystem::path(programDir) / LIBRARY_NAME, missing))
        return programDir;
    return DataLocator::beside(programDir, KUVO_MODULE_FROM_BIN);
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
