// SPDX-License-Identifier: Apache-2.0
// Capture, and update without changes, of generated registries: the cost per entry must not grow
// with their number. Ends with tables of time per entry, relative to the smallest registry with the
// same number of nodes per entry, and of memory.
#include "bench/support/BenchmarkMain.h"
#include "bench/support/RegistryGenerator.h"
#include "bench/support/Timing.h"
#include "store/TavDataStore.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <malloc.h>
#include <map>

namespace {
using Size = std::pair<quint32, quint32>; // entries, nodes per entry
const Size sizes[] = {{1'000, 40}, {10'000, 40}, {100'000, 40}, {1'000, 4}, {1'000'000, 4}};

struct Result
{
    double capture = 0; // nanoseconds per entry, the minimum
    double update = 0;
};
std::map<Size, Result> results;

std::size_t heapInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

// On a user's machine other work runs between two captures: the caches are cold.
void emptyCaches()
{
    static std::vector<char> other(std::size_t{128} << 20);
    for (std::size_t i = 0; i < other.size(); i += 64)
        ++other[i];
    benchmark::ClobberMemory();
}

std::unique_ptr<FakeRegistryService> generate(Size size)
{
    auto service = std::make_unique<FakeRegistryService>();
    RegistryGenerator::generate(*service, {size.first, size.second, 1});
    return service;
}

// Measures processor time, so that other programs matter little.
template<class Prepare, class Action>
void measure(benchmark::State &state, double &minimum, quint32 entries, Prepare prepare,
             Action action)
{
    for (auto _ : state) {
        prepare();
        malloc_trim(0); // a capture uses fresh memory
        emptyCaches();
        const double start = Timing::threadSeconds();
        action();
        const double seconds = Timing::threadSeconds() - start;
        state.SetIterationTime(seconds);
        const double each = seconds * 1e9 / entries;
        minimum = minimum == 0 ? each : std::min(minimum, each);
    }
    state.counters["ns_per_entry"] = minimum;
}

void capture(benchmark::State &state, Size size)
{
    const auto service = generate(size);
    std::unique_ptr<TavDataStore> store;
    measure(
        state, results[size].capture, size.first, [&] { store.reset(); },
        [&] { store = TavDataStore::initFromDxRegistry(*service); });
}

void update(benchmark::State &state, Size size)
{
    const auto service = generate(size);
    const auto store = TavDataStore::initFromDxRegistry(*service);
    measure(
        state, results[size].update, size.first, [] {}, [&] { store->update(); });
}

void printTimes()
{
    std::printf("\n%9s %6s %19s %19s\n", "entries", "nodes", "capture", "update");
    for (const Size &size : sizes) {
        const Result &result = results[size];
        const Result &base = results[{1'000, size.second}];
        std::printf("%9u %6u %9.0f ns %5.2fx %9.0f ns %5.2fx\n", size.first, size.second,
                    result.capture, result.capture / base.capture, result.update,
                    result.update / base.update);
    }
}

struct Memory
{
    double model; // bytes per entry
    double texts; // of texts and data, shared with the service's tables
};

std::size_t dropTables(FakeRegistryService &service, quint32 entries)
{
    const std::size_t before = heapInUse();
    for (FakeRegistry::Node node = 1; node <= entries; ++node)
        service.setProperties(node, RegistryValue());
    return before - heapInUse();
}

Memory measureMemory(Size size)
{
    const auto perEntry = [&](std::size_t bytes) {
        return static_cast<double>(bytes) / size.first;
    };
    const std::size_t tables = dropTables(*generate(size), size.first);
    const auto service = generate(size);
    const std::size_t before = heapInUse();
    const auto store = TavDataStore::initFromDxRegistry(*service);
    const std::size_t model = heapInUse() - before;
    return {perEntry(model), perEntry(tables - dropTables(*service, size.first))};
}

void printMemory()
{
    constexpr quint32 entries = 20'000;
    constexpr quint32 nodes = 40;
    const Memory small = measureMemory({entries, 1});
    const Memory large = measureMemory({entries, nodes});
    std::printf("\nbytes an entry, without properties: %.0f (the object: %zu)\n", small.model,
                sizeof(TavRegistryEntry));
    std::printf("bytes a property node: %.1f (the object: %zu), its text or data: %.1f\n",
                (large.model - small.model) / (nodes - 1), sizeof(TavRegistryProperty),
                (large.texts - small.texts) / (nodes - 1));
    std::printf("bytes an entry with %u nodes: %.0f\n", nodes, large.model + large.texts);
}
} // namespace

int main(int argc, char **argv)
{
    for (const Size &size : sizes) {
        const std::string suffix =
            '/' + std::to_string(size.first) + '/' + std::to_string(size.second);
        const auto add = [&](const char *name, void (*run)(benchmark::State &, Size)) {
            benchmark::RegisterBenchmark((name + suffix).c_str(), run, size)
                ->UseManualTime()
                ->Unit(benchmark::kMillisecond)
                ->MinTime(0.5);
        };
        add("capture", capture);
        add("update", update);
    }
    runBenchmarks(argc, argv);
    printTimes();
    printMemory();
    return 0;
}
