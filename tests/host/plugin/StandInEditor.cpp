// A stand-in for the track editor module with the same entry table, so the host's loader, frame
// loop, script runner and dialogs are tested without the module: a window with a "key" tool button
// that marks the document changed, a "clear" text button that resets it, and a "lines" view that
// counts the clicks it receives; the document's file is the one last opened as or saved to, and
// the title names it as the module's does. STAND_IN_VERSION lets a build claim another table version.
#include <fstream>
#include <string>

#include "TrackEditorPlugin.h"
#include "editor/Locale.h"
#include "editor/ToolButton.h"
#include "kit/jAllocator.h"
#include "kit/jLog.h"
#include "ui/UIButton.h"
#include "ui/UIWindow.h"

namespace {

const char* const k_file = "tests/host/plugin/StandInEditor";

// The view counts presses and logs each one, so scripts can see where their clicks landed.
class StandInView : public UIElement {
public:
    explicit StandInView(UIRoot* root) : UIElement(root) { setMinSize(300, 200); }

    bool onMouseDown(const UIEventMouse* e) override
    {
        int x = e->x, y = e->y;
        screenToLocal(x, y);
        jLog::message("%s:view press at %d, %d", "StandInView::onMouseDown", x, y);
        return true;
    }
};

class StandInEditor : public UIWindow {
public:
    explicit StandInEditor(UIRoot* root) : UIWindow(root, "", 800, 600)
    {
        setTitleable(true);
        auto* key = jNew<ToolButton>(k_file, __LINE__, "StandInEditor::StandInEditor", root,
                                     "data/core/editor/gui/key.png");
        key->sigClick = bind(&StandInEditor::cb_key, this);
        addChild(key);
        auto* clear = jNew<UIButton>(k_file, __LINE__, "StandInEditor::StandInEditor", root, tr("clear"));
        clear->sigClick = bind(&StandInEditor::cb_clear, this);
        addChild(clear);
        m_view = jNew<StandInView>(k_file, __LINE__, "StandInEditor::StandInEditor", root);
        addChild(m_view, UI_EXPAND_BOTH);
        show_title();
    }

    bool onKeyPress(const UIEventKey* e) override
    {
        jLog::message("%s:key %d modifiers %d", "StandInEditor::onKeyPress", e->key, e->modifiers);
        return UIWindow::onKeyPress(e);
    }

    void show_title()
    {
        setTitle(((m_path.empty() ? "Anim - New Track" : m_path + " - Anim") + (m_modified ? "*" : "")).c_str());
    }
    void cb_key(const UIEventMouse*, UIElement*)
    {
        m_modified = true;
        show_title();
    }
    void cb_clear(const UIEventMouse*, UIElement*)
    {
        m_modified = false;
        show_title();
    }

    StandInView* m_view = nullptr;
    bool m_modified = false;
    std::string m_path;
    float m_time = 0.0f;
};

UIElement* create(UIRoot* root) { return jNew<StandInEditor>(k_file, __LINE__, "create", root); }
void set_world(UIElement*, World*) {}
void update(UIElement* editor, float dt)
{
    static_cast<StandInEditor*>(editor)->m_time += dt;
    editor->update(dt);
}
bool load_track(UIElement*, const char* path)
{
    jLog::message("%s:loaded %s", "StandInEditor::loadTrack", path);
    return true;
}
void set_play(UIElement*, bool, bool) {}
const char* get_title(UIElement* editor) { return static_cast<StandInEditor*>(editor)->getTitle().c_str(); }
UIElement* find_view(UIElement* editor, const char* name)
{
    return std::string(name) == "lines" ? static_cast<StandInEditor*>(editor)->m_view : nullptr;
}
void destroy(UIElement* editor)
{
    editor->release();
    jDelete(editor, k_file, __LINE__, "destroy");
}

bool load_track_as(UIElement* editor, const char* path, const char* document, bool edited)
{
    jLog::message("%s:loaded %s as \"%s\"%s", "StandInEditor::loadTrackAs", path, document, edited ? " edited" : "");
    auto* standIn = static_cast<StandInEditor*>(editor);
    standIn->m_path = document;
    standIn->m_modified = edited;
    standIn->show_title();
    return true;
}
bool has_unsaved_edits(UIElement* editor) { return static_cast<StandInEditor*>(editor)->m_modified; }
const char* get_path(UIElement* editor) { return static_cast<StandInEditor*>(editor)->m_path.c_str(); }
// The stand-in's document is its modified switch, written as one line.
bool save_copy(UIElement* editor, const char* path)
{
    std::ofstream out(path, std::ios::binary);
    out << (static_cast<StandInEditor*>(editor)->m_modified ? "modified\n" : "clean\n");
    if (out.flush())
        return true;
    jLog::error("%s:cannot write %s", "StandInEditor::saveCopy", path);
    return false;
}
bool save_track_as(UIElement* editor, const char* path)
{
    if (!save_copy(editor, path))
        return false;
    static_cast<StandInEditor*>(editor)->m_path = path;
    static_cast<StandInEditor*>(editor)->cb_clear(nullptr, nullptr);
    return true;
}
void clear_track(UIElement* editor) { static_cast<StandInEditor*>(editor)->cb_clear(nullptr, nullptr); }
void set_file_listener(UIElement*, TrackFileListener, void*) {}
void set_progress_listener(UIElement*, TrackProgressListener, void*) {}
// The stand-in has no tracks to import into or export: both commands fail as a bad file does.
bool import_gltf(UIElement*, const char* path, bool)
{
    jLog::error("%s:%s: the stand-in imports nothing", "StandInEditor::importGltf", path);
    return false;
}
bool export_gltf(UIElement*, const char* path)
{
    jLog::error("%s:%s: the stand-in exports nothing", "StandInEditor::exportGltf", path);
    return false;
}

const TrackEditorPluginApi k_api = {STAND_IN_VERSION, create, set_world, update, load_track, set_play, get_title,
                                    find_view, destroy, load_track_as, has_unsaved_edits, get_path, save_track_as,
                                    save_copy, clear_track, set_file_listener, set_progress_listener, import_gltf,
                                    export_gltf};

} // namespace

extern "C" const TrackEditorPluginApi* kuvo_track_editor_plugin()
{
    return &k_api;
}
