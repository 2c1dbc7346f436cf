// SPDX-License-Identifier: Apache-2.0
// Saving and loading a snapshot, by number of entries with 40 property nodes each. Loading is
// compared with walking the same bytes with the plain CBOR reader in the same run.

#include "bench/support/RegistryGenerator.h"
#include "bench/support/Timing.h"
#include "store/DataStoreDecoder.h"
#include "store/DataStoreEncoder.h"

#include <QBuffer>
#include <QCborStreamReader>
#include <benchmark/benchmark.h>
#include <sys/mman.h>

namespace {
constexpr quint32 nodesPerEntry = 40;

struct Snapshot
{
    FakeRegistryService registry;
    std::unique_ptr<TavDataStore> store;
    QByteArray bytes;
};

QByteArray saved(const TavDataStore &store)
{
    QBuffer device;
    device.open(QIODevice::WriteOnly);
    DataStoreEncoder::encode(store, device);
    return device.data();
}

// Made once per size; only the last one is kept.
Snapshot &snapshotOf(quint32 entries)
{
    static quint32 size = 0;
    static std::unique_ptr<Snapshot> snapshot;
    if (size != entries) {
        snapshot.reset();
        snapshot = std::make_unique<Snapshot>();
        RegistryGenerator::generate(snapshot->registry,
                                    {.entries = entries, .nodesPerEntry = nodesPerEntry});
        snapshot->store = TavDataStore::initFromDxRegistry(snapshot->registry);
        snapshot->bytes = saved(*snapshot->store);
        size = entries;
    }
    return *snapshot;
}

void walk(const QByteArray &bytes)
{
    QCborStreamReader reader(bytes);
    while (reader.lastError() == QCborError::NoError && reader.hasNext())
        reader.next();
}

void reportPerNode(benchmark::State &state, const char *what, double total)
{
    state.counters[what] = total / (static_cast<double>(state.range(0)) * nodesPerEntry) /
                           static_cast<double>(state.iterations());
}

void save(benchmark::State &state)
{
    const Snapshot &snapshot = snapshotOf(static_cast<quint32>(state.range(0)));
    double time = 0;
    double bytes = 0;
    for (auto _ : state) {
        time += Timing::threadSecondsOf([&] { benchmark::DoNotOptimize(saved(*snapshot.store)); });
        bytes += static_cast<double>(snapshot.bytes.size());
    }
    reportPerNode(state, "ns/node", time * 1e9);
    reportPerNode(state, "bytes/node", bytes);
}

// Touches memory first: the host of a virtual machine may take several times as long to provide it
// as the loading itself.
void claimMemory(std::size_t size)
{
    constexpr std::size_t pageSize = 4096;
    void *const memory =
        mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        return;
    for (std::size_t at = 0; at < size; at += pageSize)
        static_cast<volatile char *>(memory)[at] = 1;
    munmap(memory, size);
}

void load(benchmark::State &state)
{
    const Snapshot &snapshot = snapshotOf(static_cast<quint32>(state.range(0)));
    double time = 0;
    double walkTime = 0;
    // Users wait for the first load, which takes pages from the kernel; later loads find them in
    // the process.
    constexpr std::size_t memoryPerNode = 400;
    claimMemory(memoryPerNode * nodesPerEntry * static_cast<std::size_t>(state.range(0)));
    std::unique_ptr<TavDataStore> first;
    const double firstTime =
        Timing::threadSecondsOf([&] { first = DataStoreDecoder::decode(snapshot.bytes); });
    first.reset();
    for (auto _ : state) {
        std::unique_ptr<TavDataStore> store;
        time += Timing::threadSecondsOf([&] { store = DataStoreDecoder::decode(snapshot.bytes); });
        walkTime += Timing::threadSecondsOf([&] { walk(snapshot.bytes); });
        if (!store)
            state.SkipWithError("not loaded");
    }
    reportPerNode(state, "ns/node", time * 1e9);
    reportPerNode(state, "walk ns/node", walkTime * 1e9);
    const double meanWalkTime = walkTime / static_cast<double>(state.iterations());
    state.counters["load/walk"] = time / walkTime;
    state.counters["first load/walk"] = firstTime / meanWalkTime;
}
} // namespace

BENCHMARK(save)->Arg(1000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(load)->Arg(1000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
