#include "TrackEditorGltf.h"

#include <string>

#include "anim/GltfExport.h"
#include "anim/GltfImport.h"
#include "anim/Track.h"
#include "data/AppData.h"
#include "data/FTrack.h"
#include "io/Package.h"
#include "io/mjl.h"
#include "kit/jLog.h"
#include "ui/TrackEditor.h"

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
    // The merged track replaces the document as one step of its history, which rebuilds every
    // view of the document and keeps its file's path and name.
    Track merged;
    Package tree;
    Track* current = AppData::get()->getTrack()->getEngineTrack();
    if (!replace && (!current->save(&tree) || !merged.load(&tree, world)))
        return false;
    importer.addTo(merged);
    Package staged;
    std::string bytes, reason;
    if (!merged.save(&staged) || !mjl::write(&staged, bytes, &reason)) {
        jLog::error("%s:%s: the imported track cannot be written: %s", function, path, reason.c_str());
        return false;
    }
    return editor->replaceDocument(bytes, "step_import_gltf");
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
