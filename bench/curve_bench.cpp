// The curve view of the Track Editor window (1600 x 900) with a track of 100 float parameters of
// 1,000 Bezier keys each (smooth, break and auto keys 0.1 s apart, values 0 to 1), every curve
// shown, all 100 s in view.
// CurveOpen: the file loaded into the window and its first frame shown (the engine track, the
// document, the rows, key lines and curves, then the window painted).
// CurveViewMoved: the shared time range panned by a pixel and back (as a middle drag in the curve
// view does) and the window's next frame shown.
// CurveDragStep: one step of a mouse drag of 50 selected keys of one curve in the curve view (the
// keys move and the engine parameter is rewritten) and the window's next frame shown.
// A frame is the window's update (the views laid out and drawn into their canvases) and then the
// toolkit's pending events, among them the paint of every canvas that changed, into the window's
// offscreen surface; each benchmark reports the two apart (update_ms, paint_ms).
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <random>
#include <string>

#include "anim/Track.h"
#include "anim/TrackParameterFloat.h"
#include "data/AppData.h"
#include "data/FKey.h"
#include "data/FParameterSingle.h"
#include "data/FTrack.h"
#include "msg/MsgMngr.h"
#include "ui/UIAutomation.h"
#include "ui/UICanvas.h"
#include "ui/UITrackCurve.h"
#include "ui/UITrackCurveKey.h"
#include "ui/UITrackCurvePanel.h"
#include "EditorWindow.h"
#include "TrackEditorMsg.h"

namespace {

const bool s_offscreen = setenv("QT_QPA_PLATFORM", "offscreen", 1) == 0;
constexpr const char* FILE_TAG = "bench/curve";
constexpr int CURVES = 100;
constexpr int KEYS = 1000;
constexpr int DRAGGED = 50;
constexpr int FIRST_DRAGGED = 400;
constexpr float KEY_SPACING = 0.1f;
using Clock = std::chrono::steady_clock;

const std::string& curveTrack()
{
    static std::string path;
    if (!path.empty())
        return path;
    path = "/tmp/kuvo_curve_bench.anim";
    Track track;
    std::mt19937 rng(11);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    for (int c = 0; c < CURVES; ++c) {
        auto* p = jNew<TrackParameterFloat>(FILE_TAG, __LINE__, "curveTrack");
        for (int k = 0; k < KEYS; ++k) {
            const float dv = 0.2f * unit(rng) - 0.1f;
            const vec4 tangents(-0.03f, -dv, 0.03f + 0.05f * unit(rng), dv);
            p->appendKey(KEY_SPACING * k, unit(rng), tangents, TRACK_KEY_SMOOTH + k % 3);
        }
        p->setTypeName("Light.intensity");
        p->setNodeID(c);
        p->setCurveShown(true);
        track.addParameter(p);
    }
    track.setEndTime(KEY_SPACING * KEYS);
    if (!track.saveFile(path.c_str()))
        path.clear();
    return path;
}

// The editor window with the curve track to open.
struct EditorScene : EditorWindow {
    bool load() { return AppData::get()->loadTrack(jString(curveTrack().c_str()), nullptr); }
    // Loads the track and shows its first frame.
    void open()
    {
        load();
        update();
        paint();
    }
    UICanvas* curves() const { return UITrackCurvePanel::get()->getCanvas(); }
};

void report(benchmark::State& state, double update, double paint, const EditorScene& scene, int iterations)
{
    state.counters["update_ms"] = update / iterations;
    state.counters["paint_ms"] = paint / iterations;
    state.counters["curves"] = UITrackCurvePanel::get()->getShownCurves().size();
    state.counters["shapes"] = scene.curves()->getNumShapes();
}

bool ready(benchmark::State& state)
{
    if (s_offscreen && !curveTrack().empty())
        return true;
    state.SkipWithError("no offscreen platform or no track file");
    return false;
}

void CurveOpen(benchmark::State& state)
{
    if (!ready(state))
        return;
    EditorScene scene;
    double update = 0.0, paint = 0.0, loading = 0.0;
    int shown = 0;
    for (auto _ : state) {
        const auto start = Clock::now();
        if (!scene.load())
            state.SkipWithError("the track did not load");
        loading += std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        scene.frame(update, paint);
        state.PauseTiming();
        shown = UITrackCurvePanel::get()->getShownCurves().size();
        AppData::get()->reset();
        scene.update();
        scene.paint();
        state.ResumeTiming();
    }
    const int iterations = int(state.iterations());
    report(state, update, paint, scene, iterations);
    state.counters["load_ms"] = loading / iterations;
    state.counters["curves"] = shown;
}
BENCHMARK(CurveOpen)->Unit(benchmark::kMillisecond)->Iterations(3);

void CurveViewMoved(benchmark::State& state)
{
    if (!ready(state))
        return;
    EditorScene scene;
    scene.open();
    AppData* hub = AppData::get();
    // One pixel of the view's time axis, which leaves a margin at either side of the canvas: a
    // middle drag moves the range by whole pixels of it.
    const float step = float(UITrackCurvePanel::get()->getMapping().timePerPixel());
    bool shifted = false;
    double update = 0.0, paint = 0.0;
    for (auto _ : state) {
        shifted = !shifted;
        hub->setBeginTime(shifted ? step : 0.0f);
        hub->setEndTime(KEY_SPACING * KEYS + (shifted ? step : 0.0f));
        MsgMngr::get()->notifyHelper(TRACK_MSG_RANGE_CHANGED);
        scene.frame(update, paint);
    }
    report(state, update, paint, scene, int(state.iterations()));
}
BENCHMARK(CurveViewMoved)->Unit(benchmark::kMillisecond);

// The point whose mark a press at key k of the first curve hits: the curves cross there, and the
// mark drawn last is on top.
UITrackCurveKey* topmostKey(const EditorScene& scene, int k)
{
    const UITrackCurvePanel* panel = UITrackCurvePanel::get();
    UITrackCurveKey* under = AppData::get()->getTrack()->getSingleParameters()[0]->getKey(k)->getCurveKey();
    const UITrackCurveMapping& mapping = panel->getMapping();
    const int mark = scene.curves()->getPolygonIntersection(int(mapping.xOfTime(under->getTime())),
                                                            int(mapping.yOfValue(under->getValue())));
    for (UITrackCurve* curve : panel->getShownCurves())
        for (UITrackCurveKey* point : curve->getKeys())
            if (mark != INVALID_INDEX && point->getMarkPolygon() == mark)
                return point;
    return under;
}

void CurveDragStep(benchmark::State& state)
{
    if (!ready(state))
        return;
    EditorScene scene;
    scene.open();
    UITrackCurvePanel* panel = UITrackCurvePanel::get();
    UITrackCurveKey* pressed = topmostKey(scene, FIRST_DRAGGED);
    FParameterSingle* dragged = pressed->getKey()->getParameter();
    const int first = dragged->getKeys().find(pressed->getKey());
    jVector<UITrackCurveKey*> keys;
    for (int k = first; k < std::min(first + DRAGGED, dragged->getNumKeys()); ++k)
        keys.append(dragged->getKey(k)->getCurveKey());
    panel->setSelectedKeys(keys);
    scene.update();
    scene.paint();
    UIAutomation* automation = scene.root->getAutomation();
    int x = 0, y = 0;
    const UITrackCurveMapping& mapping = panel->getMapping();
    automation->elementPoint(scene.curves(), int(mapping.xOfTime(pressed->getTime())),
                             int(mapping.yOfValue(pressed->getValue())), x, y);
    automation->mouseDown(x, y);
    int dy = 10;
    double update = 0.0, paint = 0.0;
    for (auto _ : state) {
        dy = -dy;
        const auto start = Clock::now();
        automation->mouseMove(x, y + dy);
        update += std::chrono::duration<double, std::milli>(Clock::now() - start).count();
        scene.frame(update, paint);
    }
    automation->mouseUp(x, y + dy);
    report(state, update, paint, scene, int(state.iterations()));
    state.counters["selected"] = panel->getSelectedKeys().size();
}
BENCHMARK(CurveDragStep)->Unit(benchmark::kMillisecond);

} // namespace
