#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <set>
#include <vector>

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

} // namespace

BENCHMARK(jSetInsertSorted)->Unit(benchmark::kMillisecond);
BENCHMARK(jSetInsertRandom)->Unit(benchmark::kMillisecond);
BENCHMARK(stdSetInsertSorted)->Unit(benchmark::kMillisecond);
BENCHMARK(stdSetInsertRandom)->Unit(benchmark::kMillisecond);
BENCHMARK(jVectorAppend)->Unit(benchmark::kMillisecond);
BENCHMARK(stdVectorPushBack)->Unit(benchmark::kMillisecond);
