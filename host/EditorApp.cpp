#include "EditorApp.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>

#include "AutomationScript.h"
#include "DataLocator.h"
#include "MainWindow.h"
#include "ScriptRunner.h"
#include "Viewport.h"
#include "editor/DataDir.h"
#include "kit/jAllocator.h"
#include "kit/jKit.h"
#include "scene/Engine.h"
#include "scene/World.h"
#include "ui/UIElement.h"
#include "ui/UIHostBridge.h"
#include "ui/UIRoot.h"

namespace {

const char* const k_file = "host/EditorApp";
constexpr float k_frame = 1.0f / 60.0f;

std::string absolute(const std::string& path)
{
    std::error_code ec;
    std::filesystem::path full = std::filesystem::absolute(path, ec);
    return ec ? path : full.lexically_normal().string();
}

} // namespace

EditorApp::EditorApp(const HostOptions& options, Asking asking) : m_options(options), m_asking(asking) {}

EditorApp::~EditorApp() { shutdown(); }

int EditorApp::run()
{
    int status = start() ? loop() : 1;
    shutdown();
    return status;
}

QWidget* EditorApp::window() const
{
    return m_window;
}

bool EditorApp::fail(const std::string& message)
{
    jLog::error("%s:%s", "EditorApp::start", message.c_str());
    std::fprintf(stderr, "kuvo-editor: %s\n", message.c_str());
    return false;
}

bool EditorApp::locate_data()
{
    m_program_dir = DataLocator::executableDir();
    std::string error;
    m_data_dir = DataLocator::dataDir(m_program_dir, error);
    if (m_data_dir.empty())
        return fail(error);
    DataDir::set(m_data_dir.c_str());
    Engine::get()->setDataPath(m_data_dir.c_str());
    jKit::setDataPath(m_data_dir.c_str());
    return true;
}

bool EditorApp::start()
{
    if (!locate_data())
        return false;
    m_root = jNew<UIRoot>(k_file, __LINE__, "EditorApp::start");
    m_window = new MainWindow(
        [this](const QString& path) {
            if (!open_scene(path.toStdString()))
                show_failure("Cannot open the scene");
        },
        [this](const QString& path) {
            if (!open_track(path.toStdString()))
                show_failure("Cannot open the track");
        });
    m_window->setSaveAs([this] { save_as(); });
    m_window->setGltfCommands([this](const QString& path) { import_gltf(path); },
                              [this](const QString& path) { export_gltf(path); });
    m_window->setCloseGuard([this] { return may_quit(); });
    m_world = jNew<World>(k_file, __LINE__, "EditorApp::start");
    World::SetCurrent(m_world);
    if (!m_plugin.load(EditorPlugin::folder(m_program_dir)))
        return fail(m_plugin.getError());
    m_editor = m_plugin.api()->create(m_root);
    if (!m_editor)
        return fail("the track editor module did not create its window");
    m_window->dockEditor(UIHostBridge::widgetOf(m_editor));
    start_recovery();
    // Shown and painted first, so that a long open shows its progress in a drawn window.
    m_window->show();
    m_window->activateWindow();
    m_root->processEvents();
    if (!open_documents())
        return false;
    // Keys start out going to the editor's commands, not into whichever of its fields came first.
    m_editor->setFocus();
    offer_recovery();
    frame(0.0f);
    m_root->processEvents();
    return true;
}

bool EditorApp::open_documents()
{
    const TrackEditorPluginApi* api = m_plugin.api();
    bool sample = m_options.scene.empty() && m_options.track.empty();
    std::string scene = m_options.scene.empty() ? DataDir::resolve(DEFAULT_SCENE) : absolute(m_options.scene);
    if (!open_scene(scene)) {
        if (!start_failure("cannot open the scene " + scene))
            return false;
        show_world(); // the empty world, so that the editor and the viewport have one
    }
    if (sample) {
        // Untitled, so that a save asks where and never writes into the bundled data.
        std::string track = DataDir::resolve(DEFAULT_TRACK);
        if (!api->loadTrackAs(m_editor, track.c_str(), "", false))
            return fail("cannot open the track " + track);
        jLog::message("%s:opened track %s as an untitled copy", "EditorApp::open_documents", track.c_str());
        api->setPlay(m_editor, true, true);
        return true;
    }
    std::string track = absolute(m_options.track);
    if (m_options.track.empty() || open_track(track))
        return true;
    // A refused file would stay the document's, and a save would replace it with an empty track.
    api->clearTrack(m_editor);
    return start_failure("cannot open the track " + track);
}

bool EditorApp::start_failure(const std::string& message)
{
    if (m_options.headless)
        return fail(message);
    jLog::error("%s:%s; the editor starts with an empty document", "EditorApp::start", message.c_str());
    show_failure("Kuvo Editor");
    return true;
}

bool EditorApp::open_scene(const std::string& path)
{
    if (!m_world->load(path.c_str()))
        return false;
    m_scene_name = QString::fromStdString(std::filesystem::path(path).filename().string());
    show_world();
    jLog::message("%s:opened scene %s", "EditorApp::open_scene", path.c_str());
    return true;
}

void EditorApp::show_world()
{
    m_window->viewport()->setWorld(m_world, m_scene_name);
    // The editor binds its parameters to the nodes of the world it is given.
    m_plugin.api()->setWorld(m_editor, m_world);
}

bool EditorApp::open_track(const std::string& path)
{
    if (!m_plugin.api()->loadTrack(m_editor, path.c_str()))
        return false;
    jLog::message("%s:opened track %s", "EditorApp::open_track", path.c_str());
    return true;
}

void EditorApp::start_recovery()
{
    RecoveryStore store(RecoveryStore::defaultFolder());
    m_recovery = std::make_unique<RecoveryKeeper>(m_plugin.api(), m_editor, std::move(store));
    m_plugin.api()->setFileListener(m_editor, &EditorApp::on_file_event, this);
    m_plugin.api()->setProgressListener(m_editor, &EditorApp::on_progress, this);
    m_recovery_timer = std::make_unique<QTimer>();
    QObject::connect(m_recovery_timer.get(), &QTimer::timeout, [this] { m_recovery->save(); });
    m_recovery_timer->start(std::max(1, static_cast<int>(std::lround(m_options.recoverySeconds * 1000.0))));
}

void EditorApp::offer_recovery()
{
    RecoveryStore::Copy copy = m_recovery->store().newest();
    if (copy.path.empty())
        return;
    if (m_options.restoreRecovery || (!m_options.discardRecovery && interactive() && ask_restore(copy))) {
        if (!m_recovery->restore(copy))
            show_failure("Cannot restore the unsaved edits");
        return;
    }
    if (m_options.discardRecovery || interactive()) {
        if (m_recovery->discard(copy))
            jLog::message("%s:deleted the recovery copy %s", "EditorApp::offer_recovery", copy.path.c_str());
        return;
    }
    jLog::warning("%s:unsaved edits of %s are kept in %s: start with --restore-recovery to restore them or "
                  "--discard-recovery to delete them",
                  "EditorApp::offer_recovery", copy.document.empty() ? "an untitled track" : copy.document.c_str(),
                  copy.path.c_str());
}

bool EditorApp::ask_restore(const RecoveryStore::Copy& copy)
{
    QString document = copy.document.empty() ? "an untitled track" : QString::fromStdString(copy.document);
    QString text = QString("The editor stopped before the edits of %1 were saved. A recovery copy holds them:\n%2\n\n"
                           "Restore them? (No deletes the copy.)")
                       .arg(document, QString::fromStdString(copy.path));
    return QMessageBox::question(m_window, "Restore unsaved edits", text, QMessageBox::Yes | QMessageBox::No,
                                 QMessageBox::Yes) == QMessageBox::Yes;
}

bool EditorApp::interactive() const
{
    return !m_options.headless && m_options.script.empty() && m_options.screenshot.empty() &&
           (m_asking == Asking::Always || !m_root->isHeadless());
}

bool EditorApp::may_quit()
{
    // Runs that cannot ask quit, and the end of the run keeps the edits in a recovery copy.
    if (!interactive() || !m_plugin.api()->hasUnsavedEdits(m_editor))
        return true;
    m_recovery->save();
    QMessageBox::StandardButton answer = QMessageBox::question(
        m_window, "Unsaved edits", "The track has unsaved edits. Save them before quitting?",
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    if (answer == QMessageBox::Save)
        return save_document();
    return answer == QMessageBox::Discard; // the recovery copy keeps discarded edits for the next start
}

bool EditorApp::save_document()
{
    std::string path = m_plugin.api()->getPath(m_editor);
    if (path.empty())
        return save_as();
    if (m_plugin.api()->saveTrackAs(m_editor, path.c_str()))
        return true;
    show_failure("Cannot save the track");
    return false;
}

bool EditorApp::save_as()
{
    QFileDialog dialog(m_window, "Save Track As", QString::fromUtf8(m_plugin.api()->getPath(m_editor)),
                       "Tracks (*.anim)");
    dialog.setOption(QFileDialog::DontUseNativeDialog, true);
    dialog.setAcceptMode(QFileDialog::AcceptSave); // asks before replacing an existing file
    dialog.setDefaultSuffix("anim");
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return false;
    std::string path = dialog.selectedFiles().first().toStdString();
    if (m_plugin.api()->saveTrackAs(m_editor, path.c_str()))
        return true;
    show_failure("Cannot save the track");
    return false;
}

void EditorApp::import_gltf(const QString& path)
{
    QMessageBox box(QMessageBox::Question, "Import glTF animation",
                    "Replace the track's parameters with the animation's, or add the animation's to them?",
                    QMessageBox::Cancel, m_window);
    QPushButton* replacing = box.addButton("Replace", QMessageBox::DestructiveRole);
    QPushButton* adding = box.addButton("Add", QMessageBox::AcceptRole);
    box.setDefaultButton(adding);
    box.exec();
    if (box.clickedButton() != replacing && box.clickedButton() != adding)
        return;
    if (!m_plugin.api()->importGltf(m_editor, path.toUtf8().constData(), box.clickedButton() == replacing))
        show_failure("Cannot import the glTF animation");
}

void EditorApp::export_gltf(const QString& path)
{
    if (!m_plugin.api()->exportGltf(m_editor, path.toUtf8().constData()))
        show_failure("Cannot export the glTF animation");
}

void EditorApp::show_failure(const char* title)
{
    if (!interactive())
        return; // the log holds the reason and the run goes on
    const std::vector<jLogBuffer::Line>& lines = m_log.lines();
    auto last = std::find_if(lines.rbegin(), lines.rend(),
                             [](const jLogBuffer::Line& line) { return line.level >= jLogLevel::Error; });
    QString reason = last == lines.rend() ? QString("The log holds no reason.")
                                          : QString::fromStdString(jLog::withoutReporter(last->text));
    QMessageBox::warning(m_window, title, reason);
}

void EditorApp::on_file_event(void* context, TrackFileEvent event, const char*)
{
    auto* app = static_cast<EditorApp*>(context);
    switch (event) {
    case TRACK_FILE_DISCARDING: app->m_recovery->keepBeforeDiscard("clearing or loading a track"); break;
    case TRACK_FILE_SAVE_FAILED: app->show_failure("Cannot save the track"); break;
    case TRACK_FILE_LOAD_FAILED: app->show_failure("Cannot open the track"); break;
    }
}

void EditorApp::on_progress(void* context, const char* path, int percent)
{
    const QString file = QString::fromStdString(std::filesystem::path(path).filename().string());
    static_cast<EditorApp*>(context)->m_window->showProgress(file, percent);
}

void EditorApp::frame(float dt)
{
    Engine::get()->setFrameTime(dt);
    m_plugin.api()->update(m_editor, dt);
    m_recovery->tidy();
    m_window->showTitle(m_scene_name, QString::fromUtf8(m_plugin.api()->getTitle(m_editor)));
    m_window->viewport()->update();
}

int EditorApp::loop()
{
    if (!m_options.script.empty()) {
        AutomationScript script;
        if (!script.load(m_options.script)) {
            std::fprintf(stderr, "%s\n", script.getError().c_str());
            return 1;
        }
        ScriptRunner runner(ScriptRunner::Host{m_root, m_plugin.api(), m_editor, m_window, &m_log,
                                               [this](float dt) { frame(dt); }});
        int status = runner.run(script, m_options.script);
        if (!m_options.screenshot.empty() && !save_screenshot(m_options.screenshot))
            status = 1;
        return status;
    }
    QElapsedTimer clock;
    clock.start();
    int frames = 0;
    int status = 0;
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer, &QTimer::timeout, [&] {
        // A stall (a modal dialog, a debugger) must not make playback jump ahead.
        float dt = std::min(static_cast<float>(clock.restart()) / 1000.0f, 0.1f);
        frame(dt);
        if (!m_options.screenshot.empty() && ++frames == SCREENSHOT_FRAMES) {
            status = save_screenshot(m_options.screenshot) ? 0 : 1;
            QApplication::quit();
        }
    });
    timer.start(static_cast<int>(k_frame * 1000.0f));
    QApplication::exec();
    return status;
}

bool EditorApp::save_screenshot(const std::string& path) const
{
    if (!m_window->grab().save(QString::fromStdString(path), "PNG")) {
        jLog::error("%s:cannot write screenshot \"%s\"", "EditorApp::save_screenshot", path.c_str());
        return false;
    }
    return true;
}

void EditorApp::shutdown()
{
    m_recovery_timer.reset();
    if (m_recovery) {
        m_recovery->keepBeforeDiscard("quitting");
        m_recovery->tidy();
        m_recovery.reset();
    }
    if (m_editor) {
        m_plugin.api()->destroy(m_editor);
        m_editor = nullptr;
    }
    delete m_window;
    m_window = nullptr;
    World::SetCurrent(nullptr);
    if (m_world)
        jDelete(m_world, k_file, __LINE__, "EditorApp::shutdown");
    m_world = nullptr;
    if (m_root)
        jDelete(m_root, k_file, __LINE__, "EditorApp::shutdown");
    m_root = nullptr;
    Engine::get()->setDataPath("");
    jKit::setDataPath("");
}
