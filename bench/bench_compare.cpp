// SPDX-License-Identifier: Apache-2.0
// Comparing two registries, relative to loading one of them from its archive in the same run. With
// 4 property nodes an entry, a million entries fit in memory.

#include "bench/support/RegistryGenerator.h"
#include "bench/support/Timing.h"
#include "compare/SnapshotComparison.h"
#include "store/DataStoreDecoder.h"
#include "store/DataStoreEncoder.h"

#include <QBuffer>
#include <benchmark/benchmark.h>

namespace {
QByteArray saved(const TavDataStore &store)
{
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    DataStoreEncoder::encode(store, device);
    return device.data();
}

// One value of each changed entry is another.
void change(TavDataStore &store, std::size_t every)
{
    const auto &entries = store.registryEntries();
    for (std::size_t i = 0; i < entries.size(); i += every) {
        const auto members = entries[i]->table().members();
        RegistryValue::Members changed(members.begin(), members.end());
        if (changed.empty())
            continue;
        changed.back().value = RegistryValue::string(QStringLiteral("changed"));
        entries[i]->setTable(RegistryValue::dictionary(std::move(changed)), {});
    }
}

// As many small registries as make a large one, so that all sizes read from memory that no cache
// holds.
constexpr quint32 entriesInAll = 100'000;

struct Pair
{
    std::unique_ptr<TavDataStore> before;
    std::unique_ptr<TavDataStore> after;
};

void compare(benchmark::State &state)
{
    const auto entries = static_cast<quint32>(state.range(0));
    QByteArray bytes;
    {
        FakeRegistryService registry;
        RegistryGenerator::generate(
            registry, {.entries = entries, .nodesPerEntry = static_cast<quint32>(state.range(2))});
        bytes = saved(*TavDataStore::captureOnce(registry));
    }
    std::vector<Pair> pairs(std::max(1U, entriesInAll / entries));
    for (Pair &pair : pairs) {
        pair = {DataStoreDecoder::decode(bytes), DataStoreDecoder::decode(bytes)};
        change(*pair.after, static_cast<std::size_t>(state.range(1)));
    }
    std::vector<double> ratios;
    double time = 0;
    for (auto _ : state) {
        const double loading = Timing::threadSecondsOf([&] {
            for (std::size_t i = 0; i < pairs.size(); ++i)
                benchmark::DoNotOptimize(DataStoreDecoder::decode(bytes));
        });
        const double own = Timing::threadSecondsOf([&] {
            for (const Pair &pair : pairs) {
                const SnapshotComparison comparison(*pair.before, *pair.after, {}, {});
                state.counters["changed"] = static_cast<double>(comparison.counts().changed);
            }
        });
        ratios.push_back(own / loading);
        time += own;
    }
    state.counters["compare/load"] = Timing::median(ratios);
    state.counters["ns/entry"] = time * 1e9 / static_cast<double>(entries * pairs.size()) /
                                 static_cast<double>(state.iterations());
}
BENCHMARK(compare)
    ->ArgNames({"entries", "every", "nodes"})
    ->Args({1'000, 10, 40})
    ->Args({100'000, 10, 40})
    ->Args({100'000, 1, 40})
    ->Args({1'000, 10, 4})
    ->Args({10'000, 10, 4})
    ->Args({100'000, 10, 4})
    ->Args({1'000'000, 10, 4})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);
} // namespace

BENCHMARK_MAIN();
