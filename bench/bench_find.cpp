// SPDX-License-Identifier: Apache-2.0
// From a search string to the painted, filtered tree, on 100,000 entries. "ratio" compares with a
// plain case-insensitive scan of all names and class names in one buffer plus a bare tree view that
// shows and expands the same rows. Then a step to the next match with few and with many matches
// before it.
#include "bench/support/BenchmarkMain.h"
#include "bench/support/RegistryGenerator.h"
#include "bench/support/Timing.h"
#include "display/TavPropertyOutlineItem.h"
#include "explorer/window/TavWindowController.h"
#include "platform/preferences/PreferencesStore.h"
#include "store/TavDataStore.h"
#include "store/TavDocument.h"
#include "store/TavDocumentController.h"
#include "tests/support/FakeRegistryService.h"

#include <QMainWindow>
#include <QStandardItemModel>
#include <QTreeView>
#include <benchmark/benchmark.h>

namespace {
constexpr quint32 entryCount = 100'000;
const QString plane = QStringLiteral("DxService");

// Matches: none; one entry in a thousand; one in sixty; nearly all.
constexpr const char *texts[] = {"zzzz", "device77", "Generated37", "dev"};

struct Registry
{
    FakeRegistryService service;
    TavDocumentController documents{service};
    std::unique_ptr<TavDocument> document;
    std::shared_ptr<TavDataStore> store;
    QString strings;
    QStandardItemModel rows;

    Registry()
    {
        RegistryGenerator::generate(service, {.entries = entryCount, .nodesPerEntry = 4});
        document = TavDocument::createUntitled(documents);
        store = document->dataStore();
        for (const EntryRef &entry : store->registryEntries())
            strings += entry->nameAtLocationInPlane(plane) + entry->inheritance().join(QString());
        copy(*store->registryRoot(), *rows.invisibleRootItem());
    }
    static void copy(TavRegistryEntry &entry, QStandardItem &parent)
    {
        auto *const row = new QStandardItem(entry.nameAtLocationInPlane(plane));
        parent.appendRow(row);
        for (TavRegistryEntry *child : entry.childrenInPlane(plane))
            copy(*child, *row);
    }
    static Registry &shared()
    {
        static Registry registry;
        return registry;
    }
};

void scan(const QString &text)
{
    const QString &buffer = Registry::shared().strings;
    qsizetype found = 0;
    for (qsizetype at = -1; (at = buffer.indexOf(text, at + 1, Qt::CaseInsensitive)) >= 0;)
        ++found;
    benchmark::DoNotOptimize(found);
}

void openBareView(QTreeView &view)
{
    view.setUniformRowHeights(true);
    view.resize(440, 660);
    view.setModel(&Registry::shared().rows);
    view.expandAll();
    view.show();
    view.grab();
}

std::unique_ptr<TavWindowController> openWindow()
{
    auto controller = std::make_unique<TavWindowController>(*Registry::shared().document);
    controller->window()->show();
    controller->window()->grab();
    return controller;
}

void search(benchmark::State &state)
{
    const QString text = QString::fromLatin1(texts[state.range(0)]);
    const auto controller = openWindow();
    double time = 0;
    double clearing = 0;
    double baseline = 0;
    for (auto _ : state) {
        QTreeView bare;
        baseline += Timing::wallSecondsOf([&] {
            scan(text);
            openBareView(bare);
        });
        const double found = Timing::wallSecondsOf([&] {
            controller->findWithString(text);
            controller->window()->grab();
        });
        state.SetIterationTime(found);
        time += found;
        clearing += Timing::wallSecondsOf([&] {
            controller->findWithString(QString());
            controller->window()->grab();
        });
    }
    const auto runs = static_cast<double>(state.iterations());
    state.counters["ratio"] = time / baseline;
    state.counters["base ms"] = baseline * 1e3 / runs;
    state.counters["clear ms"] = clearing * 1e3 / runs;
    controller->findWithString(text);
    state.counters["found"] = static_cast<double>(controller->foundObjects()->size());
}

// Starts at the match at the given percentage of all.
void step(benchmark::State &state)
{
    const auto controller = openWindow();
    controller->findWithString(QStringLiteral("dev"));
    const auto &entries = Registry::shared().store->registryEntries();
    const auto index = static_cast<std::size_t>(state.range(0)) * (entries.size() - 1) / 100;
    const auto start = entries[index]->entryPathInPlane(plane, 0);
    for (auto _ : state) {
        controller->goToEntryPath(start, true, false);
        controller->window()->grab();
        state.SetIterationTime(Timing::wallSecondsOf([&] {
            controller->findNext();
            controller->window()->grab();
        }));
    }
}

BENCHMARK(search)->DenseRange(0, 3)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);
BENCHMARK(step)->Arg(1)->Arg(50)->Arg(99)->UseManualTime()->Iterations(20)->Unit(
    benchmark::kMillisecond);
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
