// SPDX-License-Identifier: Apache-2.0
// Large registries in the window: opening, scrolling, searching and closing a snapshot, and memory.
// "block ms" is the longest time that the main thread does not process events without a visible
// progress dialog; "announced ms" the longest with one. Making the snapshots takes long: set
// VANDREL_BENCH_SNAPSHOTS to a folder to keep them.
#include "bench/support/BenchmarkMain.h"
#include "bench/support/MainThreadWatch.h"
#include "bench/support/RegistryGenerator.h"
#include "bench/support/StoreTexts.h"
#include "display/TavPropertyOutlineItem.h"
#include "explorer/tree/TavRegistryOutlineView.h"
#include "explorer/window/TavWindowController.h"
#include "platform/desktop/DesktopRunLoop.h"
#include "platform/desktop/DocumentCommands.h"
#include "platform/preferences/PreferencesStore.h"
#include "platform/runloop/Disposal.h"
#include "store/DataStoreDecoder.h"
#include "store/DataStoreEncoder.h"
#include "store/TavDataStore.h"
#include "store/TavDocument.h"
#include "store/TavDocumentController.h"
#include "tests/support/FakeRegistryService.h"

#include <QFile>
#include <QMainWindow>
#include <QScrollBar>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <malloc.h>

namespace {
constexpr quint32 nodesPerEntry = 10;
const QString plane = QStringLiteral("DxService");

double bytesInUse()
{
    const auto info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

QString snapshotOf(quint32 entries)
{
    static const QTemporaryDir directory;
    const QString kept = qEnvironmentVariable("VANDREL_BENCH_SNAPSHOTS");
    const QString path =
        (kept.isEmpty() ? directory.path() : kept) + QStringLiteral("/%1.vandrel").arg(entries);
    if (QFile::exists(path))
        return path;
    FakeRegistryService registry;
    RegistryGenerator::generate(registry, {.entries = entries, .nodesPerEntry = nodesPerEntry});
    const auto store = TavDataStore::initFromDxRegistry(registry);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || !DataStoreEncoder::encode(*store, file).isNull())
        qFatal("cannot write the snapshot");
    return path;
}

quint32 entriesOf(const benchmark::State &state)
{
    return static_cast<quint32>(state.range(0)) * 1000;
}

struct Program
{
    DesktopRunLoop runLoop;
    FakeRegistryService service;
    TavDocumentController documents{service};
    DocumentCommands commands{documents, {QStringLiteral("Snapshots"), QStringLiteral("vandrel")}};
    MainThreadWatch watch;

    Program()
    {
        documents.setWindowControllerFactory(
            [](TavDocument &document) { return std::make_unique<TavWindowController>(document); });
    }
    // Until the window is painted and idle.
    TavWindowController &open(quint32 entries)
    {
        if (!commands.open({snapshotOf(entries)}).isEmpty())
            qFatal("cannot open the snapshot");
        watch.settle();
        return window();
    }
    TavWindowController &window()
    {
        return static_cast<TavWindowController &>(
            *documents.documents().front()->windowControllers().front());
    }
    void report(benchmark::State &state)
    {
        watch.settle();
        state.counters["block ms"] = watch.longest();
        state.counters["announced ms"] = watch.maxAnnounced();
    }
};

TavRegistryOutlineView &treeOf(const TavWindowController &controller)
{
    return *controller.window()->findChild<TavRegistryOutlineView *>();
}

void open(benchmark::State &state)
{
    snapshotOf(entriesOf(state));
    for (auto _ : state) {
        Program program;
        program.watch.restart();
        program.open(entriesOf(state));
        program.report(state);
        state.counters["painted ms"] = program.watch.firstPaint();
        state.SetIterationTime(program.watch.elapsed());
    }
}

// Each part separately, on one thread.
void decode(benchmark::State &state)
{
    QFile file(snapshotOf(entriesOf(state)));
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read the snapshot");
    const QByteArray bytes = file.readAll();
    for (auto _ : state) {
        const auto store = DataStoreDecoder::decode(bytes);
        state.PauseTiming();
        if (!store)
            qFatal("cannot decode the snapshot");
        state.ResumeTiming();
    }
    state.counters["MB"] = static_cast<double>(bytes.size()) * 1e-6;
}

void memory(benchmark::State &state, TavDataStore &store, double before)
{
    Disposal::wait();
    malloc_trim(0);
    const double used = bytesInUse() - before; // reading the texts builds property trees
    const double texts = bytesOfTexts(store);
    const auto count = static_cast<double>(store.registryEntries().size());
    state.counters["B/entry"] = used / count;
    state.counters["texts/entry"] = texts / count;
    state.counters["beyond texts"] = (used - texts) / count;
}

void memoryOfSnapshot(benchmark::State &state)
{
    snapshotOf(entriesOf(state));
    for (auto _ : state) {
        const double before = bytesInUse();
        std::unique_ptr<TavDataStore> store;
        {
            QFile file(snapshotOf(entriesOf(state)));
            if (!file.open(QIODevice::ReadOnly))
                qFatal("cannot read the snapshot");
            store = DataStoreDecoder::decode(file.readAll());
        }
        memory(state, *store, before);
    }
}

void scroll(benchmark::State &state)
{
    Program program;
    QScrollBar &bar = *treeOf(program.open(entriesOf(state))).verticalScrollBar();
    for (auto _ : state) {
        program.watch.restart();
        for (int step = 0; step <= 20; ++step) {
            bar.setValue(static_cast<int>(qint64(bar.maximum()) * step / 20));
            program.watch.settle();
        }
        program.report(state);
    }
}

void find(benchmark::State &state, const char *text)
{
    Program program;
    TavWindowController &window = program.open(entriesOf(state));
    for (auto _ : state) {
        program.watch.restart();
        window.findWithString(QString::fromLatin1(text));
        program.report(state);
        state.SetIterationTime(program.watch.elapsed());
        program.watch.restart();
        window.findNext();
        program.watch.settle();
        state.counters["next ms"] = program.watch.longest();
        program.watch.restart();
        window.findWithString(QString());
        program.watch.settle();
        state.counters["clear ms"] = program.watch.longest();
    }
}

void expand(benchmark::State &state)
{
    Program program;
    TavRegistryOutlineView &tree = treeOf(program.open(entriesOf(state)));
    for (auto _ : state) {
        program.watch.restart();
        const QModelIndex host = tree.model()->index(0, 0, tree.model()->index(0, 0));
        tree.collapse(host);
        program.watch.settle();
        tree.expand(host);
        program.report(state);
    }
}

void close(benchmark::State &state)
{
    for (auto _ : state) {
        Program program;
        program.open(entriesOf(state));
        program.watch.restart();
        program.documents.closeAllDocuments();
        program.report(state);
        state.SetIterationTime(program.watch.elapsed());
    }
}

#define LARGE Arg(200)->Arg(1000)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond)
BENCHMARK(open)->LARGE;
BENCHMARK(decode)->Arg(200)->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(memoryOfSnapshot)->Arg(200)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(scroll)->Arg(200)->Arg(1000)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(find, few, "device77")->LARGE;
BENCHMARK_CAPTURE(find, nearlyAll, "dev")->LARGE;
BENCHMARK(expand)->Arg(200)->Arg(1000)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(close)->LARGE;
} // namespace

int main(int argc, char **argv)
{
    const OffscreenApplication application(argc, argv);
    TavRegistryEntry::setPropertyClass(TavPropertyOutlineItem::staticPropertyClass());
    PreferencesStore::standard().registerDefaults(
        {{QStringLiteral("DefaultPlane"), plane},
         {QStringLiteral("DefaultView"), QStringLiteral("outline")},
         {QStringLiteral("FilteredFind"), QStringLiteral("yes")},
         {QStringLiteral("FindOptions"),
          FindOptions(FindOption::Name | FindOption::Inheritance).toInt()}});
    return runBenchmarks(argc, argv);
}
