#pragma once

#include "kit/jString.h"
#include "scene/MaterialManager.h"

// The process-wide engine state the editor reads: the materials, the time of the current frame,
// where the editor's icons live and the data folder that relative paths start from.
class Engine {
public:
    // Returns the engine.
    static Engine* get();

    // Returns the engine's materials.
    MaterialManager* getMaterialManager() { return &m_materials; }

    // The duration in seconds of the frame being updated; the host sets it before each update.
    float getFrameTime() const { return m_frame_time; }
    void setFrameTime(float seconds) { m_frame_time = seconds; }

    // Returns the folder of the editor's icons, "data/core/editor/gui/".
    const char* getEditorIconPath() const { return "data/core/editor/gui/"; }

    // The data folder that relative file paths (meshes, nested tracks) start from; empty means the
    // working directory.
    const jString& getDataPath() const { return m_data_path; }
    // Sets the data folder; an empty path frees the old text, so nothing stays allocated.
    void setDataPath(const jString& path);

private:
    Engine() = default;

    MaterialManager m_materials;
    float m_frame_time = 0.0f;
    jString m_data_path;
};
