#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <set>
#include <vector>

#include "kit/jAllocator.h"
#include "kit/jSet.h"
#include "kit/jVector.h"

namespace {

constexpr int ITEMS = 1000000;

std::vector<int> shuffledKeys()
{
    std::vector<int> keys(ITEMS);
    for (int i = 0; i < ITEMS; ++i)
        keys[static_cast<size_t>(i)] = i;
    std::shuffle(keys.begin(), keys.end(), std::mt19937(12345));
    return keys;
}

// The time includes freeing the set, as the owner of a real set pays it too.
void jSetInsertSorted(benchmark::State& state)
{
    for (auto _ : state) {
        jSet<int> set;
        for (int i = 0; i < ITEMS; ++i)
            set.insert(i);
        benchmark::DoNotOptimize(set.size());
    }
    state.SetItemsProcessed(state.iterations() * ITEMS);
}

void jSetInsertRandom(benchmark::State& state)
{
    std::vector<int> keys = shuffledKeys();
    for (auto _ : state) {
        jSet<int> set;
        for (int key : keys)
            set.insert(key);
        benchmark::DoNotOptimize(set.size());
    }
    state.SetItemsProcessed(state.iterations() * ITEMS);
}

// The standard set on the same keys, to show what the registered allocations and the tree cost.
void stdSetInsertSorted(benchmark::State& state)
{
    for (auto _ : state) {
        std::set<int> set;
        for (int i = 0; i < ITEMS; ++i)
            set.insert(i);
        benchmark::DoNotOptimize(set.size());
    }
    state.SetItemsProcessed(state.iterations() * ITEMS);
}

void stdSetInsertRandom(benchmark::State& state)
{
    std::vector<int> keys = shuffledKeys();
    for (auto _ : state) {
        std::set<int> set;
        for (int key : keys)
            set.insert(key);
        benchmark::DoNotOptimize(set.size());
    }
    state.SetItemsProcessed(state.iterations() * ITEMS);
}

void jVectorAppend(benchmark::State& state)
{
    for (auto _ : state) {
        jVector<int> v;
        for (int i = 0; i < ITEMS; ++i)
            v.append(i);
        benchmark::DoNotOptimize(v.data());
    }
    state.SetItemsProcessed(state.iterations() * ITEMS);
}

void stdVectorPushBack(benchmark::State& state)
{
    for (auto _ : state) {
        std::vector<int> v;
        for (int i = 0; i < ITEMS; ++i)
            v.push_back(i);
        benchmark::DoNotOptimize(v.data());
    }
    state.SetItemsProcessed(state.iterations() * ITEMS);
}

// A million keys open in the editor: four million allocations of the sizes a key's objects have,
// made, registered, then unregistered and freed in the order of the argument (0: as made, 1:
// newest first, 2: at random). RawAllocFree is its peer without the registry.
constexpr int ALLOCATIONS = 4000000;
constexpr size_t SIZES[] = {48, 112, 160, 32};

std::vector<size_t> freeOrder(int order)
{
    std::vector<size_t> at(ALLOCATIONS);
    for (size_t i = 0; i < at.size(); ++i)
        at[i] = order == 1 ? at.size() - 1 - i : i;
    if (order == 2)
        std::shuffle(at.begin(), at.end(), std::mt19937(7));
    return at;
}

template <bool Registered>
void allocateAndFree(benchmark::State& state)
{
    const std::vector<size_t> order = freeOrder(int(state.range(0)));
    std::vector<void*> blocks(ALLOCATIONS);
    jAllocator* allocator = jAllocator::get();
    for (auto _ : state) {
        for (size_t i = 0; i < blocks.size(); ++i) {
            blocks[i] = allocator->localAlloc(SIZES[i % 4]);
            if constexpr (Registered)
                memAddInfo(blocks[i], false, "bench/kit", __LINE__, "allocateAndFree", SIZES[i % 4]);
        }
        for (size_t i : order) {
            if constexpr (Registered)
                memRemoveInfo(blocks[i], "bench/kit", __LINE__, "allocateAndFree");
            allocator->localFree(blocks[i]);
        }
    }
    state.SetItemsProcessed(state.iterations() * ALLOCATIONS);
}

void RegisteredAllocFree(benchmark::State& state) { allocateAndFree<true>(state); }
void RawAllocFree(benchmark::State& state) { allocateAndFree<false>(state); }

} // namespace

BENCHMARK(jSetInsertSorted)->Unit(benchmark::kMillisecond);
BENCHMARK(jSetInsertRandom)->Unit(benchmark::kMillisecond);
BENCHMARK(stdSetInsertSorted)->Unit(benchmark::kMillisecond);
BENCHMARK(stdSetInsertRandom)->Unit(benchmark::kMillisecond);
BENCHMARK(jVectorAppend)->Unit(benchmark::kMillisecond);
BENCHMARK(stdVectorPushBack)->Unit(benchmark::kMillisecond);
BENCHMARK(RegisteredAllocFree)->Arg(0)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK(RawAllocFree)->Arg(0)->Arg(2)->Unit(benchmark::kMillisecond);
