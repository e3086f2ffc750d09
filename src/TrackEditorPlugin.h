#pragma once

// The plug-in boundary between the host editor and the track editor module. The host loads the
// module's shared library with dlopen, looks up kuvo_track_editor_plugin and drives the editor only
// through the returned table, so the module's classes stay private to it.

class UIRoot;
class UIElement;
class World;

struct TrackEditorPluginApi {
    // Raised when the table changes incompatibly; the host refuses a module of another version.
    static constexpr int VERSION = 1;

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
};

extern "C" {
// Returns the module's entry table; never null.
const TrackEditorPluginApi* kuvo_track_editor_plugin();
}
