// The Track Editor with a large track: 1,000 float parameters of 1,000 keys each. EditorLoad loads
// the file into the editor (the engine track, the document's parameters and keys, and their rows,
// key lines and marks in the window); EditorFrame runs one frame of the window in which the visible
// range moved (so every visible mark moves and every visible row is laid out again) and paints the
// row tree and the key lines.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <random>
#include <string>

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

const std::string& bigTrack()
{
    static std::string path;
    if (!path.empty())
        return path;
    path = "/tmp/kuvo_editor_bench.anim";
    Track track;
    std::mt19937 rng(6);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    for (int i = 0; i < PARAMETERS; ++i) {
        auto* p = jNew<TrackParameterFloat>(FILE_TAG, __LINE__, "bigTrack");
        float t = 0.0f;
        for (int k = 0; k < KEYS; ++k, t += 0.05f + 0.1f * unit(rng))
            p->appendKey(t, unit(rng), vec4(-0.02f, 0.0f, 0.02f, 0.0f), TRACK_KEY_CONSTANT + k % 5);
        p->setTypeName("Light.intensity");
        p->setNodeID(i);
        track.addParameter(p);
    }
    track.setEndTime(100.0f);
    if (!track.saveFile(path.c_str()))
        path.clear();
    return path;
}

void EditorLoad(benchmark::State& state)
{
    if (!s_offscreen || bigTrack().empty()) {
        state.SkipWithError("no offscreen platform or no track file");
        return;
    }
    EditorWindow scene;
    for (auto _ : state) {
        if (!AppData::get()->loadTrack(jString(bigTrack().c_str()), nullptr))
            state.SkipWithError("the track did not load");
        state.PauseTiming();
        AppData::get()->reset();
        state.ResumeTiming();
    }
    state.counters["rows"] = PARAMETERS;
    state.counters["keys"] = double(PARAMETERS) * KEYS;
}
BENCHMARK(EditorLoad)->Unit(benchmark::kMillisecond)->Iterations(3);

void EditorFrame(benchmark::State& state)
{
    if (!s_offscreen || bigTrack().empty()) {
        state.SkipWithError("no offscreen platform or no track file");
        return;
    }
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
