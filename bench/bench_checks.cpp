// SPDX-License-Identifier: Apache-2.0
// All checks over 100,000 entries with 40 property nodes each, compared with one search for a text
// everywhere; and making what the checks look at, which the window waits for.
#include "bench/support/RegistryGenerator.h"
#include "bench/support/Timing.h"
#include "checks/CheckRun.h"
#include "store/TavDataStore.h"

#include <benchmark/benchmark.h>

namespace {
constexpr FindOptions everyOption = FindOption::Name | FindOption::Class | FindOption::Inheritance |
                                    FindOption::BundleID | FindOption::Keys | FindOption::Values |
                                    FindOption::Special;

void allChecks(benchmark::State &state)
{
    FakeRegistryService service;
    RegistryGenerator::generate(
        service, {.entries = static_cast<quint32>(state.range(0)), .nodesPerEntry = 40});
    const auto store = TavDataStore::initFromDxRegistry(service);
    const QString text = QStringLiteral("zzzz");
    store->runQuery(text, everyOption, nullptr, nullptr);
    double searchTime = 0;
    double viewTime = 0;
    double time = 0;
    for (auto _ : state) {
        searchTime +=
            Timing::wallSecondsOf([&] { store->runQuery(text, everyOption, nullptr, nullptr); });
        std::unique_ptr<CheckedRegistry> view;
        viewTime +=
            Timing::wallSecondsOf([&] { view = std::make_unique<CheckedRegistry>(*store); });
        time += Timing::wallSecondsOf(
            [&] { benchmark::DoNotOptimize(CheckRun().over(*view).findings.size()); });
    }
    const auto runs = static_cast<double>(state.iterations());
    state.counters["search ms"] = searchTime * 1e3 / runs;
    state.counters["view ms"] = viewTime * 1e3 / runs;
    state.counters["checks ms"] = time * 1e3 / runs;
    state.counters["checks/search"] = time / searchTime;
}
} // namespace

BENCHMARK(allChecks)->Arg(1'000)->Arg(100'000)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
