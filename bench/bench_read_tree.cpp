// SPDX-License-Identifier: Apache-2.0
// Reading a recorded tree compared with find and cat over the same files: a large machine with
// mostly folders, and one with 200,000 devices.
#include "bench/support/BenchmarkMain.h"
#include "bench/support/Timing.h"
#include "model/linux/LinuxRegistryService.h"
#include "store/TavDataStore.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <sys/stat.h>
#include <unistd.h>

namespace {
using Clock = std::chrono::steady_clock;

// A tree of devices, eight below each.
class TreeOfDevices
{
public:
    TreeOfDevices(int devices, int folders, int files)
        : folders_(folders)
        , files_(files)
    {
        makeFolder("bus/pci/devices");
        std::vector<QByteArray> paths{"devices/pci0000:00"};
        makeDevice(paths.front());
        constexpr std::size_t fanOut = 8;
        for (std::size_t i = 1; i < static_cast<std::size_t>(devices); ++i) {
            paths.push_back(paths[(i - 1) / fanOut] + "/0000:" + QByteArray::number(i, 16));
            makeDevice(paths.back());
        }
    }
    QString sys() const { return directory_.path(); }

private:
    QByteArray path(const QByteArray &below) const
    {
        return QFile::encodeName(directory_.path()) + '/' + below;
    }
    void makeFolder(const QByteArray &below) const
    {
        QDir().mkpath(QFile::decodeName(path(below)));
    }
    void makeFile(const QByteArray &below, const QByteArray &content) const
    {
        QFile file(QFile::decodeName(path(below)));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot make the tree");
    }
    void makeDevice(const QByteArray &device) const
    {
        makeFolder(device);
        makeFile(device + "/uevent", "DRIVER=ahci\nPCI_ID=8086:A352\n");
        for (int i = 0; i < files_; ++i)
            makeFile(device + "/attribute" + QByteArray::number(i), "0x10ffff\n");
        for (int i = 0; i < folders_; ++i) {
            const QByteArray folder = device + "/folder" + QByteArray::number(i);
            makeFolder(folder);
            makeFile(folder + "/state", "active\n");
        }
        const QByteArray up = QByteArray("../").repeated(static_cast<int>(device.count('/')) + 1);
        if (symlink((up + "bus/pci").constData(), path(device + "/subsystem").constData()) != 0)
            qFatal("cannot make the tree");
    }

    QTemporaryDir directory_;
    int folders_;
    int files_;
};

double findAndCat(const QString &folder)
{
    const auto begin = Clock::now();
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(QStringLiteral("find"),
                  {folder, QStringLiteral("-type"), QStringLiteral("f"), QStringLiteral("-exec"),
                   QStringLiteral("cat"), QStringLiteral("{}"), QStringLiteral("+")});
    process.waitForFinished(-1);
    return Timing::milliseconds(Clock::now() - begin);
}

void readAgainstFindAndCat(benchmark::State &state, int devices, int folders, int files)
{
    const TreeOfDevices tree(devices, folders, files);
    findAndCat(tree.sys()); // fills the kernel's caches
    double minFindCat = 0;
    double minRead = 0;
    double minCapture = 0;
    double minUpdate = 0; // this thread's time in an update without changes
    const auto note = [](double &known, double time) {
        known = known == 0 ? time : std::min(known, time);
    };
    for (auto _ : state) {
        note(minFindCat, findAndCat(tree.sys()));
        const auto begin = Clock::now();
        TreeReader(std::make_shared<SysfsRoot>(*SysfsRoot::open(QFile::encodeName(tree.sys()))))
            .run();
        const auto afterRead = Clock::now();
        note(minRead, Timing::milliseconds(afterRead - begin));
        const auto service = *LinuxRegistryService::create(tree.sys());
        const auto store = TavDataStore::initFromDxRegistry(*service);
        note(minCapture, Timing::milliseconds(Clock::now() - afterRead));
        const double beforeUpdate = Timing::threadSeconds();
        store->update();
        note(minUpdate, 1e3 * (Timing::threadSeconds() - beforeUpdate));
        state.counters["entries"] = static_cast<double>(store->registryEntries().size());
    }
    state.counters["find_cat_ms"] = minFindCat;
    state.counters["update_ms"] = minUpdate;
    state.counters["read_ratio"] = minRead / minFindCat;
    state.counters["capture_ratio"] = minCapture / minFindCat;
}
BENCHMARK_CAPTURE(readAgainstFindAndCat, mostly_folders, 6'759, 12, 2)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(5);
BENCHMARK_CAPTURE(readAgainstFindAndCat, large, 200'000, 1, 3)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(2);
} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv); // required by the store's timers
    return runBenchmarks(argc, argv);
}
