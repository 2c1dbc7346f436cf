// SPDX-License-Identifier: Apache-2.0
// The names of 10,000 devices from the hardware databases of this machine, with few kinds of
// devices and with as many as devices. "per 200 ms" compares with what a user may wait for, "ratio"
// with finding the texts by which the devices are looked up. Then what the main thread has to do
// for it, and whether the first painting of a window waits for it.
#include "bench/support/BenchmarkMain.h"
#include "bench/support/Timing.h"
#include "display/TavPropertyOutlineItem.h"
#include "explorer/window/TavWindowController.h"
#include "model/DeviceModalias.h"
#include "model/linux/HardwareDatabase.h"
#include "platform/preferences/PreferencesStore.h"
#include "platform/runloop/NotificationCenter.h"
#include "store/DataStoreNotifications.h"
#include "store/TavDataStore.h"
#include "store/TavDocument.h"
#include "store/TavDocumentController.h"
#include "tests/support/FakeLiveService.h"
#include "tests/support/RegistryValues.h"

#include <benchmark/benchmark.h>

namespace {
using namespace values;

constexpr int deviceCount = 10'000;

std::shared_ptr<DeviceNames> databases() // not opened yet
{
    return std::make_shared<DeviceNames>(std::make_unique<HardwareDatabase>());
}

// Every other one of another bus. Databases know only some of the numbers.
QString modaliasOf(int device, int kinds)
{
    const int kind = device % kinds;
    const auto number = static_cast<unsigned>(kind);
    return kind % 2 == 0
               ? QString::asprintf("pci:v00008086d0000%04Xsv000017AAsd000021F3bc02sc00i00",
                                   0x1000 + number)
               : QString::asprintf("usb:v046Dp%04Xd0100dc00dsc00dp00ic03isc01ip02in00",
                                   0xC000 + number);
}

void fill(FakeLiveService &service, int kinds)
{
    const auto root = service.add(QStringLiteral("DxRoot"), "Root");
    service.setRoot(root);
    const auto host = service.add(QStringLiteral("DxHost"), "Host");
    service.link(root, host, "DxService");
    for (int i = 0; i < deviceCount; ++i) {
        const auto device =
            service.add(QStringLiteral("DxPciDevice"), "pci", QByteArray::number(i));
        RegistryValue::Members members;
        for (int key = 0; key < 30; ++key)
            members.push_back({CompactString(QStringLiteral("attribute%1").arg(key)), number(7)});
        members.push_back({CompactString(QStringLiteral("modalias")),
                           RegistryValue::string(modaliasOf(i, kinds))});
        service.setProperties(device, RegistryValue::dictionary(std::move(members)));
        service.link(host, device, "DxService");
    }
    service.publishPlanes();
}

// Opening the database counts, too.
void lookUp(benchmark::State &state)
{
    FakeLiveService service;
    fill(service, static_cast<int>(state.range(0)));
    double time = 0;
    double reading = 0;
    double named = 0;
    for (auto _ : state) {
        const auto store = TavDataStore::initFromDxRegistry(service);
        service.setDeviceNames(databases());
        reading += Timing::threadSecondsOf([&] {
            for (const EntryRef &entry : store->registryEntries())
                benchmark::DoNotOptimize(DeviceModalias::of(entry->table()));
        });
        time += Timing::threadSecondsOf([&] { store->lookUpDeviceNamesNow(); });
        const auto &entries = store->registryEntries();
        named = static_cast<double>(
            std::count_if(entries.begin(), entries.end(),
                          [](const EntryRef &entry) { return entry->deviceName(); }));
    }
    const auto runs = static_cast<double>(state.iterations());
    state.counters["ms"] = time * 1e3 / runs;
    state.counters["per 200 ms"] = time / runs / 0.2;
    state.counters["reading ms"] = reading * 1e3 / runs;
    state.counters["ratio"] = time / reading;
    state.counters["named"] = named;
}

// In the background: until the names are announced, and what the main thread has to do for it.
void inBackground(benchmark::State &state)
{
    FakeLiveService service;
    fill(service, deviceCount);
    double wall = 0;
    double mainThread = 0;
    for (auto _ : state) {
        const auto store = TavDataStore::initFromDxRegistry(service);
        service.setDeviceNames(databases());
        bool areFound = false;
        const auto observation = NotificationCenter::defaultCenter().observe(
            DataStoreNotifications::deviceNamesFound, store.get(),
            [&](const auto &) { areFound = true; });
        wall += Timing::wallSecondsOf([&] {
            mainThread += Timing::threadSecondsOf([&] {
                store->lookUpDeviceNames();
                while (!areFound)
                    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            });
        });
    }
    const auto runs = static_cast<double>(state.iterations());
    state.counters["ms"] = wall * 1e3 / runs;
    state.counters["main thread ms"] = mainThread * 1e3 / runs;
    state.counters["main/all"] = mainThread / wall;
}

// Notices the first painting of any window.
class PaintWatch : public QObject
{
public:
    PaintWatch() { qApp->installEventFilter(this); }
    bool isPainted = false;

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        isPainted = isPainted || event->type() == QEvent::Paint;
        return false;
    }
};

// From making the window to its first painting.
double secondsToPaint(FakeLiveService &service, double &namesAtPaint)
{
    TavDocumentController documents(service);
    const auto document = TavDocument::createUntitled(documents);
    const auto store = document->dataStore();
    PaintWatch watch;
    const double start = Timing::wallSeconds();
    auto controller = std::make_unique<TavWindowController>(*document);
    TavWindowController &added = *controller;
    document->addWindowController(std::move(controller));
    added.showWindow();
    while (!watch.isPainted)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    const double seconds = Timing::wallSeconds() - start;
    for (const EntryRef &entry : store->registryEntries())
        namesAtPaint += entry->isDeviceNameLookedUp() ? 1 : 0;
    return seconds;
}

void firstPaint(benchmark::State &state)
{
    FakeLiveService service;
    fill(service, deviceCount);
    double with = 0;
    double without = 0;
    double namesAtPaint = 0;
    for (auto _ : state) {
        service.setDeviceNames(nullptr);
        without += secondsToPaint(service, namesAtPaint);
        service.setDeviceNames(databases());
        with += secondsToPaint(service, namesAtPaint);
    }
    const auto runs = static_cast<double>(state.iterations());
    state.counters["ms"] = with * 1e3 / runs;
    state.counters["with/without"] = with / without;
    state.counters["names at paint"] = namesAtPaint;
}
} // namespace

BENCHMARK(lookUp)->Arg(500)->Arg(deviceCount)->Iterations(5)->Unit(benchmark::kMillisecond);
BENCHMARK(inBackground)->Iterations(5)->Unit(benchmark::kMillisecond);
BENCHMARK(firstPaint)->Iterations(5)->Unit(benchmark::kMillisecond);

int main(int argc, char **argv)
{
    const OffscreenApplication application(argc, argv);
    TavRegistryEntry::setPropertyClass(TavPropertyOutlineItem::staticPropertyClass());
    PreferencesStore::standard().registerDefaults(PreferenceKeys::defaults());
    return runBenchmarks(argc, argv);
}
