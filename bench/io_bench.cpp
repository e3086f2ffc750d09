#include <benchmark/benchmark.h>

#include <random>
#include <string>

#include <rapidjson/document.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/prettywriter.h>

#include "io/Package.h"
#include "io/mjl.h"

// Loading and saving a large track-like document, side by side with RapidJSON's own full-precision
// parse and its writer on the same document, so that what the tree and the canonical layout cost
// shows as a ratio. The loads count the bytes of the same canonical text. The saves compare like
// with like: RapidJSON's indenting writer (two spaces, arrays on one line), each save counting the
// bytes it wrote, since the two layouts differ a little (RapidJSON also puts arrays of arrays on one
// line, so its text is about 8 % shorter).
namespace {

constexpr size_t TARGET_BYTES = 100u << 20;

// A document shaped like an animation: tracks of parameters, each with a list of keys of seven
// numbers at full precision, and a few names and flags around them.
void fillTrack(Package& track, int index, std::mt19937_64& random)
{
    std::uniform_real_distribution<double> value(-1000.0, 1000.0);
    track.addString("name", ("bone_" + std::to_string(index) + "/joint").c_str());
    track.addString("kind", "transform");
    track.addBool("enabled", index % 7 != 0);
    Package* params = track.addArray("params");
    for (const char* name : {"translate.x", "translate.y", "translate.z", "rotate.x", "rotate.y", "rotate.z"}) {
        Package* param = params->addObject(nullptr);
        param->addString("name", name);
        param->addInt("interpolation", 2);
        Package* keys = param->addArray("keys");
        for (int k = 0; k < 40; ++k) {
            Package* key = keys->addArray(nullptr);
            key->addDouble(nullptr, k / 30.0);
            for (int c = 1; c < 7; ++c)
                key->addDouble(nullptr, value(random));
        }
    }
}

// The canonical text of a generated document of about TARGET_BYTES.
const std::string& documentText()
{
    static const std::string text = [] {
        Package root;
        root.addInt("version", 1);
        root.addString("name", "generated \"benchmark\" scene");
        Package* tracks = root.addArray("tracks");
        std::mt19937_64 random(20261121);
        // One batch tells the size of a track; then the whole document is written once.
        fillTrack(*tracks->addObject(nullptr), 0, random);
        std::string out;
        mjl::write(&root, out);
        size_t tracks_needed = TARGET_BYTES / out.size() + 1;
        for (size_t i = 1; i < tracks_needed; ++i)
            fillTrack(*tracks->addObject(nullptr), static_cast<int>(i), random);
        mjl::write(&root, out);
        return out;
    }();
    return text;
}

void setBytes(benchmark::State& state, size_t bytes = documentText().size())
{
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(bytes));
    state.counters["MB"] = static_cast<double>(bytes) / (1 << 20);
}

// Parsing includes freeing the tree, which the owner of a loaded document pays too.
void loadMjl(benchmark::State& state)
{
    const std::string& text = documentText();
    for (auto _ : state) {
        mjl reader;
        bool ok = reader.parse(text.data(), text.size(), "bench");
        benchmark::DoNotOptimize(ok);
        if (!ok)
            state.SkipWithError("parse failed");
    }
    setBytes(state);
}

void loadRapidJson(benchmark::State& state)
{
    const std::string& text = documentText();
    for (auto _ : state) {
        rapidjson::Document doc;
        doc.Parse<rapidjson::kParseFullPrecisionFlag>(text.data(), text.size());
        benchmark::DoNotOptimize(doc.HasParseError());
        if (doc.HasParseError())
            state.SkipWithError("parse failed");
    }
    setBytes(state);
}

void saveMjl(benchmark::State& state)
{
    const std::string& text = documentText();
    mjl reader;
    reader.parse(text.data(), text.size(), "bench");
    for (auto _ : state) {
        std::string out;
        bool ok = mjl::write(reader.getRoot(), out);
        benchmark::DoNotOptimize(out.data());
        if (!ok || out.size() != text.size())
            state.SkipWithError("write differs");
    }
    setBytes(state);
}

void saveRapidJson(benchmark::State& state)
{
    const std::string& text = documentText();
    rapidjson::Document doc;
    doc.Parse<rapidjson::kParseFullPrecisionFlag>(text.data(), text.size());
    size_t bytes = 0;
    for (auto _ : state) {
        rapidjson::StringBuffer buffer;
        rapidjson::PrettyWriter<rapidjson::StringBuffer> writer(buffer);
        writer.SetIndent(' ', 2);
        writer.SetFormatOptions(rapidjson::kFormatSingleLineArray);
        doc.Accept(writer);
        benchmark::DoNotOptimize(buffer.GetString());
        bytes = buffer.GetSize();
    }
    setBytes(state, bytes);
}

} // namespace

BENCHMARK(loadMjl)->Unit(benchmark::kMillisecond);
BENCHMARK(loadRapidJson)->Unit(benchmark::kMillisecond);
BENCHMARK(saveMjl)->Unit(benchmark::kMillisecond);
BENCHMARK(saveRapidJson)->Unit(benchmark::kMillisecond);
