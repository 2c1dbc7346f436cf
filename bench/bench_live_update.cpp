// SPDX-License-Identifier: Apache-2.0
// What following the registry costs the main thread, and how soon a change is shown. "one" is this
// thread's time for an update after one device came; "unchanged" for an update without changes;
// "capture" for a first capture, by this thread and, as "capture_wall", in total. "beyond" is the
// cost of the device beyond "unchanged", relative to the capture.
#include "bench/support/BenchmarkMain.h"
#include "bench/support/RegistryGenerator.h"
#include "bench/support/Timing.h"
#include "display/TavPropertyOutlineItem.h"
#include "explorer/tree/TavRegistryOutlineView.h"
#include "explorer/window/TavWindowController.h"
#include "model/linux/LinuxRegistryService.h"
#include "platform/preferences/PreferencesStore.h"
#include "platform/runloop/NotificationCenter.h"
#include "store/DataStoreNotifications.h"
#include "store/TavDataStore.h"
#include "store/TavDocument.h"
#include "store/TavDocumentController.h"
#include "tests/support/EventLoop.h"
#include "tests/support/FakeLiveService.h"
#include "tests/support/VirtualDisk.h"

#include <QMainWindow>
#include <algorithm>
#include <benchmark/benchmark.h>

namespace {
constexpr double millisecond = 1e-3;

// This thread's time from the cause of an update until it is reported.
template<class Cause>
double updateSeconds(const TavDataStore &store, Cause cause)
{
    bool isUpdated = false;
    const auto observation = NotificationCenter::defaultCenter().observe(
        DataStoreNotifications::changed, &store, [&](const auto &) { isUpdated = true; });
    cause();
    const double start = Timing::threadSeconds();
    while (!isUpdated) // NOLINT(bugprone-infinite-loop): the observation ends it
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    return Timing::threadSeconds() - start;
}

class Figures
{
public:
    std::vector<double> capture;
    std::vector<double> captureWall;
    std::vector<double> unchanged;
    std::vector<double> one;

    void report(benchmark::State &state, const TavDataStore &store) const
    {
        state.counters["entries"] = static_cast<double>(store.registryEntries().size());
        state.counters["capture_wall_ms"] = Timing::median(captureWall) / millisecond;
        state.counters["capture_ms"] = Timing::median(capture) / millisecond;
        state.counters["unchanged_ms"] = Timing::median(unchanged) / millisecond;
        state.counters["one_ms"] = Timing::median(one) / millisecond;
        state.counters["beyond"] =
            (Timing::median(one) - Timing::median(unchanged)) / Timing::median(capture);
    }
};

std::unique_ptr<TavDataStore> capture(RegistryService &service, Figures &figures)
{
    const double start = Timing::threadSeconds();
    const double wallStart = Timing::wallSeconds();
    auto store = TavDataStore::initFromDxRegistry(service);
    figures.capture.push_back(Timing::threadSeconds() - start);
    figures.captureWall.push_back(Timing::wallSeconds() - wallStart);
    return store;
}

void generated(benchmark::State &state)
{
    FakeLiveService service;
    RegistryGenerator::generate(service, {.entries = 100'000, .nodesPerEntry = 40});
    Figures figures;
    for (int i = 0; i < 3; ++i)
        capture(service, figures);
    const auto store = TavDataStore::initFromDxRegistry(service);
    store->setAutoupdate(true);
    const auto host = static_cast<RegistryObject>(
        store->registryRoot()->childrenInPlane(QStringLiteral("DxService")).front()->entryTag());
    for (auto _ : state) {
        figures.unchanged.push_back(updateSeconds(*store, [&] { service.reportChange(); }));
        figures.one.push_back(updateSeconds(*store, [&] {
            const RegistryObject device = service.add(QStringLiteral("DxDevice"), "another");
            service.link(host, device, "DxService");
            service.publish(device);
        }));
    }
    figures.report(state, *store);
}

bool canAddDisks(benchmark::State &state)
{
    const bool can = VirtualDisk().exists();
    if (!can)
        state.SkipWithError("no virtual disk can be added here (needs root and the zram module)");
    return can;
}

void live(benchmark::State &state)
{
    if (!canAddDisks(state))
        return;
    Figures figures;
    for (int i = 0; i < 5; ++i) {
        const auto service = *LinuxRegistryService::create(QStringLiteral("/sys"));
        capture(*service, figures);
    }
    const auto service = *LinuxRegistryService::create(QStringLiteral("/sys"));
    const auto store = TavDataStore::initFromDxRegistry(*service);
    store->setPollInterval(0.25);
    for (auto _ : state) {
        store->setPolledUpdate(true);
        figures.unchanged.push_back(updateSeconds(*store, [] {}));
        store->setPolledUpdate(false);
        turnEventLoopFor(100);
        store->setAutoupdate(true);
        VirtualDisk disk;
        figures.one.push_back(updateSeconds(*store, [] {}));
        store->setAutoupdate(false);
        disk.remove();
        turnEventLoopFor(100); // so that its removal is not counted
        store->update();
        store->clearTerminatedObjects();
    }
    figures.report(state, *store);
}

// Notes when a row that begins with a text is painted.
class PaintedRow : public QObject
{
public:
    PaintedRow(QTreeView &view, QString text)
        : view_(view)
        , text_(std::move(text))
    {
        view.viewport()->installEventFilter(this);
    }
    bool isPainted() const { return isPainted_; }

protected:
    bool eventFilter(QObject *viewport, QEvent *event) override
    {
        if (event->type() != QEvent::Paint)
            return false;
        const bool isShown = shows();
        viewport->removeEventFilter(this);
        QCoreApplication::sendEvent(viewport, event);
        viewport->installEventFilter(this);
        isPainted_ = isPainted_ || isShown;
        return true;
    }

private:
    bool shows() const
    {
        const int height = view_.viewport()->height();
        for (QModelIndex row = view_.indexAt({0, 0});
             row.isValid() && view_.visualRect(row).top() < height; row = view_.indexBelow(row)) {
            if (row.data().toString().startsWith(text_))
                return true;
        }
        return false;
    }

    QTreeView &view_;
    QString text_;
    bool isPainted_ = false;
};

TavWindowController &addWindow(TavDocument &document)
{
    auto controller = std::make_unique<TavWindowController>(document);
    TavWindowController &added = *controller;
    document.addWindowController(std::move(controller));
    return added;
}

// From the end of the request that adds a disk, after its last event, until its row is painted.
void untilPainted(benchmark::State &state)
{
    if (!canAddDisks(state))
        return;
    const auto service = *LinuxRegistryService::create(QStringLiteral("/sys"));
    TavDocumentController documents(*service);
    const auto document = TavDocument::createUntitled(documents);
    const auto store = document->dataStore();
    TavWindowController &controller = addWindow(*document);
    controller.window()->resize(1200, 4000); // all disks visible
    controller.window()->show();
    controller.outlineView();
    controller.goToRegistryPath(QStringLiteral("DxService:/virtual/block"));
    store->setAutoupdate(true);
    std::vector<double> waits;
    for (auto _ : state) {
        turnEventLoopFor(400);
        const VirtualDisk disk;
        const double start = Timing::wallSeconds();
        const PaintedRow row(*controller.window()->findChild<TavRegistryOutlineView *>(),
                             QString::fromLatin1(disk.name()));
        if (!waitFor([&] { return row.isPainted(); })) {
            state.SkipWithError("the disk's row was not painted");
            return;
        }
        waits.push_back(Timing::wallSeconds() - start);
        controller.clearTerminatedObjects();
    }
    state.counters["median_ms"] = Timing::median(waits) / millisecond;
    state.counters["most_ms"] = *std::max_element(waits.begin(), waits.end()) / millisecond;
}

BENCHMARK(generated)->Iterations(7)->Unit(benchmark::kMillisecond);
BENCHMARK(live)->Iterations(15)->Unit(benchmark::kMillisecond);
BENCHMARK(untilPainted)->Iterations(20)->Unit(benchmark::kMillisecond);
} // namespace

int main(int argc, char **argv)
{
    const OffscreenApplication application(argc, argv);
    TavRegistryEntry::setPropertyClass(TavPropertyOutlineItem::staticPropertyClass());
    return runBenchmarks(argc, argv);
}
