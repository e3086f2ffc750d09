// Repainting a key-line canvas: 100,000 key-mark polygons laid out in 22-pixel rows, of which a
// 1000 x 600 view shows about 5,000. The cost of a repaint should follow the marks in view, not the
// marks on the canvas: compare BM_RepaintView over the total counts (flat) with BM_RepaintVisible
// over the visible counts (linear).
#include <benchmark/benchmark.h>

#include <cstdlib>

#include "kit/jAllocator.h"
#include "ui/UIAutomation.h"
#include "ui/UICanvas.h"
#include "ui/UIRoot.h"

namespace {

const bool s_offscreen = setenv("QT_QPA_PLATFORM", "offscreen", 1) == 0;

constexpr int k_view_w = 1000;
constexpr int k_view_h = 600;
constexpr int k_rows_in_view = k_view_h / 22; // 27 rows

// A key mark as the key line panel draws it: a pentagon pointing up at x on the row at top y.
void add_mark(UICanvas* canvas, float x, float y, int order)
{
    int id = canvas->addPolygon(order);
    canvas->addPolygonPoint(id, vec3(x - 6, y + 14, 0));
    canvas->addPolygonPoint(id, vec3(x, y + 8, 0));
    canvas->addPolygonPoint(id, vec3(x + 6, y + 14, 0));
    canvas->addPolygonPoint(id, vec3(x + 6, y + 21, 0));
    canvas->addPolygonPoint(id, vec3(x - 6, y + 21, 0));
    canvas->setPolygonColor(id, vec4(0.4f, 0.4f, 0.4f, 1.0f));
}

// Fills a canvas with total marks in 27 rows; visible of them fall inside the view at x 0..1000,
// the rest lie to the right of it.
struct MarkScene {
    MarkScene(int total, int visible)
    {
        root = jNew<UIRoot>("bench/ui", __LINE__, "MarkScene");
        canvas = jNew<UICanvas>("bench/ui", __LINE__, "MarkScene", root);
        int per_row_in = visible / k_rows_in_view;
        int per_row_out = (total - visible) / k_rows_in_view;
        float out_step = 10.0f;
        canvas->setFixSize(k_view_w + 40 + static_cast<int>(per_row_out * out_step) + 20, k_view_h);
        for (int row = 0; row < k_rows_in_view; ++row) {
            float y = row * 22.0f;
            for (int i = 0; i < per_row_in; ++i)
                add_mark(canvas, 6.0f + (k_view_w - 12.0f) * i / per_row_in, y, i);
            for (int i = 0; i < per_row_out; ++i)
                add_mark(canvas, k_view_w + 40.0f + out_step * i, y, i);
        }
    }
    ~MarkScene()
    {
        canvas->release();
        jDelete(canvas, "bench/ui", __LINE__, "~MarkScene");
        jDelete(root, "bench/ui", __LINE__, "~MarkScene");
    }
    UIRoot* root;
    UICanvas* canvas;
};

void repaint(benchmark::State& state, int total, int visible)
{
    if (!s_offscreen) {
        state.SkipWithError("cannot select the offscreen platform");
        return;
    }
    MarkScene scene(total, visible);
    UIAutomation* automation = scene.root->getAutomation();
    automation->renderRegion(scene.canvas, 0, 0, k_view_w, k_view_h);
    for (auto _ : state)
        automation->renderRegion(scene.canvas, 0, 0, k_view_w, k_view_h);
    state.counters["painted"] = scene.canvas->getLastPaintCount();
    state.counters["shapes"] = scene.canvas->getNumShapes();
    state.counters["ns_per_painted"] = benchmark::Counter(
        static_cast<double>(scene.canvas->getLastPaintCount()), benchmark::Counter::kIsIterationInvariantRate |
                                                                    benchmark::Counter::kInvert);
}

// 5,000 marks in view, a growing number on the canvas.
void BM_RepaintView(benchmark::State& state) { repaint(state, static_cast<int>(state.range(0)), 5000); }
BENCHMARK(BM_RepaintView)->Arg(5000)->Arg(20000)->Arg(100000)->Unit(benchmark::kMillisecond);

// 100,000 marks on the canvas, a growing number in view.
void BM_RepaintVisible(benchmark::State& state) { repaint(state, 100000, static_cast<int>(state.range(0))); }
BENCHMARK(BM_RepaintVisible)->Arg(1000)->Arg(2500)->Arg(5000)->Unit(benchmark::kMillisecond);

// Row labels as the row tree draws them: outlined texts, 27 rows of 20 in view.
void BM_RepaintTexts(benchmark::State& state)
{
    UIRoot* root = jNew<UIRoot>("bench/ui", __LINE__, "BM_RepaintTexts");
    UICanvas* canvas = jNew<UICanvas>("bench/ui", __LINE__, "BM_RepaintTexts", root);
    canvas->setFixSize(k_view_w, k_view_h);
    for (int row = 0; row < k_rows_in_view; ++row) {
        for (int i = 0; i < 20; ++i) {
            int id = canvas->addText(2);
            canvas->setText(id, "position.x");
            canvas->setTextOutline(id, static_cast<int>(state.range(0)));
            canvas->setTextPosition(id, 50.0f * i, 22.0f * row + 4);
        }
    }
    for (auto _ : state)
        root->getAutomation()->renderRegion(canvas, 0, 0, k_view_w, k_view_h);
    state.counters["painted"] = canvas->getLastPaintCount();
    canvas->release();
    jDelete(canvas, "bench/ui", __LINE__, "BM_RepaintTexts");
    jDelete(root, "bench/ui", __LINE__, "BM_RepaintTexts");
}
BENCHMARK(BM_RepaintTexts)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

} // namespace
