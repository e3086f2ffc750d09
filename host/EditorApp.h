#pragma once

#include <QString>
#include <memory>
#include <string>

#include "CommandLine.h"
#include "EditorPlugin.h"
#include "RecoveryKeeper.h"
#include "TrackEditorPlugin.h"
#include "kit/jLog.h"

class MainWindow;
class QTimer;
class QWidget;
class UIElement;
class UIRoot;
class World;

// The running host: finds the data, loads the track editor module, opens the scene and the track,
// docks the editor in the main window, and drives frames from a 60 Hz timer or from a script. It
// keeps the user's work safe around the editor's own commands: the bundled sample opens untitled,
// recovery copies are written while edits are unsaved and offered at the next start, quitting asks
// about unsaved edits, and failed saves and loads are shown.
class EditorApp {
public:
    // The track that plays when no scene or track is named, found under the data folder.
    static constexpr const char* DEFAULT_TRACK = "data/samples/demo.anim";
    static constexpr const char* DEFAULT_SCENE = "data/samples/demo.world";
    // Frames shown before --screenshot captures the window.
    static constexpr int SCREENSHOT_FRAMES = 30;

    // Whether dialogs may wait for an answer on a platform without a display (offscreen, minimal).
    // The program never lets them, for nobody could answer; a test answers them from its own event loop.
    enum class Asking { OnDisplay, Always };

    // Needs the QApplication to exist.
    explicit EditorApp(const HostOptions& options, Asking asking = Asking::OnDisplay);
    ~EditorApp();
    EditorApp(const EditorApp&) = delete;
    EditorApp& operator=(const EditorApp&) = delete;

    // Runs until the user quits or the script ends and releases everything the run made. Returns
    // the exit status: 0, 1 when the start failed (with a message on stderr) or a script check
    // failed. A scene or track that cannot be opened fails the start only in --headless runs;
    // otherwise the editor starts with an empty document and shows the error.
    int run();
    // Starts the editor as run() does, up to the window shown and the recovery copy dealt with,
    // without entering the loop; the destructor releases it. Returns false (message on stderr) when
    // the start failed.
    bool start();

    // Returns the main window; null before start().
    QWidget* window() const;

    // Advances the program by one frame of dt seconds: the engine's frame time, the editor's
    // update and a viewport repaint.
    void frame(float dt);

private:
    bool locate_data();
    bool open_scene(const std::string& path);
    bool open_track(const std::string& path);
    bool open_documents();
    void show_world();
    // Fails the start in --headless runs; otherwise shows the error and returns true.
    bool start_failure(const std::string& message);
    void start_recovery();
    void offer_recovery();
    bool ask_restore(const RecoveryStore::Copy& copy);
    // True when dialogs may wait for the user: no --headless, no script, no screenshot run, and a
    // display unless Asking::Always.
    bool interactive() const;
    // Answers whether the window may close: asks Save, Discard, Cancel about unsaved edits (only
    // when interactive; other runs keep them in a recovery copy).
    bool may_quit();
    bool save_document();
    bool save_as();
    // Imports a glTF animation into the document, asking first whether it replaces the document's
    // parameters or is added to them.
    void import_gltf(const QString& path);
    void export_gltf(const QString& path);
    // Shows a failed file command's logged reason in a message box when interactive.
    void show_failure(const char* title);
    static void on_file_event(void* context, TrackFileEvent event, const char* path);
    // Shows the progress of an open of a track file in the status bar.
    static void on_progress(void* context, const char* path, int percent);
    int loop();
    bool save_screenshot(const std::string& path) const;
    void shutdown();
    // Prints a start failure to stderr (and the log); returns false.
    bool fail(const std::string& message);

    HostOptions m_options;
    Asking m_asking;
    // Attached first, so scripts see every line the run writes.
    jLogBuffer m_log;
    std::string m_program_dir;
    std::string m_data_dir;
    UIRoot* m_root = nullptr;
    MainWindow* m_window = nullptr;
    World* m_world = nullptr;
    QString m_scene_name;
    EditorPlugin m_plugin;
    UIElement* m_editor = nullptr;
    std::unique_ptr<RecoveryKeeper> m_recovery;
    std::unique_ptr<QTimer> m_recovery_timer;
};
