// SPDX-License-Identifier: Apache-2.0
// Comparing two registries with 40 property nodes an entry, relative to loading one of them from
// its archive in the same run.

#include "bench/support/RegistryGenerator.h"
#include "bench/support/Timing.h"
#include "compare/SnapshotComparison.h"
#include "store/DataStoreDecoder.h"
#include "store/DataStoreEncoder.h"

#include <QBuffer>
#include <benchmark/benchmark.h>

namespace {
constexpr quint32 entriesOfOneNode = 1'000'000; // from here on: memory

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

void compare(benchmark::State &state)
{
    const auto entries = static_cast<quint32>(state.range(0));
    QByteArray bytes;
    {
        FakeRegistryService registry;
        RegistryGenerator::generate(
            registry, {.entries = entries, .nodesPerEntry = entries < entriesOfOneNode ? 40U : 4U});
        bytes = saved(*TavDataStore::captureOnce(registry));
    }
    const auto before = DataStoreDecoder::decode(bytes);
    const auto after = DataStoreDecoder::decode(bytes);
    change(*after, static_cast<std::size_t>(state.range(1)));
    std::vector<double> ratios;
    double time = 0;
    for (auto _ : state) {
        const double loading = Timing::threadSecondsOf(
            [&] { benchmark::DoNotOptimize(DataStoreDecoder::decode(bytes)); });
        const double own = Timing::threadSecondsOf([&] {
            const SnapshotComparison comparison(*before, *after, {}, {});
            state.counters["changed"] = static_cast<double>(comparison.counts().changed);
        });
        ratios.push_back(own / loading);
        time += own;
    }
    state.counters["compare/load"] = Timing::median(ratios);
    state.counters["ns/entry"] =
        time * 1e9 / static_cast<double>(entries) / static_cast<double>(state.iterations());
}
BENCHMARK(compare)
    ->ArgNames({"entries", "every"})
    ->Args({1'000, 10})
    ->Args({10'000, 10})
    ->Args({100'000, 10})
    ->Args({100'000, 1})
    ->Args({1'000'000, 10})
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);
} // namespace

BENCHMARK_MAIN();
