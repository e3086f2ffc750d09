#pragma once

// The plug-in boundary between the host editor and the track editor module. The host loads the
// module's shared library with dlopen, looks up kuvo_track_editor_plugin and drives the editor only
// through the returned table, so the module's classes stay private to it.

class UIRoot;
class UIElement;
class World;

// What the editor tells the host about its document's file, so that the host can keep the user's
// work safe around the editor's own commands.
enum TrackFileEvent : int {
    TRACK_FILE_DISCARDING = 0,  // the document is about to be emptied (clear, or load of another file)
    TRACK_FILE_SAVE_FAILED = 1, // the save command could not write path (the reason is logged)
    TRACK_FILE_LOAD_FAILED = 2, // the load command could not open path (the reason is logged)
};

// Hears the editor's file events; path is "" for TRACK_FILE_DISCARDING.
using TrackFileListener = void (*)(void* context, TrackFileEvent event, const char* path);

// Hears how far the open of the track file at path has come: 0 when it starts, then rising whole
// percents, each once, and 100 when it is over (opened or not).
using TrackProgressListener = void (*)(void* context, const char* path, int percent);

struct TrackEditorPluginApi {
    // Raised when the table changes incompatibly; the host refuses a module of another version.
    static constexpr int VERSION = 3;

    int version;
    // Builds the Track Editor window for the host's root and makes it the editor instance.
    // Returns the window, or null (logged) when one already exists.
    UIElement* (*create)(UIRoot* root);
    // Hands over the world the editor animates and binds to (may be null).
    void (*setWorld)(UIElement* editor, World* world);
    // Runs one frame of dt seconds: playback and the window's per-frame work.
    void (*update)(UIElement* editor, float dt);
    // Opens a track file as the current document; false (logged) when it cannot be loaded.
    bool (*loadTrack)(UIElement* editor, const char* path);
    // Starts or stops playback; loop sets the track's loop switch. Does nothing for an empty track.
    void (*setPlay)(UIElement* editor, bool play, bool loop);
    // Returns the window's title text.
    const char* (*getTitle)(UIElement* editor);
    // Returns a view of the window by name ("lines", "rows", "timebar", "curves") for scripted
    // input in the view's own coordinates, or null when the window has no such view.
    UIElement* (*findView)(UIElement* editor, const char* name);
    // Releases and frees the window and forgets the instance.
    void (*destroy)(UIElement* editor);
    // Opens the track file at path as the document of the file named document: a recovery copy of
    // it, or a template when document is "" (the document stays untitled, so a save asks where).
    // edited marks the document as holding unsaved edits. Fails as loadTrack does.
    bool (*loadTrackAs)(UIElement* editor, const char* path, const char* document, bool edited);
    // True when the document holds edits that no save has written; a failed save leaves them
    // unsaved here although the title loses its mark.
    bool (*hasUnsavedEdits)(UIElement* editor);
    // Returns the path of the document's file, "" while it is untitled.
    const char* (*getPath)(UIElement* editor);
    // Saves the document to path, which becomes its file. Returns false (logged with the path and
    // the reason) when it cannot be written; the document, its path and its mark are then unchanged.
    bool (*saveTrackAs)(UIElement* editor, const char* path);
    // Writes the document to path atomically and leaves its path and mark alone (a recovery copy).
    // Returns false (logged with the path and the reason) on failure.
    bool (*saveCopy)(UIElement* editor, const char* path);
    // Empties the document as the Clear command does, the listener hearing TRACK_FILE_DISCARDING
    // first; the document is then untitled.
    void (*clearTrack)(UIElement* editor);
    // Makes listener hear the file events of the editor's own commands with context; null stops it.
    void (*setFileListener)(UIElement* editor, TrackFileListener listener, void* context);
    // Makes listener hear the progress of every open of a track file (the host's and the editor's
    // own Load) with context; null stops it.
    void (*setProgressListener)(UIElement* editor, TrackProgressListener listener, void* context);
    // Reads the animation of a glTF file (.gltf or .glb) into the document: its parameters replace
    // the document's (replace) or are added to them, and the document is marked modified. Returns
    // false (logged with the path and the problem) when it cannot be read; the document is then
    // unchanged.
    bool (*importGltf)(UIElement* editor, const char* path, bool replace);
    // Writes the document's node positions, rotations and scales as a glTF animation to path (.glb
    // binary, else .gltf); parameters glTF cannot carry are logged as warnings. Returns false
    // (logged with the reason) when nothing can be exported or the file cannot be written.
    bool (*exportGltf)(UIElement* editor, const char* path);
};

extern "C" {
// Returns the module's entry table; never null.
const TrackEditorPluginApi* kuvo_track_editor_plugin();
}
