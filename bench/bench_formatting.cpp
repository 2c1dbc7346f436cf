// SPDX-License-Identifier: Apache-2.0
// The cost of rendering values. "ratio" compares with the first line of the same group and run. For
// data it compares with the expected cost for the size, from those of an empty value and of 4 KiB:
// it stays near 1 at any size unless the cost grows faster than the size.
#include "bench/support/BenchmarkMain.h"
#include "bench/support/RegistryGenerator.h"
#include "bench/support/Timing.h"
#include "display/PropertyFormatDescriptor.h"
#include "display/PropertyFormatStore.h"
#include "display/TavPropertyOutlineItem.h"
#include "platform/preferences/PreferencesStore.h"
#include "store/TavDataStore.h"
#include "tests/support/FakeRegistryService.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <map>

namespace {
// The time of one call of the body.
template<class Body>
double measure(benchmark::State &state, Body body)
{
    body(); // fills caches
    const double start = 1e9 * Timing::threadSeconds();
    for (auto _ : state)
        body();
    return (1e9 * Timing::threadSeconds() - start) / static_cast<double>(state.iterations());
}

// A benchmark runs several times with growing counts; the last run counts.
template<class Body>
void measureSteps(benchmark::State &state, const std::string &group, std::size_t steps, Body body)
{
    static std::map<std::string, std::pair<int64_t, double>> baselines; // size, time of a step
    const double time = measure(state, body) / static_cast<double>(steps);
    auto &[size, baseline] = baselines.try_emplace(group, state.range(0), time).first->second;
    if (size == state.range(0))
        baseline = time;
    state.counters["ns/step"] = time;
    state.counters["steps/s"] = 1e9 / time;
    state.counters["ratio"] = time / baseline;
}

struct Form
{
    const char *name;
    const char *descriptor; // none: the automatic form
    enum Content { Binary, Text, WideText } content;
};

constexpr Form forms[] = {
    {"automatic_bytes", nullptr, Form::Binary},   {"automatic_strings", nullptr, Form::Text},
    {"1_hexadecimal", "1xhu", Form::Binary},      {"2_octal", "2obu", Form::Binary},
    {"4_decimal", "4dls", Form::Binary},          {"8_hexadecimal", "8xhu", Form::Binary},
    {"1_binary", "1bhu", Form::Binary},           {"8_binary", "8bbu", Form::Binary},
    {"characters_ascii", "s1h", Form::Text},      {"characters_utf8", "s4h", Form::Text},
    {"characters_utf16", "s10b", Form::WideText}, {"characters_kelroman", "s30h", Form::Binary},
};

QByteArray contentOf(Form::Content content, qsizetype size)
{
    QByteArray bytes(size, '\0');
    for (qsizetype i = 0; i < size; ++i) {
        if (content == Form::Binary)
            bytes[i] = static_cast<char>(i * 167 + 13);
        else if (content == Form::Text || i % 2)
            bytes[i] = i % 32 == 31 ? '\0' : static_cast<char>('a' + i % 26);
    }
    return bytes;
}

// One property of one entry.
class OneValue
{
public:
    explicit OneValue(const RegistryValue &value)
    {
        const QString className = QStringLiteral("DxRegistryEntry");
        registry_.addClass(className, {});
        const auto node = registry_.add(className, "Root");
        registry_.setProperties(
            node, RegistryValue::dictionary({{CompactString(QStringLiteral("value")), value}}));
        registry_.setRoot(node);
        registry_.publishPlanes();
        store_ = TavDataStore::initFromDxRegistry(registry_);
    }
    TavPropertyOutlineItem &item() const
    {
        return static_cast<TavPropertyOutlineItem &>(
            *store_->registryRoot()->properties()->childWithName(QStringLiteral("value")));
    }

private:
    FakeRegistryService registry_;
    std::unique_ptr<TavDataStore> store_;
};

void dataForm(benchmark::State &state, const Form &form)
{
    const OneValue value(RegistryValue::data(contentOf(form.content, state.range(0))));
    TavPropertyOutlineItem &item = value.item();
    const PropertyFormatOptions options = PropertyFormatDescriptor::propertyFormatForDescriptor(
        QString::fromLatin1(form.descriptor ? form.descriptor : "a"));
    const double time = measure(state, [&] {
        benchmark::DoNotOptimize(form.descriptor ? item.formatDataValueWithOptions(options)
                                                 : item.autoformattedDataValue());
    });
    static std::map<std::string, std::pair<double, double>> costs; // fixed, per byte
    auto &[fixed, perByte] = costs[form.name];
    const auto size = static_cast<double>(state.range(0));
    if (size == 0)
        fixed = time;
    else if (size == 4096)
        perByte = (time - fixed) / size;
    state.counters["ns"] = time;
    state.counters["ns/byte"] = size > 0 ? time / size : 0;
    state.counters["ratio"] = time / (fixed + perByte * size);
}

std::vector<TavPropertyOutlineItem *> allItems(const TavDataStore &store)
{
    std::vector<TavPropertyOutlineItem *> items;
    for (const EntryRef &entry : store.registryEntries())
        items.push_back(static_cast<TavPropertyOutlineItem *>(entry->properties()));
    for (std::size_t i = 0; i < items.size(); ++i) {
        for (TavRegistryProperty *child : items[i]->children())
            items.push_back(static_cast<TavPropertyOutlineItem *>(child));
    }
    return items;
}

void allValues(benchmark::State &state)
{
    FakeRegistryService registry;
    RegistryGenerator::generate(registry, {.entries = static_cast<quint32>(state.range(0))});
    const auto store = TavDataStore::initFromDxRegistry(registry);
    const std::vector<TavPropertyOutlineItem *> items = allItems(*store);
    measureSteps(state, "all_values", items.size(), [&] {
        for (const EntryRef &entry : store->registryEntries())
            static_cast<TavPropertyOutlineItem *>(entry->properties())
                ->resetDisplayValueRecursive();
        for (TavPropertyOutlineItem *item : items)
            benchmark::DoNotOptimize(&item->displayValue());
    });
}

// Formats stored for other properties, none of which matches: the longest search.
void lookUp(benchmark::State &state)
{
    FakeRegistryService registry;
    RegistryGenerator::generate(registry, {.entries = 100});
    const auto store = TavDataStore::initFromDxRegistry(registry);
    const std::vector<TavPropertyOutlineItem *> items = allItems(*store);
    PreferencesStore &formats = PreferencesStore::shared(PropertyFormatStore::domain());
    for (const QString &key : formats.storedKeys())
        formats.remove(key);
    for (qint64 i = 0; i < state.range(0); ++i)
        formats.setValue(QStringLiteral("DxRegistryEntry:DxService:://other%1").arg(i),
                         QStringLiteral("4xhu"));
    measureSteps(state, "look_up", items.size(), [&] {
        for (const TavPropertyOutlineItem *item : items)
            benchmark::DoNotOptimize(item->propertyFormat());
    });
}

void registerAll()
{
    for (const Form &form : forms) {
        auto *rows = benchmark::RegisterBenchmark((std::string("data/") + form.name).c_str(),
                                                  [&form](auto &state) { dataForm(state, form); });
        rows->Arg(0)->Arg(4096)->Arg(16)->Arg(65536);
    }
    benchmark::RegisterBenchmark("all_values", allValues)
        ->Arg(1000)
        ->Arg(10'000)
        ->Arg(100'000)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("look_up", lookUp)->Arg(10)->Arg(1000)->Arg(100'000);
}
} // namespace

int main(int argc, char **argv)
{
    QTemporaryDir settings; // not the user's
    const QCoreApplication app(argc, argv);
    PreferencesStore::setFolder(settings.path());
    PreferencesStore::standard().registerDefaults(TavPropertyOutlineItem::defaultsToRegister());
    TavRegistryEntry::setPropertyClass(TavPropertyOutlineItem::staticPropertyClass());
    registerAll();
    return runBenchmarks(argc, argv);
}
