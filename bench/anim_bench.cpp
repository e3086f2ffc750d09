// Sampling, playback and file costs of the animation model.
//
//   bench_anim --benchmark_filter=Sample     ns per channel sample (1,000 channels x 1,000 keys)
//   bench_anim --benchmark_filter=TrackSet   one frame of a 100,000-channel track bound to a world
//   bench_anim --benchmark_filter=File       loading and saving a ~100 MB .anim, and RapidJSON's own
//                                            parse of the same bytes (FileLoad / FileRapidJSONParse is
//                                            the load ratio)
#include <benchmark/benchmark.h>

#include <rapidjson/document.h>

#include <cmath>
#include <cstdio>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "anim/Track.h"
#include "anim/TrackCurveBatch.h"
#include "anim/TrackCurvePlayer.h"
#include "anim/TrackParameterColor.h"
#include "anim/TrackParameterFloat.h"
#include "anim/TrackParameterVec3.h"
#include "io/Package.h"
#include "io/mjl.h"
#include "kit/jAllocator.h"
#include "kit/jLog.h"
#include "scene/Node.h"
#include "scene/World.h"
#include "support/BezierReference.h"

namespace {

const char* const FILE_TAG = "bench/anim_bench";
const int CHANNELS = 1000;
const int KEYS = 1000;
const float FRAME = 1.0f / 60.0f;

// Fills a float parameter with keys of the given type at irregular times (0.05 to 0.15 s apart),
// values in [-1, 1] and handles inside their segments. Returns the time of the last key.
float fillKeys(TrackParameterFloat& p, int count, int type, std::mt19937& rng)
{
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    float t = 0.0f;
    for (int i = 0; i < count; ++i) {
        vec4 tangents(-unit(rng) * 0.05f, unit(rng) - 0.5f, unit(rng) * 0.05f, unit(rng) - 0.5f);
        p.appendKey(t, unit(rng) * 2.0f - 1.0f, tangents, type);
        t += 0.05f + 0.1f * unit(rng);
    }
    p.update();
    return t - 0.1f;
}

struct Channels {
    std::vector<std::unique_ptr<TrackParameterFloat>> params;
    float end = 1e9f;
};

Channels makeChannels(int type)
{
    Channels c;
    std::mt19937 rng(11);
    for (int i = 0; i < CHANNELS; ++i) {
        c.params.push_back(std::make_unique<TrackParameterFloat>());
        c.end = std::min(c.end, fillKeys(*c.params.back(), KEYS, type, rng));
    }
    return c;
}

// The value of the Bezier segment of p that holds t, from an independent double-precision
// evaluation (Bernstein form, curve parameter found by bisection).
double reference(const TrackParameterFloat& p, float t)
{
    int i = 0;
    while (i + 1 < p.getNumKeys() && p.getKey(i + 1).time <= t)
        ++i;
    return bezierReference(p.getKey(i), p.getKey(i + 1), t);
}

// The largest difference from the reference of what a curve player plays over the first 600
// frames of playback (about a hundred segments of every channel).
double worstPlaybackError(const Channels& c)
{
    TrackCurvePlayer player;
    for (auto& p : c.params)
        player.add(&p->getCurve());
    std::vector<float> values(CHANNELS);
    double worst = 0.0;
    for (int frame = 0; frame < 600; ++frame) {
        float t = frame * FRAME;
        player.play(t, values.data());
        for (int i = 0; i < CHANNELS; ++i)
            worst = std::max(worst, std::fabs(values[i] - reference(*c.params[i], t)));
    }
    return worst;
}

// Seconds per item (shown in ns) over a run of samples items per iteration.
benchmark::Counter perSample(const benchmark::State& state, int samples)
{
    return benchmark::Counter(static_cast<double>(state.iterations()) * samples,
                              benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

// Playback: every channel played at one time per frame by a curve player (a segment cursor per
// channel), the time moving forward a frame at a time, so each cursor is right almost always.
void SampleSequential(benchmark::State& state)
{
    Channels c = makeChannels(static_cast<int>(state.range(0)));
    TrackCurvePlayer player;
    for (auto& p : c.params)
        player.add(&p->getCurve());
    std::vector<float> values(CHANNELS);
    float t = 0.0f;
    for (auto _ : state) {
        player.play(t, values.data());
        benchmark::DoNotOptimize(values.data());
        t += FRAME;
        if (t > c.end)
            t = 0.0f;
    }
    state.SetItemsProcessed(state.iterations() * CHANNELS);
    state.counters["ns_per_sample"] = perSample(state, CHANNELS);
    if (state.range(0) == TRACK_KEY_BREAK)
        state.counters["max_error"] = worstPlaybackError(c);
}

// The channels' curves compiled again, with their time index, and copied into a curve table, as a
// runtime that samples clips keeps them.
void compileCurves(const Channels& c, TrackCurveTable& table)
{
    std::vector<TrackCurveData<float>> curves(c.params.size());
    std::vector<const TrackCurveData<float>*> which;
    for (size_t i = 0; i < curves.size(); ++i) {
        const jVector<TrackKeyFloat>& keys = c.params[i]->getKeys();
        TrackCurve::compile(keys.data(), keys.size(), curves[i]);
        which.push_back(&curves[i]);
    }
    table.build(which.data(), static_cast<int>(which.size()));
}

// Scrubbing: every sample at a fresh random time, all channels sampled in one batch per iteration
// (TrackCurveBatch), so each lookup searches but the searches of different channels overlap.
void SampleRandom(benchmark::State& state)
{
    Channels c = makeChannels(static_cast<int>(state.range(0)));
    TrackCurveTable table;
    compileCurves(c, table);
    std::vector<int> which(CHANNELS);
    for (int i = 0; i < CHANNELS; ++i)
        which[i] = i;
    std::mt19937 rng(3);
    std::uniform_real_distribution<float> times(0.0f, c.end);
    std::vector<float> ts(1 << 16);
    for (float& t : ts)
        t = times(rng);
    const size_t runs = ts.size() / CHANNELS;
    std::vector<float> out(CHANNELS);
    size_t k = 0;
    float sum = 0.0f;
    for (auto _ : state) {
        TrackCurveBatch::sample(table, which.data(), ts.data() + (k++ % runs) * CHANNELS, CHANNELS, out.data());
        sum += out[k % CHANNELS];
    }
    benchmark::DoNotOptimize(sum);
    state.SetItemsProcessed(state.iterations() * CHANNELS);
    state.counters["ns_per_sample"] = perSample(state, CHANNELS);
    if (state.range(0) != TRACK_KEY_BREAK)
        return;
    // The worst error of the timed path over every sample it can be given.
    double worst = 0.0;
    for (size_t run = 0; run < runs; ++run) {
        const float* at = ts.data() + run * CHANNELS;
        TrackCurveBatch::sample(table, which.data(), at, CHANNELS, out.data());
        for (int i = 0; i < CHANNELS; ++i)
            worst = std::max(worst, std::fabs(out[i] - reference(*c.params[i], at[i])));
    }
    state.counters["max_error"] = worst;
}

// A world of 5,000 nodes (meshes, lights, cameras) and a track of 100,000 channels bound to them:
// vec3 positions, rotations and scales (three channels each), light intensities and camera fields of
// view (one each) and light colours (one); 70 % of the channels have Bezier keys, the rest linear.
void TrackSet(benchmark::State& state)
{
    World world;
    std::vector<Node*> meshes, lights, cameras;
    for (int i = 0; i < 5000; ++i) {
        int kind = i % 10;
        int type = kind < 6 ? OBJECT_MESH : (kind < 9 ? LIGHT_POINT : CAMERA);
        std::string name = std::to_string(i);
        Node* n = world.addNode(type, jString(name.c_str()));
        (type == OBJECT_MESH ? meshes : (type == LIGHT_POINT ? lights : cameras)).push_back(n);
    }
    Track track;
    std::mt19937 rng(9);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    int channels = 0, index = 0;
    auto keyType = [&]() { return unit(rng) < 0.7f ? TRACK_KEY_BREAK : TRACK_KEY_LINEAR; };
    const char* vecTypes[] = {"Node.position", "Node.rotation", "Node.scale"};
    while (channels < 100000) {
        int pick = index++ % 10;
        if (pick < 7) {
            auto* p = jNew<TrackParameterVec3>(FILE_TAG, __LINE__, "TrackSet");
            for (int c = 0; c < 3; ++c)
                fillKeys(*p->getComponent(c), 20, keyType(), rng);
            track.addParameter(p);
            Node* n = meshes[index % meshes.size()];
            track.bindNode(p, &world, n->getID(), n->getName(), -1, "", vecTypes[index % 3]);
            channels += 3;
        } else if (pick < 9) {
            auto* p = jNew<TrackParameterFloat>(FILE_TAG, __LINE__, "TrackSet");
            fillKeys(*p, 20, keyType(), rng);
            track.addParameter(p);
            bool light = pick == 7;
            Node* n = light ? lights[index % lights.size()] : cameras[index % cameras.size()];
            track.bindNode(p, &world, n->getID(), n->getName(), -1, "", light ? "Light.intensity" : "Camera.fov");
            channels += 1;
        } else {
            auto* p = jNew<TrackParameterColor>(FILE_TAG, __LINE__, "TrackSet");
            for (int k = 0; k < 20; ++k)
                p->appendKey(k * 0.1f, vec4(unit(rng), unit(rng), unit(rng), 1.0f));
            p->update();
            track.addParameter(p);
            Node* n = lights[index % lights.size()];
            track.bindNode(p, &world, n->getID(), n->getName(), -1, "", "Light.color");
            channels += 1;
        }
    }
    float t = 0.0f;
    for (auto _ : state) {
        track.set(t);
        t += FRAME;
        if (t > 1.0f)
            t = 0.0f;
    }
    state.counters["channels"] = channels;
    state.counters["ns_per_channel"] = perSample(state, channels);
    state.counters["parameters"] = track.getNumParameters();
    track.release();
    world.release();
}

// A track of about 100 MB: 600 float parameters of 2,000 keys each, mixed key types.
const std::string& bigFile()
{
    static std::string path;
    if (!path.empty())
        return path;
    path = "/tmp/kuvo_anim_bench_big.anim";
    Track track;
    std::mt19937 rng(4);
    for (int i = 0; i < 600; ++i) {
        auto* p = jNew<TrackParameterFloat>(FILE_TAG, __LINE__, "bigFile");
        fillKeys(*p, 2000, TRACK_KEY_CONSTANT + i % 5, rng);
        p->setTypeName("Light.intensity");
        p->setNodeID(i);
        track.addParameter(p);
    }
    track.setEndTime(200.0f);
    if (!track.saveFile(path.c_str()))
        path.clear();
    return path;
}

std::string readAll(const std::string& path)
{
    std::string text;
    if (FILE* f = std::fopen(path.c_str(), "rb")) {
        char buffer[1 << 16];
        size_t n;
        while ((n = std::fread(buffer, 1, sizeof(buffer), f)) > 0)
            text.append(buffer, n);
        std::fclose(f);
    }
    return text;
}

// Parse (mjl, in memory, as the file loaders read tracks) and Track::load of the same bytes that
// RapidJSONParse reads.
void FileLoad(benchmark::State& state)
{
    std::string text = readAll(bigFile());
    for (auto _ : state) {
        mjl reader;
        Track track;
        bool ok = reader.parse(text.data(), text.size(), "big.anim", mjl::NUMBER_ROWS) &&
                  track.load(reader.getRoot(), nullptr);
        if (!ok)
            state.SkipWithError("the big track did not load");
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}

// Only Track::load, on a tree parsed once: the animation layer's share of FileLoad.
void FileTrackRead(benchmark::State& state)
{
    std::string text = readAll(bigFile());
    mjl reader;
    if (!reader.parse(text.data(), text.size(), "big.anim", mjl::NUMBER_ROWS))
        state.SkipWithError("the big track did not parse");
    for (auto _ : state) {
        Track track;
        if (!track.load(reader.getRoot(), nullptr))
            state.SkipWithError("the big track did not load");
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}

// RapidJSON's DOM parse of the same bytes, with its default flags (Arg 0) and with the flags the
// engine's reader uses (Arg 1: encoding validation, iterative parsing, full-precision numbers).
void FileRapidJSONParse(benchmark::State& state)
{
    const unsigned strict = rapidjson::kParseValidateEncodingFlag | rapidjson::kParseIterativeFlag |
                            rapidjson::kParseFullPrecisionFlag;
    std::string text = readAll(bigFile());
    for (auto _ : state) {
        rapidjson::Document doc;
        if (state.range(0) == 0)
            doc.Parse(text.data(), text.size());
        else
            doc.Parse<strict>(text.data(), text.size());
        if (doc.HasParseError())
            state.SkipWithError("RapidJSON refused the big track");
        benchmark::DoNotOptimize(doc.IsObject());
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}

// Track::save and the canonical text of the same track.
void FileSave(benchmark::State& state)
{
    Track track;
    if (!track.loadFile(bigFile().c_str(), nullptr))
        state.SkipWithError("the big track did not load");
    size_t bytes = 0;
    for (auto _ : state) {
        Package root;
        std::string text;
        track.save(&root);
        mjl::write(&root, text);
        bytes = text.size();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(bytes));
}

} // namespace

BENCHMARK(SampleSequential)->ArgName("key_type")->Arg(TRACK_KEY_LINEAR)->Arg(TRACK_KEY_BREAK)->MinTime(0.5);
BENCHMARK(SampleRandom)->ArgName("key_type")->Arg(TRACK_KEY_LINEAR)->Arg(TRACK_KEY_BREAK)->MinTime(0.5);
BENCHMARK(TrackSet)->Unit(benchmark::kMillisecond)->MinTime(1.0);
BENCHMARK(FileRapidJSONParse)->ArgName("engine_flags")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(FileLoad)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(FileTrackRead)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(FileSave)->Unit(benchmark::kMillisecond)->Iterations(2);
