#include "MainWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFileDialog>
#include <QMenuBar>
#include <QStatusBar>

#include "LogPanel.h"
#include "Viewport.h"
#include "editor/DataDir.h"

namespace {

// Dock titles and the menu bar in the toolkit's dark greys, a shade apart from the panels.
const char* const k_style =
    "QMainWindow::separator { background: #19191b; width: 4px; height: 4px; }"
    "QDockWidget { color: #d8d8dc; font-weight: bold; }"
    "QDockWidget::title { background: #26262a; padding: 5px 8px; border-bottom: 1px solid #19191b; }"
    "QMenuBar { background: #26262a; border-bottom: 1px solid #19191b; }"
    "QMenuBar::item:selected { background: #3d6fb4; }"
    "QStatusBar { background: #26262a; color: #a0a0a8; }";

QDockWidget* make_dock(const QString& title, const char* name, QWidget* parent)
{
    auto* dock = new QDockWidget(title, parent);
    dock->setObjectName(name);
    dock->setFeatures(QDockWidget::DockWidgetMovable | QDockWidget::DockWidgetFloatable);
    return dock;
}

} // namespace

MainWindow::MainWindow(OpenFile openScene, OpenFile openTrack)
    : m_open_scene(std::move(openScene)), m_open_track(std::move(openTrack))
{
    setObjectName("kuvo_main_window");
    setStyleSheet(k_style);
    setDockNestingEnabled(true);
    m_viewport = new Viewport(this);
    setCentralWidget(m_viewport);

    m_editor_dock = make_dock("Track Editor", "track_editor_dock", this);
    addDockWidget(Qt::RightDockWidgetArea, m_editor_dock);

    auto* logDock = make_dock("Log", "log_dock", this);
    m_log = new LogPanel(logDock);
    logDock->setWidget(m_log);
    addDockWidget(Qt::BottomDockWidgetArea, logDock);
    setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);

    resizeDocks({m_editor_dock}, {860}, Qt::Horizontal);
    resizeDocks({logDock}, {150}, Qt::Vertical);
    make_menu();
    m_log->setErrorShown([this](const QString& text) { showError(text); });
    // An error's red goes with its text.
    connect(statusBar(), &QStatusBar::messageChanged, this, [this](const QString& text) {
        if (text.isEmpty())
            statusBar()->setStyleSheet(QString());
    });
    statusBar()->showMessage("Ready");
    resize(1600, 900);
}

void MainWindow::make_menu()
{
    QMenu* file = menuBar()->addMenu("&File");
    QAction* scene = file->addAction("Open &Scene…");
    connect(scene, &QAction::triggered, this,
            [this] { choose_file("Open Scene", "Scenes (*.world)", m_open_scene); });
    QAction* track = file->addAction("Open &Track…");
    connect(track, &QAction::triggered, this,
            [this] { choose_file("Open Track", "Tracks (*.anim)", m_open_track); });
    QAction* saveAs = file->addAction("Save Track &As…");
    saveAs->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S));
    connect(saveAs, &QAction::triggered, this, [this] {
        if (m_save_as)
            m_save_as();
    });
    file->addSeparator();
    QAction* importGltf = file->addAction("&Import glTF animation…");
    connect(importGltf, &QAction::triggered, this, [this] {
        if (m_import_gltf)
            choose_file("Import glTF animation", "glTF (*.gltf *.glb)", m_import_gltf);
    });
    QAction* exportGltf = file->addAction("&Export glTF animation…");
    connect(exportGltf, &QAction::triggered, this, [this] {
        if (m_export_gltf)
            choose_target("Export glTF animation", "glTF (*.gltf *.glb)", "gltf", m_export_gltf);
    });
    file->addSeparator();
    QAction* quit = file->addAction("&Quit");
    quit->setShortcut(QKeySequence::Quit);
    connect(quit, &QAction::triggered, this, &QWidget::close);
}

void MainWindow::choose_file(const QString& caption, const QString& filter, const OpenFile& open)
{
    QString samples = QString::fromStdString(DataDir::resolve("data/samples"));
    QString path = QFileDialog::getOpenFileName(this, caption, samples, filter);
    if (!path.isEmpty())
        open(path);
}

void MainWindow::choose_target(const QString& caption, const QString& filter, const QString& suffix,
                               const OpenFile& save)
{
    QFileDialog dialog(this, caption, QString(), filter);
    dialog.setOption(QFileDialog::DontUseNativeDialog, true);
    dialog.setAcceptMode(QFileDialog::AcceptSave); // asks before replacing an existing file
    dialog.setDefaultSuffix(suffix);
    if (dialog.exec() == QDialog::Accepted && !dialog.selectedFiles().isEmpty())
        save(dialog.selectedFiles().first());
}

void MainWindow::setGltfCommands(OpenFile importGltf, OpenFile exportGltf)
{
    m_import_gltf = std::move(importGltf);
    m_export_gltf = std::move(exportGltf);
}

void MainWindow::setSaveAs(std::function<void()> saveAs)
{
    m_save_as = std::move(saveAs);
}

void MainWindow::setCloseGuard(CloseGuard guard)
{
    m_close_guard = std::move(guard);
}

void MainWindow::showError(const QString& text)
{
    statusBar()->setStyleSheet("QStatusBar { color: #f05a5a; }");
    statusBar()->showMessage(text, ERROR_SHOW_MS);
}

void MainWindow::showProgress(const QString& file, int percent)
{
    if (percent < 100)
        statusBar()->showMessage(QString("Opening %1… %2 %").arg(file).arg(percent));
    else
        statusBar()->showMessage("Ready");
    // The open holds the event loop: paint the status bar now.
    statusBar()->repaint();
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    if (m_close_guard && !m_close_guard())
        event->ignore();
    else
        event->accept();
}

void MainWindow::dockEditor(QWidget* editor)
{
    m_editor_dock->setWidget(editor);
}

void MainWindow::showTitle(const QString& scene, const QString& editorTitle)
{
    QString title = QString("%1 - %2 - Kuvo Editor").arg(editorTitle, scene);
    if (title == m_title)
        return;
    m_title = title;
    setWindowTitle(title);
}
