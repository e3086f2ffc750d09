#include "TrackEditorGltf.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <cstdlib>
#include <string>

#include "anim/GltfExport.h"
#include "anim/GltfImport.h"
#include "anim/Track.h"
#include "data/AppData.h"
#include "data/FTrack.h"
#include "io/Package.h"
#include "kit/jLog.h"
#include "ui/TrackEditor.h"

namespace {

// Returns the path of a new empty file in the system's temporary folder, or "" when none can be made.
std::string makeScratchFile()
{
    const char* folder = std::getenv("TMPDIR");
    std::string path = std::string(folder && *folder ? folder : "/tmp") + "/kuvo-import-XXXXXX";
    int fd = mkstemp(path.data());
    if (fd < 0)
        return "";
    close(fd);
    return path;
}

} // namespace

bool TrackEditorGltf::importFile(TrackEditor* editor, const char* path, bool replace)
{
    const char* function = "TrackEditorGltf::importFile";
    World* world = editor->getWorld();
    GltfImport importer;
    importer.setWorld(world);
    if (!importer.read(path)) {
        jLog::error("%s:%s", function, importer.getError().c_str());
        return false;
    }
    for (const std::string& line : importer.getWarnings())
        jLog::warning("%s:%s", function, line.c_str());
    // The merged track goes through the editor's own load, which rebuilds every view of the
    // document and keeps its file's path and name.
    Track merged;
    Package tree;
    Track* current = AppData::get()->getTrack()->getEngineTrack();
    if (!replace && (!current->save(&tree) || !merged.load(&tree, world)))
        return false;
    importer.addTo(merged);
    std::string scratch = makeScratchFile();
    std::string reason = std::strerror(errno);
    bool staged = !scratch.empty() && merged.saveFile(scratch.c_str(), &reason);
    if (!staged) {
        std::remove(scratch.c_str());
        jLog::error("%s:%s: the imported track cannot be staged: %s", function, path, reason.c_str());
        return false;
    }
    jString document = AppData::get()->getPath(); // the load empties the one it was read from
    bool loaded = editor->loadAs(jString(scratch.c_str()), document, true);
    std::remove(scratch.c_str());
    return loaded;
}

bool TrackEditorGltf::exportFile(TrackEditor* editor, const char* path)
{
    const char* function = "TrackEditorGltf::exportFile";
    if (!editor->getWorld()) {
        jLog::error("%s:%s: there is no scene to export the track's nodes from", function, path);
        return false;
    }
    GltfExport exporter;
    std::string name = AppData::get()->getName().c_str();
    exporter.setSource(name.empty() ? "the track" : name);
    exporter.setName(name.empty() ? "animation" : name.substr(0, name.find_last_of('.')));
    if (!exporter.write(*AppData::get()->getTrack()->getEngineTrack(), *editor->getWorld(), path)) {
        jLog::error("%s:%s", function, exporter.getError().c_str());
        return false;
    }
    for (const std::string& line : exporter.getWarnings())
        jLog::warning("%s:%s", function, line.c_str());
    return true;
}
