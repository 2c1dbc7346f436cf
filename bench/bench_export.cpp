// SPDX-License-Identifier: Apache-2.0
// Exporting entries with 40 property nodes each, compared with saving them as an archive in the
// same run, and how long removing serial numbers takes.

#include "bench/support/RegistryGenerator.h"
#include "bench/support/Timing.h"
#include "display/export/JsonExport.h"
#include "store/DataStoreEncoder.h"
#include "store/redaction/RedactedStore.h"

#include <QBuffer>
#include <benchmark/benchmark.h>

namespace {
constexpr quint32 nodesPerEntry = 40;
constexpr auto noReport = [](double) {};

struct Generated
{
    explicit Generated(quint32 entries)
    {
        RegistryGenerator::generate(registry, {.entries = entries, .nodesPerEntry = nodesPerEntry});
        store = TavDataStore::initFromDxRegistry(registry);
    }
    FakeRegistryService registry;
    std::unique_ptr<TavDataStore> store;
};

// Counts what is written and keeps nothing, so that both writers are measured alone.
class Sink : public QIODevice
{
public:
    Sink() { open(WriteOnly | Unbuffered); }
    double bytes = 0;

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *, qint64 size) override
    {
        bytes += static_cast<double>(size);
        return size;
    }
};

void exportJson(benchmark::State &state)
{
    const Generated generated(static_cast<quint32>(state.range(0)));
    const TavDataStore &store = *generated.store;
    const double nodes = static_cast<double>(state.range(0)) * nodesPerEntry;
    const ExportedEntries entries =
        ExportedEntries::subtree(store, QStringLiteral("DxService"), *store.registryRoot());
    std::vector<double> ratios;
    double time = 0;
    double bytes = 0;
    for (auto _ : state) {
        Sink archive;
        const double saving =
            Timing::threadSecondsOf([&] { DataStoreEncoder::encode(store, archive); });
        Sink json;
        const double own =
            Timing::threadSecondsOf([&] { JsonExport::write(entries, json, noReport); });
        ratios.push_back(own / saving);
        time += own;
        bytes += json.bytes;
    }
    const double runs = static_cast<double>(state.iterations());
    state.counters["json/archive"] = Timing::median(ratios);
    state.counters["entries"] = static_cast<double>(entries.items().size());
    state.counters["ns/node"] = time * 1e9 / nodes / runs;
    state.counters["bytes/node"] = bytes / nodes / runs;
}

void redact(benchmark::State &state)
{
    const Generated generated(static_cast<quint32>(state.range(0)));
    double time = 0;
    for (auto _ : state) {
        time += Timing::threadSecondsOf(
            [&] { benchmark::DoNotOptimize(RedactedStore(*generated.store, noReport).store()); });
    }
    state.counters["ns/node"] = time * 1e9 / (static_cast<double>(state.range(0)) * nodesPerEntry) /
                                static_cast<double>(state.iterations());
}
} // namespace

BENCHMARK(exportJson)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(redact)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
