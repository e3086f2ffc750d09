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

    MainWindow(OpenFile openScene, OpenFile openTrack);

    Viewport* viewport() const { return m_viewport; }
    LogPanel* logPanel() const { return m_log; }
    // Puts the editor's widget into the Track Editor dock (the caller keeps owning it); null
    // empties the dock.
    void dockEditor(QWidget* editor);
    // Shows the scene's name and the editor's title in the window's title, when they changed.
    void showTitle(const QString& scene, const QString& editorTitle);

private:
    void make_menu();
    void choose_file(const QString& caption, const QString& filter, const OpenFile& open);

    OpenFile m_open_scene;
    OpenFile m_open_track;
    Viewport* m_viewport;
    LogPanel* m_log;
    QDockWidget* m_editor_dock;
    QString m_title;
};
