// The module's entry table: how the host creates, drives and destroys the Track Editor.
#include "TrackEditorPlugin.h"

#include "TrackEditorGltf.h"
#include "TrackEditorMsg.h"
#include "anim/Track.h"
#include "data/AppData.h"
#include "data/FTrack.h"
#include "editor/ToolButton.h"
#include "kit/jLog.h"
#include "msg/MsgMngr.h"
#include "ui/TrackEditor.h"

namespace {

TrackEditor* editorOf(UIElement* element)
{
    return dynamic_cast<TrackEditor*>(element);
}

UIElement* create(UIRoot* root)
{
    if (TrackEditor::get()) {
        jLog::error("%s:%s", "kuvo_track_editor_plugin::create", "TrackEditor::get() == nullptr");
        return nullptr;
    }
    return jNew<TrackEditor>("src/TrackEditorPlugin", __LINE__, "kuvo_track_editor_plugin::create", root);
}

void setWorld(UIElement* element, World* world)
{
    if (TrackEditor* editor = editorOf(element)) {
        editor->setWorld(world);
        AppData::get()->getTrack()->getEngineTrack()->setWorld(world);
    }
}

void update(UIElement* element, float dt)
{
    if (element)
        element->update(dt);
}

bool loadTrack(UIElement* element, const char* path)
{
    TrackEditor* editor = editorOf(element);
    return editor && editor->loadAs(jString(path), jString(path), false);
}

bool loadTrackAs(UIElement* element, const char* path, const char* document, bool edited)
{
    TrackEditor* editor = editorOf(element);
    return editor && editor->loadAs(jString(path), jString(document), edited);
}

bool hasUnsavedEdits(UIElement* element)
{
    TrackEditor* editor = editorOf(element);
    return editor && editor->hasUnsavedEdits();
}

const char* getPath(UIElement* element)
{
    return editorOf(element) ? AppData::get()->getPath().c_str() : "";
}

bool saveTrackAs(UIElement* element, const char* path)
{
    TrackEditor* editor = editorOf(element);
    return editor && editor->saveAs(jString(path));
}

bool saveCopy(UIElement* element, const char* path)
{
    return editorOf(element) && AppData::get()->saveCopy(jString(path));
}

void clearTrack(UIElement* element)
{
    if (TrackEditor* editor = editorOf(element))
        editor->clear();
}

void setFileListener(UIElement* element, TrackFileListener listener, void* context)
{
    if (TrackEditor* editor = editorOf(element))
        editor->setFileListener(listener, context);
}

void setProgressListener(UIElement* element, TrackProgressListener listener, void* context)
{
    if (editorOf(element))
        AppData::get()->getLoadProgress().setListener(listener, context);
}

bool importGltf(UIElement* element, const char* path, bool replace)
{
    TrackEditor* editor = editorOf(element);
    return editor && TrackEditorGltf::importFile(editor, path, replace);
}

bool exportGltf(UIElement* element, const char* path)
{
    TrackEditor* editor = editorOf(element);
    return editor && TrackEditorGltf::exportFile(editor, path);
}

void setPlay(UIElement* element, bool play, bool loop)
{
    TrackEditor* editor = editorOf(element);
    if (!editor || AppData::get()->isEmpty())
        return;
    Track* track = AppData::get()->getTrack()->getEngineTrack();
    if (track->isLoop() != loop) {
        track->setLoop(loop);
        MsgMngr::get()->notifyHelper(TRACK_MSG_OPTION_CHANGED);
    }
    editor->setPlay(play);
    if (ToolButton* button = editor->findButton("time_play"))
        button->setChecked(play);
    if (ToolButton* button = editor->findButton("time_loop"))
        button->setChecked(loop);
}

const char* getTitle(UIElement* element)
{
    TrackEditor* editor = editorOf(element);
    return editor ? editor->getTitle().c_str() : "";
}

UIElement* findView(UIElement* element, const char* name)
{
    TrackEditor* editor = editorOf(element);
    return editor ? editor->findView(name) : nullptr;
}

void destroy(UIElement* element)
{
    TrackEditor* editor = editorOf(element);
    if (!editor)
        return;
    editor->release();
    jDelete(editor, "src/TrackEditorPlugin", __LINE__, "kuvo_track_editor_plugin::destroy");
    TrackEditor::del();
    AppData::get()->release();
}

const TrackEditorPluginApi API = {
    TrackEditorPluginApi::VERSION, create, setWorld, update, loadTrack, setPlay, getTitle, findView, destroy,
    loadTrackAs, hasUnsavedEdits, getPath, saveTrackAs, saveCopy, clearTrack, setFileListener, setProgressListener,
    importGltf, exportGltf,
};

} // namespace

const TrackEditorPluginApi* kuvo_track_editor_plugin()
{
    return &API;
}
