#pragma once

class TrackEditor;

// The editor's glTF commands on its document: importing an animation into it and exporting it, with
// the engine's glTF mapping (docs/gltf.md) and the editor's world for binding.
class TrackEditorGltf {
public:
    // Reads the animation of a glTF file into the document: its parameters replace the document's
    // (replace) or are added to them. The document keeps its file and is marked modified; the
    // import is one step that undo takes back. Returns false, with "path: problem" logged, when
    // the file cannot be read; the document is then unchanged.
    static bool importFile(TrackEditor* editor, const char* path, bool replace);
    // Writes the document's node animation as glTF to path (.glb binary, else .gltf) with the
    // editor's world. Returns false, logged with the reason, when there is no world, nothing to
    // export or the file cannot be written; the file is then as it was. Parameters glTF cannot
    // carry are logged as warnings.
    static bool exportFile(TrackEditor* editor, const char* path);
};
