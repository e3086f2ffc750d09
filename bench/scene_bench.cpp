#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "kit/jLog.h"
#include "scene/Node.h"
#include "scene/World.h"

namespace {

constexpr int PREFABS = 20000; // each with 4 internal nodes: 100,000 nodes in all

// Fills world with prefabs of a light and three meshes, laid out on a grid.
void build(World& world)
{
    for (int i = 0; i < PREFABS; ++i) {
        Node* prefab = world.addNode(OBJECT_PREFAB, "Lamp");
        prefab->setPosition(vec3(static_cast<float>(i % 200) * 1.5f, 0.0f, static_cast<float>(i / 200) * 1.5f));
        world.addNode(LIGHT_POINT, "Bulb", -1, prefab)->setPosition(vec3(0.0f, 2.5f, 0.0f));
        for (int m = 0; m < 3; ++m)
            world.addNode(OBJECT_MESH, "Part", -1, prefab)->setMesh("meshes/part.mesh");
    }
}

std::string benchFile()
{
    return (std::filesystem::temp_directory_path() / "kuvo_scene_bench.world").string();
}

void WorldSave(benchmark::State& state)
{
    World world;
    build(world);
    std::string path = benchFile();
    for (auto _ : state)
        benchmark::DoNotOptimize(world.save(path.c_str()));
    state.SetItemsProcessed(state.iterations() * PREFABS * 5);
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(std::filesystem::file_size(path)));
}

void WorldLoad(benchmark::State& state)
{
    std::string path = benchFile();
    {
        World world;
        build(world);
        world.save(path.c_str());
    }
    World world;
    for (auto _ : state)
        benchmark::DoNotOptimize(world.load(path.c_str()));
    state.SetItemsProcessed(state.iterations() * PREFABS * 5);
    state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(std::filesystem::file_size(path)));
    std::remove(path.c_str());
}

// Lookups by id go through a sorted index; Node::GetNode is what a bound track calls.
void NodeGetById(benchmark::State& state)
{
    World world;
    build(world);
    World::SetCurrent(&world);
    int id = 1;
    for (auto _ : state) {
        benchmark::DoNotOptimize(Node::GetNode(id));
        id = id % (PREFABS * 5) + 1;
    }
    World::SetCurrent(nullptr);
    state.SetItemsProcessed(state.iterations());
}

} // namespace

BENCHMARK(WorldSave)->Unit(benchmark::kMillisecond);
BENCHMARK(WorldLoad)->Unit(benchmark::kMillisecond);
BENCHMARK(NodeGetById);
