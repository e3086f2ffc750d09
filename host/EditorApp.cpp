#include "EditorApp.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTimer>
#include <cstdio>
#include <filesystem>

#include "AutomationScript.h"
#include "DataLocator.h"
#include "MainWindow.h"
#include "ScriptRunner.h"
#include "TrackEditorPlugin.h"
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

EditorApp::EditorApp(const HostOptions& options) : m_options(options) {}

EditorApp::~EditorApp() { shutdown(); }

int EditorApp::run()
{
    int status = start() ? loop() : 1;
    shutdown();
    return status;
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
    m_window = new MainWindow([this](const QString& path) { open_scene(path.toStdString()); },
                              [this](const QString& path) { open_track(path.toStdString()); });
    m_world = jNew<World>(k_file, __LINE__, "EditorApp::start");
    World::SetCurrent(m_world);
    if (!m_plugin.load(EditorPlugin::folder(m_program_dir)))
        return fail(m_plugin.getError());
    const TrackEditorPluginApi* api = m_plugin.api();
    m_editor = api->create(m_root);
    if (!m_editor)
        return fail("the track editor module did not create its window");
    m_window->dockEditor(UIHostBridge::widgetOf(m_editor));
    bool sample = m_options.scene.empty() && m_options.track.empty();
    std::string scene = m_options.scene.empty() ? DataDir::resolve(DEFAULT_SCENE) : absolute(m_options.scene);
    if (!open_scene(scene))
        return fail("cannot open the scene " + scene);
    std::string track = m_options.track.empty() ? (sample ? DataDir::resolve(DEFAULT_TRACK) : "") : absolute(m_options.track);
    if (!track.empty() && !open_track(track))
        return fail("cannot open the track " + track);
    if (sample)
        api->setPlay(m_editor, true, true);
    m_window->show();
    m_window->activateWindow();
    // Keys start out going to the editor's commands, not into whichever of its fields came first.
    m_editor->setFocus();
    frame(0.0f);
    m_root->processEvents();
    return true;
}

bool EditorApp::open_scene(const std::string& path)
{
    if (!m_world->load(path.c_str()))
        return false;
    m_scene_name = QString::fromStdString(std::filesystem::path(path).filename().string());
    m_window->viewport()->setWorld(m_world, m_scene_name);
    // The editor binds its parameters to the nodes of the world it is given.
    m_plugin.api()->setWorld(m_editor, m_world);
    jLog::message("%s:opened scene %s", "EditorApp::open_scene", path.c_str());
    return true;
}

bool EditorApp::open_track(const std::string& path)
{
    if (!m_plugin.api()->loadTrack(m_editor, path.c_str()))
        return false;
    jLog::message("%s:opened track %s", "EditorApp::open_track", path.c_str());
    return true;
}

void EditorApp::frame(float dt)
{
    Engine::get()->setFrameTime(dt);
    m_plugin.api()->update(m_editor, dt);
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
