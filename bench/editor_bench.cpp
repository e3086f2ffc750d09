// The Track Editor with the tracks that motion capture and baked simulations give: argument 0 is
// 1,000 float parameters of 1,000 keys each, 1 is one parameter of 1,000,000 keys.
// EditorOpen is what a user waits for: `kuvo-editor --headless --track FILE` from process start, the
// file opened (the engine track, the document's parameters and keys, their rows, key lines and
// marks), two frames painted, to the exit that releases it all; argument -1, the empty editor, is
// its peer. EditorClear does the same and presses Clear before quitting: the difference is the
// clear. Each reports the editor process's peak resident memory (peak_mb, from getrusage).
// AnimInfo runs `kuvo-anim info` on the 1,000 x 1,000 file, as a pipeline does, start to exit.
// EditorFrame runs one frame of the window in which the visible range moved (so every visible mark
// moves and every visible row is laid out again) and paints the row tree and the key lines.
#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "anim/Track.h"
#include "anim/TrackParameterFloat.h"
#include "data/AppData.h"
#include "kit/jAllocator.h"
#include "msg/MsgMngr.h"
#include "EditorWindow.h"
#include "ui/TrackEditor.h"
#include "ui/UIAutomation.h"
#include "ui/UICanvas.h"
#include "ui/UIRoot.h"
#include "ui/UITrackLinePanel.h"
#include "ui/UITrackRowPanel.h"

namespace {

const bool s_offscreen = setenv("QT_QPA_PLATFORM", "offscreen", 1) == 0;
constexpr const char* FILE_TAG = "bench/editor";
constexpr int PARAMETERS = 1000;
constexpr int KEYS = 1000;

// Writes the track of the shape (0: 1,000 x 1,000 keys, 1: 1 x 1,000,000 keys) to path.
bool writeTrack(int shape, const char* path)
{
    const int parameters = shape == 0 ? PARAMETERS : 1;
    const int keys = shape == 0 ? KEYS : PARAMETERS * KEYS;
    Track track;
    std::mt19937 rng(6);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    float end = 0.0f;
    for (int i = 0; i < parameters; ++i) {
        auto* p = jNew<TrackParameterFloat>(FILE_TAG, __LINE__, "bigTrack");
        float t = 0.0f;
        for (int k = 0; k < keys; ++k, t += 0.05f + 0.1f * unit(rng))
            p->appendKey(t, unit(rng), vec4(-0.02f, 0.0f, 0.02f, 0.0f), TRACK_KEY_CONSTANT + k % 5);
        p->setTypeName("Light.intensity");
        p->setNodeID(i);
        track.addParameter(p);
        end = std::max(end, t);
    }
    track.setEndTime(shape == 0 ? 100.0f : end);
    return track.saveFile(path);
}

// The track file of the shape, written once per run. A child process writes it: a program started
// from this one reports at least this one's peak memory as its own (the kernel keeps the peak across
// the start), so this one never holds a large track.
const std::string& bigTrack(int shape = 0)
{
    static std::string paths[2];
    std::string& path = paths[shape];
    if (!path.empty())
        return path;
    path = shape == 0 ? "/tmp/kuvo_editor_bench.anim" : "/tmp/kuvo_editor_bench_1m.anim";
    const pid_t writer = fork();
    if (writer == 0)
        _exit(writeTrack(shape, path.c_str()) ? 0 : 1);
    int status = 0;
    if (writer < 0 || waitpid(writer, &status, 0) != writer || !WIFEXITED(status) || WEXITSTATUS(status) != 0)
        path.clear();
    return path;
}

bool ready(benchmark::State& state, int shape)
{
    if (s_offscreen && !bigTrack(shape).empty())
        return true;
    state.SkipWithError("no offscreen platform or no track file");
    return false;
}

// A host script of these lines, written once to /tmp under name.
std::string script(const char* name, const char* lines)
{
    const std::string path = std::string("/tmp/kuvo_editor_bench_") + name + ".script";
    if (FILE* out = std::fopen(path.c_str(), "w")) {
        std::fputs(lines, out);
        std::fclose(out);
    }
    return path;
}

// Runs the program of the build with args, its output dropped; returns its peak resident memory
// in megabytes, or a negative number when it did not exit with 0.
double run(const char* program, std::vector<std::string> args)
{
    const std::string path = std::string(KUVO_BIN_DIR) + "/" + program;
    args.insert(args.begin(), path);
    std::vector<char*> argv;
    for (std::string& a : args)
        argv.push_back(a.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t quiet;
    posix_spawn_file_actions_init(&quiet);
    posix_spawn_file_actions_addopen(&quiet, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&quiet, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t pid = 0;
    int status = 0;
    rusage usage{};
    const bool ran = posix_spawn(&pid, path.c_str(), &quiet, nullptr, argv.data(), environ) == 0 &&
                     wait4(pid, &status, 0, &usage) == pid && WIFEXITED(status) && WEXITSTATUS(status) == 0;
    posix_spawn_file_actions_destroy(&quiet);
    return ran ? double(usage.ru_maxrss) / 1024.0 : -1.0;
}

// The editor with the shape's track (none for -1) running lines, timed from start to exit.
void runEditor(benchmark::State& state, const char* name, const char* lines)
{
    const int shape = int(state.range(0));
    if (shape >= 0 && !ready(state, shape))
        return;
    std::vector<std::string> args = {"--headless", "--script", script(name, lines)};
    if (shape >= 0)
        args.insert(args.end(), {"--track", bigTrack(shape)});
    double peak = 0.0;
    for (auto _ : state) {
        peak = run("kuvo-editor", args);
        if (peak < 0.0)
            state.SkipWithError("the editor failed");
    }
    state.counters["peak_mb"] = peak;
    state.counters["file_mb"] = shape >= 0 ? double(std::filesystem::file_size(bigTrack(shape))) / (1024.0 * 1024.0) : 0.0;
}

void EditorOpen(benchmark::State& state) { runEditor(state, "open", "frames 2\nquit\n"); }
BENCHMARK(EditorOpen)->Arg(-1)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(2);

void EditorClear(benchmark::State& state) { runEditor(state, "clear", "frames 2\npress clear\nframes 1\nquit\n"); }
BENCHMARK(EditorClear)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(2);

void AnimInfo(benchmark::State& state)
{
    if (bigTrack(0).empty()) {
        state.SkipWithError("no track file");
        return;
    }
    double peak = 0.0;
    for (auto _ : state) {
        peak = run("kuvo-anim", {"info", bigTrack(0)});
        if (peak < 0.0)
            state.SkipWithError("kuvo-anim info failed");
    }
    state.counters["peak_mb"] = peak;
}
BENCHMARK(AnimInfo)->Unit(benchmark::kMillisecond)->Iterations(2);

void EditorFrame(benchmark::State& state)
{
    if (!ready(state, 0))
        return;
    EditorWindow scene;
    AppData::get()->loadTrack(jString(bigTrack().c_str()), nullptr);
    UITrackLinePanel* lines = UITrackLinePanel::get();
    UITrackRowPanel* rows = UITrackRowPanel::get();
    scene.editor->update(1.0f / 60.0f);
    UIAutomation* automation = scene.root->getAutomation();
    bool shifted = false;
    double updating = 0.0, painting = 0.0;
    using Clock = std::chrono::steady_clock;
    for (auto _ : state) {
        const auto start = Clock::now();
        shifted = !shifted;
        AppData::get()->setBeginTime(shifted ? 0.5f : 0.0f);
        MsgMngr::get()->notifyHelper(199);
        rows->setDirty();
        scene.editor->update(1.0f / 60.0f);
        const auto updated = Clock::now();
        automation->renderRegion(lines->getCanvas(), 0, 0, lines->getWidth(), lines->getHeight());
        automation->renderRegion(rows->getCanvas(), 0, 0, rows->getWidth(), rows->getHeight());
        updating += std::chrono::duration<double, std::milli>(updated - start).count();
        painting += std::chrono::duration<double, std::milli>(Clock::now() - updated).count();
    }
    state.counters["painted"] = lines->getCanvas()->getLastPaintCount();
    state.counters["update_ms"] = updating / double(state.iterations());
    state.counters["paint_ms"] = painting / double(state.iterations());
}
BENCHMARK(EditorFrame)->Unit(benchmark::kMillisecond);

} // namespace
