// SPDX-License-Identifier: Apache-2.0
// A whole capture of this machine's registry compared with a tight single-threaded loop over the
// same attribute files; and a whole update without changes compared with its reading alone.
#include "bench/support/BenchmarkMain.h"
#include "bench/support/Timing.h"
#include "model/linux/LinuxRegistryService.h"
#include "store/TavDataStore.h"

#include <QCoreApplication>
#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <fcntl.h>

namespace {
using Clock = std::chrono::steady_clock;

struct Folder
{
    QByteArray path;
    std::vector<QByteArray> files;
};

// The files that a capture reads, by folder.
std::vector<Folder> filesOfACapture(const char *root)
{
    TreeReader::Options options;
    options.recordsFiles = true;
    const auto service = *LinuxRegistryService::create(QString::fromUtf8(root), options);
    service->prepare();
    std::vector<SysfsPath> files = service->filesRead();
    std::sort(files.begin(), files.end());
    std::vector<Folder> folders;
    for (const SysfsPath &file : files) {
        const QByteArray path = QByteArray(root) + '/' + file.parent().toByteArray();
        if (folders.empty() || folders.back().path != path)
            folders.push_back({path, {}});
        folders.back().files.push_back(file.name());
    }
    return folders;
}

std::size_t readAll(const std::vector<Folder> &folders)
{
    std::size_t total = 0;
    char buffer[4096];
    for (const Folder &folder : folders) {
        const FileDescriptor directory(open(folder.path.constData(), O_RDONLY | O_DIRECTORY));
        for (const QByteArray &name : folder.files) {
            const int file = openat(directory.get(), name.constData(), O_RDONLY);
            if (file < 0)
                continue;
            total +=
                static_cast<std::size_t>(std::max<ssize_t>(read(file, buffer, sizeof buffer), 0));
            close(file);
        }
    }
    return total;
}

// Alternates loop and capture, so that other load affects both.
void captureAgainstLoop(benchmark::State &state)
{
    const auto folders = filesOfACapture("/sys");
    std::vector<double> loops;
    std::vector<double> captures;
    std::vector<double> readings;
    std::vector<double> updates;
    std::size_t entries = 0;
    for (auto _ : state) {
        const auto begin = Clock::now();
        benchmark::DoNotOptimize(readAll(folders));
        const auto afterLoop = Clock::now();
        const auto service = *LinuxRegistryService::create(QStringLiteral("/sys"));
        const auto store = TavDataStore::initFromDxRegistry(*service);
        const auto afterCapture = Clock::now();
        service->prepare();
        const auto afterReading = Clock::now();
        store->update();
        updates.push_back(Timing::milliseconds(Clock::now() - afterReading));
        readings.push_back(Timing::milliseconds(afterReading - afterCapture));
        loops.push_back(Timing::milliseconds(afterLoop - begin));
        captures.push_back(Timing::milliseconds(afterCapture - afterLoop));
        entries = store->registryEntries().size();
    }
    std::size_t files = 0;
    for (const Folder &folder : folders)
        files += folder.files.size();
    state.counters["entries"] = static_cast<double>(entries);
    state.counters["files"] = static_cast<double>(files);
    state.counters["loop_ms"] = Timing::median(loops);
    state.counters["reading_ms"] = Timing::median(readings);
    state.counters["capture_ms"] = Timing::median(captures);
    state.counters["update_ratio"] = Timing::median(updates) / Timing::median(readings);
    state.counters["ratio"] = Timing::median(captures) / Timing::median(loops);
}
BENCHMARK(captureAgainstLoop)->Unit(benchmark::kMillisecond)->Iterations(25);
} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv); // required by the store's timers
    return runBenchmarks(argc, argv);
}
