#pragma once

#include <chrono>

#include "data/AppData.h"
#include "editor/DataDir.h"
#include "kit/jAllocator.h"
#include "kit/jKit.h"
#include "ui/TrackEditor.h"
#include "ui/UIRoot.h"

// The Track Editor window, shown at 1600 x 900 with nothing loaded, for the benchmarks of the
// editor's own paths; the data hub is emptied when it goes.
struct EditorWindow {
    EditorWindow()
    {
        DataDir::set(KUVO_DATA_DIR);
        jKit::setDataPath(KUVO_DATA_DIR);
        root = jNew<UIRoot>(TAG, __LINE__, "EditorWindow");
        editor = jNew<TrackEditor>(TAG, __LINE__, "EditorWindow", root);
        editor->setSize(1600, 900);
        editor->show();
        update();
        paint();
    }
    ~EditorWindow()
    {
        AppData::get()->reset();
        editor->release();
        jDelete(editor, TAG, __LINE__, "~EditorWindow");
        jDelete(root, TAG, __LINE__, "~EditorWindow");
    }
    EditorWindow(const EditorWindow&) = delete;
    EditorWindow& operator=(const EditorWindow&) = delete;

    // The window's update of one 60 Hz frame: the views laid out and drawn into their canvases.
    void update() { editor->update(1.0f / 60.0f); }
    // The toolkit's pending events, among them the paint of every canvas that changed.
    void paint() { root->processEvents(); }
    // Runs a frame, adding the time of its update and of its paint (in milliseconds) to the sums.
    void frame(double& updating, double& painting)
    {
        using Clock = std::chrono::steady_clock;
        const auto start = Clock::now();
        update();
        const auto updated = Clock::now();
        paint();
        updating += std::chrono::duration<double, std::milli>(updated - start).count();
        painting += std::chrono::duration<double, std::milli>(Clock::now() - updated).count();
    }

    static constexpr const char* TAG = "bench/EditorWindow";
    UIRoot* root;
    TrackEditor* editor;
};
