// What following the registry costs the main thread, and how late a change is seen.
//
// "one" is the time of this thread for an update after a single device came; "unchanged" for an
// update in which nothing did, the pass over all entries that every update makes; "capture" for a
// first capture, of this thread and, as "capture_wall", until it was there. "beyond" is what the
// device costs beyond that pass, as a part of the capture.
#include "bench/support/RegistryGenerator.h"
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

#include <QApplication>
#include <QMainWindow>
#include <QTemporaryDir>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <ctime>

namespace {
constexpr double millisecond = 1e-3;

double threadSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

double wallSeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

// Of this thread, from what brings an update until it has been told of.
template<class Cause>
double updateSeconds(const TavDataStore &store, Cause cause)
{
    bool isUpdated = false;
    const auto observation = NotificationCenter::defaultCenter().observe(
        DataStoreNotifications::changed, &store, [&](const auto &) { isUpdated = true; });
    cause();
    const double start = threadSeconds();
    while (!isUpdated) // NOLINT(bugprone-infinite-loop): the observation ends it
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    return threadSeconds() - start;
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
        state.counters["capture_wall_ms"] = median(captureWall) / millisecond;
        state.counters["capture_ms"] = median(capture) / millisecond;
        state.counters["unchanged_ms"] = median(unchanged) / millisecond;
        state.counters["one_ms"] = median(one) / millisecond;
        state.counters["beyond"] = (median(one) - median(unchanged)) / median(capture);
    }
};

std::unique_ptr<TavDataStore> capture(RegistryService &service, Figures &figures)
{
    const double start = threadSeconds();
    const double wallStart = wallSeconds();
    auto store = TavDataStore::initFromDxRegistry(service);
    figures.capture.push_back(threadSeconds() - start);
    figures.captureWall.push_back(wallSeconds() - wallStart);
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
    QString error;
    Figures figures;
    for (int i = 0; i < 5; ++i) {
        const auto service = LinuxRegistryService::create(QStringLiteral("/sys"), &error);
        capture(*service, figures);
    }
    const auto service = LinuxRegistryService::create(QStringLiteral("/sys"), &error);
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
        turnEventLoopFor(100); // its end is not to be counted
        store->update();
        store->clearTerminatedObjects();
    }
    figures.report(state, *store);
}

// Tells when a row that begins with a text has been painted.
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

// From the end of the request that adds a disk, and so after its last event, until its row has been
// painted.
void untilPainted(benchmark::State &state)
{
    if (!canAddDisks(state))
        return;
    QString error;
    const auto service = LinuxRegistryService::create(QStringLiteral("/sys"), &error);
    TavDocumentController documents(*service);
    const auto document = TavDocument::createUntitled(documents);
    const auto store = document->dataStore();
    TavWindowController &controller = addWindow(*document);
    controller.window()->resize(1200, 4000); // all disks in sight
    controller.window()->show();
    controller.outlineView();
    controller.goToRegistryPath(QStringLiteral("DxService:/virtual/block"));
    store->setAutoupdate(true);
    std::vector<double> waits;
    for (auto _ : state) {
        turnEventLoopFor(400);
        const VirtualDisk disk;
        const double start = wallSeconds();
        const PaintedRow row(*controller.window()->findChild<TavRegistryOutlineView *>(),
                             QString::fromLatin1(disk.name()));
        if (!waitFor([&] { return row.isPainted(); })) {
            state.SkipWithError("the disk's row was not painted");
            return;
        }
        waits.push_back(wallSeconds() - start);
        controller.clearTerminatedObjects();
    }
    state.counters["median_ms"] = median(waits) / millisecond;
    state.counters["most_ms"] = *std::max_element(waits.begin(), waits.end()) / millisecond;
}

BENCHMARK(generated)->Iterations(7)->Unit(benchmark::kMillisecond);
BENCHMARK(live)->Iterations(15)->Unit(benchmark::kMillisecond);
BENCHMARK(untilPainted)->Iterations(20)->Unit(benchmark::kMillisecond);
} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const QTemporaryDir settings;
    PreferencesStore::setFolder(settings.path());
    TavRegistryEntry::setPropertyClass(TavPropertyOutlineItem::staticPropertyClass());
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
