#include "TrackEditorGltf.h"

#include <unistd.h>

#include <cstdio>
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

// A track file of its own in the system's temporary folder, removed on destruction.
class ScratchFile {
public:
    ScratchFile()
    {
        const char* folder = std::getenv("TMPDIR");
        std::string pattern = std::string(folder && *folder ? folder : "/tmp") + "/kuvo-import-XXXXXX";
        int fd = mkstemp(pattern.data());
        if (fd >= 0) {
            close(fd);
            m_path = pattern;
        }
    }
    ~ScratchFile()
    {
        if (!m_path.empty())
            std::remove(m_path.c_str());
    }
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    // The file's path; empty when it could not be made.
    const std::string& path() const { return m_path; }

private:
    std::string m_path;
};

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
    ScratchFile scratch;
    std::string reason;
    if (scratch.path().empty() || !merged.saveFile(scratch.path().c_str(), &reason)) {
        jLog::error("%s:%s: the imported track cannot be staged: %s", function, path, reason.c_str());
        return false;
    }
    jString document = AppData::get()->getPath(); // the load empties the one it was read from
    return editor->loadAs(jString(scratch.path().c_str()), document, true);
}

bool TrackEditorGltf::exportFile(TrackEditor* editor, const char* path)
{
    const char* function = "TrackEditorGltf::exportFile";
    if (!editor->getWorld()) {
        jLog::error("%s:%s: there is no scene to export the track's nodes from", function, path);
        return false;
    }
    GltfExport exporter;
    jString name = AppData::get()->getName();
    exporter.setName(name.nempty() ? name.c_str() : "animation");
    exporter.setSource(name.nempty() ? name.c_str() : "the track");
    if (!exporter.write(*AppData::get()->getTrack()->getEngineTrack(), *editor->getWorld(), path)) {
        jLog::error("%s:%s", function, exporter.getError().c_str());
        return false;
    }
    for (const std::string& line : exporter.getWarnings())
        jLog::warning("%s:%s", function, line.c_str());
    return true;
}
