#pragma once

#include <QMainWindow>
#include <functional>

class LogPanel;
class QDockWidget;
class Viewport;

// The host's main window: the viewport in the middle, the Track Editor docked on the right, the
// log panel along the bottom, and the File menu.
class MainWindow : public QMainWindow {
public:
    // Called with the file the user chose in File > Open Scene… or Open Track….
    using OpenFile = std::function<void(const QString&)>;

    // Answers whether the window may close (the user's unsaved edits are dealt with).
    using CloseGuard = std::function<bool()>;

    // How long an error stays in the status bar.
    static constexpr int ERROR_SHOW_MS = 8000;

    MainWindow(OpenFile openScene, OpenFile openTrack);

    Viewport* viewport() const { return m_viewport; }
    LogPanel* logPanel() const { return m_log; }
    // Puts the editor's widget into the Track Editor dock (the caller keeps owning it); null
    // empties the dock.
    void dockEditor(QWidget* editor);
    // Shows the scene's name and the editor's title in the window's title, when they changed.
    void showTitle(const QString& scene, const QString& editorTitle);
    // Makes File > Save Track As… (Ctrl+Shift+S) call saveAs.
    void setSaveAs(std::function<void()> saveAs);
    // Makes File > Import glTF animation… call importGltf with the chosen .gltf or .glb file, and
    // File > Export glTF animation… call exportGltf with the chosen target.
    void setGltfCommands(OpenFile importGltf, OpenFile exportGltf);
    // Makes every close of the window ask guard first; a false answer keeps the window open.
    void setCloseGuard(CloseGuard guard);
    // Shows text in red in the status bar for ERROR_SHOW_MS.
    void showError(const QString& text);
    // Shows in the status bar, at once, how far the open of file has come (percent below 100), or
    // that the window is ready again (100).
    void showProgress(const QString& file, int percent);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void make_menu();
    void choose_file(const QString& caption, const QString& filter, const OpenFile& open);
    // Asks for a file to write (confirming the replacement of an existing one) and calls save.
    void choose_target(const QString& caption, const QString& filter, const QString& suffix, const OpenFile& save);

    OpenFile m_open_scene;
    OpenFile m_open_track;
    std::function<void()> m_save_as;
    OpenFile m_import_gltf;
    OpenFile m_export_gltf;
    CloseGuard m_close_guard;
    Viewport* m_viewport;
    LogPanel* m_log;
    QDockWidget* m_editor_dock;
    QString m_title;
};
