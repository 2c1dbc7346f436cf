// SPDX-License-Identifier: Apache-2.0
// Searching a store of 100,000 entries with 40 property nodes each, compared with a plain
// case-insensitive scan of the same strings in one buffer; and searching for shown values too, and
// filter expressions, both compared with the search for a text everywhere.

#include "bench/support/RegistryGenerator.h"
#include "bench/support/Timing.h"
#include "display/ShownValueSearch.h"
#include "platform/preferences/PreferencesStore.h"
#include "store/TavDataStore.h"
#include "store/filter/FilterExpression.h"

#include <benchmark/benchmark.h>

namespace {
constexpr FindOptions everyOption = FindOption::Name | FindOption::Class | FindOption::Inheritance |
                                    FindOption::BundleID | FindOption::Keys | FindOption::Values |
                                    FindOption::Special;
constexpr FindOptions defaultOptions = FindOption::Name | FindOption::Inheritance;

struct Registry
{
    FakeRegistryService service;
    std::unique_ptr<TavDataStore> store;
};

std::unique_ptr<Registry> &registry()
{
    static std::unique_ptr<Registry> registry;
    return registry;
}

void makeRegistry()
{
    registry() = std::make_unique<Registry>();
    FakeRegistryService &service = registry()->service;
    RegistryGenerator::generate(service, {.entries = 100'000, .nodesPerEntry = 40});
    registry()->store = TavDataStore::initFromDxRegistry(service);
}

TavDataStore &store()
{
    if (!registry())
        makeRegistry();
    return *registry()->store;
}

void appendStrings(QString &buffer, const TavRegistryProperty &table)
{
    std::vector<const TavRegistryProperty *> pending{&table};
    while (!pending.empty()) {
        const TavRegistryProperty *const node = pending.back();
        pending.pop_back();
        buffer += node->nameView();
        buffer += node->stringView();
        // A search skips sets.
        if (node->valueType() != RegistryValue::Type::Set) {
            for (const TavRegistryProperty *child : node->children())
                pending.push_back(child);
        }
    }
}

// What a search with the options checks: the name once for each plane of the entry, the rest once.
QString stringsOf(FindOptions options)
{
    QString buffer;
    for (const EntryRef &entry : store().registryEntries()) {
        for (const QString &plane : store().registryPlanes()) {
            if (entry->isRegistryRoot() || !entry->parentsInPlane(plane).empty())
                buffer += entry->nameAtLocationInPlane(plane);
        }
        buffer += entry->inheritance().join(QString());
        if (options.testFlag(FindOption::BundleID))
            buffer += entry->bundleID();
        if (options & (FindOption::Keys | FindOption::Values))
            appendStrings(buffer, *entry->properties());
    }
    return buffer;
}

// With a change before each query, the store must rebuild the order of its entries.
void query(benchmark::State &state, const QString &text, FindOptions options, bool changing = false)
{
    const QString buffer = stringsOf(options);
    double time = 0;
    double scanTime = 0;
    for (auto _ : state) {
        if (changing)
            EntryList().clear();
        time += Timing::wallSecondsOf([&] { store().runQuery(text, options, nullptr, nullptr); });
        scanTime += Timing::wallSecondsOf([&] {
            qsizetype found = 0;
            for (qsizetype at = -1; (at = buffer.indexOf(text, at + 1, Qt::CaseInsensitive)) >= 0;)
                ++found;
            benchmark::DoNotOptimize(found);
        });
    }
    const auto runs = static_cast<double>(state.iterations());
    state.counters["ms"] = time * 1e3 / runs;
    state.counters["scan ms"] = scanTime * 1e3 / runs;
    state.counters["query/scan"] = time / scanTime;
    state.counters["Mchars"] = static_cast<double>(buffer.size()) * 1e-6;
}

// Matches: none, so that every check runs; a few entries; many.
constexpr const char *texts[] = {"zzzz", "device77", "Generated3"};

// The first search of a store builds the orders that later ones reuse.
void everywhereAtFirst(benchmark::State &state)
{
    makeRegistry();
    query(state, QString::fromLatin1(texts[state.range(0)]), everyOption);
}

void everywhere(benchmark::State &state)
{
    query(state, QString::fromLatin1(texts[state.range(0)]), everyOption);
}

void byDefault(benchmark::State &state)
{
    query(state, QString::fromLatin1(texts[state.range(0)]), defaultOptions);
}

void byDefaultAfterChange(benchmark::State &state)
{
    query(state, QString::fromLatin1(texts[state.range(0)]), defaultOptions, true);
}

// Texts that no number, any number, and data too can have.
constexpr const char *shownTexts[] = {"zzzz", "0x8086", "4294967294", "86 80"};

void shownValues(benchmark::State &state)
{
    const QString text = QString::fromLatin1(shownTexts[state.range(0)]);
    PreferencesStore::standard().registerDefaults(PreferenceKeys::defaults());
    store(); // made before the time runs
    double textTime = 0;
    double time = 0;
    for (auto _ : state) {
        textTime +=
            Timing::wallSecondsOf([&] { store().runQuery(text, everyOption, nullptr, nullptr); });
        time += Timing::wallSecondsOf([&] {
            store().runQuery(text, everyOption | FindOption::ShownValues, nullptr, nullptr,
                             ShownValueSearch(text));
        });
    }
    const auto runs = static_cast<double>(state.iterations());
    state.counters["ms"] = time * 1e3 / runs;
    state.counters["text ms"] = textTime * 1e3 / runs;
    state.counters["shown/text"] = time / textTime;
}

constexpr const char *expressions[] = {
    "class ~ Generated3 and not nowhere", // facts and a key that is missing
    "attribute_3 == 0x8086",              // at the top
    "power_7 < statistics_1",             // below it
    "under(device77) and attribute_2 =~ '0000:00:[0-9a-f]+'",
    "attribute_0 ~ zzzz or attribute_2 ~ zzzz or folder_0/uevent_2 ~ zzzz or attribute_1 > power_1",
};

void filter(benchmark::State &state)
{
    const QString text = QString::fromLatin1(expressions[state.range(0)]);
    auto parsed = FilterExpression::parse(text);
    const FilterExpression expression = *parsed;
    store().runQuery(QString::fromLatin1(texts[0]), everyOption, nullptr, nullptr);
    double time = 0;
    double searchTime = 0;
    for (auto _ : state) {
        time += Timing::wallSecondsOf([&] { store().runFilter(expression, nullptr, nullptr); });
        searchTime += Timing::wallSecondsOf([&] {
            store().runQuery(QString::fromLatin1(texts[0]), everyOption, nullptr, nullptr);
        });
    }
    EntrySet matches;
    store().runFilter(expression, &matches, nullptr);
    const auto runs = static_cast<double>(state.iterations());
    state.counters["ms"] = time * 1e3 / runs;
    state.counters["search ms"] = searchTime * 1e3 / runs;
    state.counters["filter/search"] = time / searchTime;
    state.counters["matches"] = static_cast<double>(matches.size());
}
} // namespace

BENCHMARK(everywhereAtFirst)->DenseRange(0, 2)->Iterations(1)->Unit(benchmark::kMillisecond);
BENCHMARK(everywhere)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
BENCHMARK(byDefault)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
BENCHMARK(byDefaultAfterChange)->DenseRange(0, 2)->Unit(benchmark::kMillisecond);
BENCHMARK(shownValues)->DenseRange(0, 3)->Unit(benchmark::kMillisecond);
BENCHMARK(filter)->DenseRange(0, 4)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
