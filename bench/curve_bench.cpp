// The curve view with 100 float curves of 1,000 Bezier keys each (smooth, break and auto keys
// 0.1 s apart, values 0 to 1) on a 1,600 x 400 canvas showing all of their 100 s.
// CurveViewMoved: the visible time range moved, so every curve is flattened again and every
// curve and key mark re-rendered. CurvePaint: the canvas painted with all of them.
// CurveDragStep: one step of dragging 50 selected keys of one curve in value: the editor keys
// move, the engine parameter is rewritten with applyKeys and that curve (with the handles of the
// selected keys) re-rendered.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <random>

#include "data/AppData.h"
#include "editor/DataDir.h"
#include "kit/jKit.h"
#include "data/FKeyFloat.h"
#include "data/FParameterFloat.h"
#include "data/FTrack.h"
#include "kit/jAllocator.h"
#include "ui/UIAutomation.h"
#include "ui/UICanvas.h"
#include "ui/UIRoot.h"
#include "ui/UITrackCurve.h"
#include "ui/UITrackCurveKey.h"
#include "ui/UITrackCurveMapping.h"

namespace {

const bool s_offscreen = setenv("QT_QPA_PLATFORM", "offscreen", 1) == 0;
constexpr const char* FILE_TAG = "bench/curve";
constexpr int CURVES = 100;
constexpr int KEYS = 1000;
constexpr int DRAGGED = 50;
constexpr int WIDTH = 1600;
constexpr int HEIGHT = 400;
constexpr float KEY_SPACING = 0.1f;

// The curves in the data hub's document, drawn on one canvas.
struct CurveScene {
    CurveScene()
    {
        DataDir::set(KUVO_DATA_DIR);
        jKit::setDataPath(KUVO_DATA_DIR);
        root = jNew<UIRoot>(FILE_TAG, __LINE__, "CurveScene");
        canvas = jNew<UICanvas>(FILE_TAG, __LINE__, "CurveScene", root);
        canvas->setFixSize(WIDTH, HEIGHT);
        std::mt19937 rng(11);
        std::uniform_real_distribution<float> unit(0.0f, 1.0f);
        for (int c = 0; c < CURVES; ++c) {
            FParameterFloat* parameter = AppData::get()->getTrack()->createParameterFloat("curve");
            for (int k = 0; k < KEYS; ++k) {
                const float dv = 0.2f * unit(rng) - 0.1f;
                const vec4 tangents(-0.03f, -dv, 0.03f + 0.05f * unit(rng), dv);
                parameter->createKey(KEY_SPACING * k, unit(rng), tangents, TRACK_KEY_SMOOTH + k % 3);
            }
            parameter->sortKeys();
            parameter->applyKeys();
            parameter->getCurve()->attach(canvas);
            parameters[c] = parameter;
        }
        AppData::get()->setEndTime(KEY_SPACING * KEYS);
        mapping.setSize(WIDTH, HEIGHT);
        mapping.setTimeRange(0.0, KEY_SPACING * KEYS);
        mapping.frameValues(-0.2, 1.2);
    }
    ~CurveScene()
    {
        AppData::get()->reset();
        canvas->release();
        jDelete(canvas, FILE_TAG, __LINE__, "~CurveScene");
        jDelete(root, FILE_TAG, __LINE__, "~CurveScene");
    }
    void renderAll(const jSet<UITrackCurveKey*>& selected)
    {
        for (FParameterFloat* parameter : parameters)
            parameter->getCurve()->render(mapping, 0, WIDTH - 1, selected);
    }
    int points() const
    {
        int total = 0;
        for (const FParameterFloat* parameter : parameters)
            total += parameter->getCurve()->getPoints().size();
        return total;
    }

    UIRoot* root;
    UICanvas* canvas;
    FParameterFloat* parameters[CURVES] = {};
    UITrackCurveMapping mapping;
};

void CurveViewMoved(benchmark::State& state)
{
    if (!s_offscreen) {
        state.SkipWithError("cannot select the offscreen platform");
        return;
    }
    CurveScene scene;
    const jSet<UITrackCurveKey*> none;
    scene.renderAll(none); // makes the shapes
    bool shifted = false;
    for (auto _ : state) {
        shifted = !shifted;
        scene.mapping.setTimeRange(shifted ? 0.05 : 0.0, KEY_SPACING * KEYS);
        scene.renderAll(none);
    }
    state.counters["points"] = scene.points();
    state.counters["shapes"] = scene.canvas->getNumShapes();
}
BENCHMARK(CurveViewMoved)->Unit(benchmark::kMillisecond);

void CurvePaint(benchmark::State& state)
{
    if (!s_offscreen) {
        state.SkipWithError("cannot select the offscreen platform");
        return;
    }
    CurveScene scene;
    scene.renderAll(jSet<UITrackCurveKey*>());
    UIAutomation* automation = scene.root->getAutomation();
    for (auto _ : state)
        automation->renderRegion(scene.canvas, 0, 0, WIDTH, HEIGHT);
    state.counters["painted"] = scene.canvas->getLastPaintCount();
}
BENCHMARK(CurvePaint)->Unit(benchmark::kMillisecond)->Iterations(1);

void CurveDragStep(benchmark::State& state)
{
    if (!s_offscreen) {
        state.SkipWithError("cannot select the offscreen platform");
        return;
    }
    CurveScene scene;
    scene.renderAll(jSet<UITrackCurveKey*>());
    FParameterFloat* dragged = scene.parameters[0];
    jSet<UITrackCurveKey*> selected;
    for (int k = 0; k < DRAGGED; ++k)
        selected.insert(dragged->getKey(400 + k)->getCurveKey());
    float step = 0.01f;
    for (auto _ : state) {
        step = -step;
        for (int k = 0; k < DRAGGED; ++k) {
            auto* key = static_cast<FKeyFloat*>(dragged->getKey(400 + k));
            key->setValue(key->getValue() + step);
        }
        dragged->applyKeys();
        dragged->getCurve()->render(scene.mapping, 0, WIDTH - 1, selected);
    }
    state.counters["points"] = dragged->getCurve()->getPoints().size();
    selected.clear();
}
BENCHMARK(CurveDragStep)->Unit(benchmark::kMicrosecond);

} // namespace
