// SPDX-License-Identifier: Apache-2.0
// The cost of showing an entry's properties, wrapped, and of scrolling through them. For "select",
// "ratio" compares with a bare tree view of as many unwrapped rows of the same texts, and
// "ratio_short" with one whose texts are cut to the width of a column, both measured just before.
// For "scroll", "ratio" compares a page of the larger number of rows with one of the smallest.
#include "bench/support/BenchmarkMain.h"
#include "bench/support/Timing.h"
#include "display/TavPropertyOutlineItem.h"
#include "display/views/PropertiesViewController.h"
#include "display/views/TavPropertiesOutlineView.h"
#include "display/views/TavPropertiesOutlineViewDataSource.h"
#include "platform/preferences/PreferencesStore.h"
#include "store/TavDataStore.h"
#include "tests/support/FakeRegistryService.h"

#include <QHeaderView>
#include <QScrollBar>
#include <QStandardItemModel>
#include <QWindow>
#include <benchmark/benchmark.h>
#include <map>

namespace {
template<class Body>
double measure(benchmark::State &state, Body body)
{
    body();
    const double start = Timing::threadSeconds();
    for (auto _ : state)
        body();
    return 1e3 * (Timing::threadSeconds() - start) / static_cast<double>(state.iterations());
}

// Words for even numbers, bytes for odd ones; mostly short, a few lines at most.
RegistryValue mixedValue(int number)
{
    static constexpr qsizetype lengths[] = {4, 8, 12, 20, 30, 40, 60, 90, 200, 600};
    const qsizetype length = lengths[number / 4 % 10];
    switch (number % 4) {
    case 0:
        return RegistryValue::string(QStringLiteral("some words ").repeated(length).left(length));
    case 1:
        return RegistryValue::data(QByteArray(length, static_cast<char>(number)));
    case 2:
        return RegistryValue::number(static_cast<quint64>(number), 4);
    default:
        return RegistryValue::data(QByteArray("some text").repeated(length).left(length) + '\0');
    }
}

RegistryValue table(int rows)
{
    RegistryValue::Members members;
    for (int i = 0; i < rows; ++i)
        members.push_back({CompactString(QStringLiteral("property-%1").arg(i, 6, 10, QChar(u'0'))),
                           mixedValue(i)});
    return RegistryValue::dictionary(std::move(members));
}

// Two entries with the same number of properties, selected alternately.
class Entries : public PropertiesViewController
{
public:
    explicit Entries(int rows)
    {
        const QString className = QStringLiteral("DxRegistryEntry");
        registry_.addClass(className, {});
        const auto root = registry_.add(className, "Root");
        registry_.setProperties(root, table(rows));
        registry_.setRoot(root);
        registry_.publishPlanes();
        stores_[0] = TavDataStore::initFromDxRegistry(registry_);
        stores_[1] = TavDataStore::initFromDxRegistry(registry_);
        selectNext();
    }
    const PropertyRef &rootPropertyItem() const override { return selected_; }
    void propertiesViewSelectionChanged() override {}
    void selectNext()
    {
        std::swap(stores_[0], stores_[1]);
        selected_ = stores_[0]->registryRoot()->propertiesRef();
    }

private:
    FakeRegistryService registry_;
    std::unique_ptr<TavDataStore> stores_[2];
    PropertyRef selected_;
};

void show(QTreeView &view)
{
    view.resize(700, 800);
    view.show();
    while (!view.windowHandle()->isExposed())
        QCoreApplication::processEvents();
}

// The texts of a properties view, each cut to this many characters.
std::unique_ptr<QStandardItemModel> textsOf(const QAbstractItemModel &source, qsizetype maxSize)
{
    auto model = std::make_unique<QStandardItemModel>(source.rowCount(), source.columnCount());
    for (int row = 0; row < source.rowCount(); ++row) {
        for (int column = 0; column < source.columnCount(); ++column) {
            const QString text = source.index(row, column).data().toString();
            model->setItem(row, column, new QStandardItem(text.left(maxSize)));
        }
    }
    return model;
}

double timeOfBareView(const QAbstractItemModel &source, qsizetype maxSize)
{
    const std::unique_ptr<QStandardItemModel> models[] = {textsOf(source, maxSize),
                                                          textsOf(source, maxSize)};
    QTreeView view;
    view.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    view.setModel(models[0].get());
    show(view);
    double best = 1e9;
    for (int i = 1; i < 7; ++i) { // the first model is already set
        const double start = Timing::threadSeconds();
        view.setModel(models[i % 2].get());
        view.viewport()->repaint();
        best = std::min(best, 1e3 * (Timing::threadSeconds() - start));
    }
    return best;
}

void select(benchmark::State &state)
{
    Entries entries(static_cast<int>(state.range(0)));
    TavPropertiesOutlineViewDataSource dataSource(entries);
    TavPropertiesOutlineView view;
    view.setDataSource(dataSource);
    show(view);
    view.reloadData();
    const double bare = timeOfBareView(dataSource, 1'000'000);
    const double shortBare = timeOfBareView(dataSource, 50);
    const double time = measure(state, [&] {
        entries.selectNext();
        view.reloadData();
        view.viewport()->repaint();
    });
    state.counters["ms"] = time;
    state.counters["bare"] = bare;
    state.counters["ratio"] = time / bare;
    state.counters["ratio_short"] = time / shortBare;
}

void scroll(benchmark::State &state)
{
    Entries entries(static_cast<int>(state.range(0)));
    TavPropertiesOutlineViewDataSource dataSource(entries);
    TavPropertiesOutlineView view;
    view.setDataSource(dataSource);
    show(view);
    view.reloadData();
    view.viewport()->repaint();
    QScrollBar &bar = *view.verticalScrollBar();
    const double time = measure(state, [&] {
        const int next = bar.value() + bar.pageStep();
        bar.setValue(next < bar.maximum() ? next : 0);
        view.viewport()->repaint();
    });
    static double baseline = time;
    state.counters["ms/page"] = time;
    state.counters["ratio"] = time / baseline;
}

// One value of many kilobytes.
void longValue(benchmark::State &state, const char *descriptor)
{
    FakeRegistryService registry;
    const QString className = QStringLiteral("DxRegistryEntry");
    registry.addClass(className, {});
    const auto root = registry.add(className, "Root");
    QByteArray bytes(state.range(0), '\0');
    for (qsizetype i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<char>('a' + i * 167 % 26);
    registry.setProperties(
        root, RegistryValue::dictionary(
                  {{CompactString(QStringLiteral("config")), RegistryValue::data(bytes)}}));
    registry.setRoot(root);
    registry.publishPlanes();
    PreferencesStore::standard().setValue(PreferenceKeys::defaultFormat.toString(),
                                          QString::fromLatin1(descriptor));
    const auto store = TavDataStore::initFromDxRegistry(registry);
    struct Controller : PropertiesViewController
    {
        const PropertyRef &rootPropertyItem() const override { return root; }
        void propertiesViewSelectionChanged() override {}
        PropertyRef root;
    } controller;
    TavPropertiesOutlineViewDataSource dataSource(controller);
    TavPropertiesOutlineView view;
    view.setDataSource(dataSource);
    show(view);
    state.counters["ms"] = measure(state, [&] {
        controller.root = nullptr;
        view.reloadData();
        controller.root = store->registryRoot()->propertiesRef();
        view.reloadData();
        view.viewport()->repaint();
    });
    PreferencesStore::standard().remove(PreferenceKeys::defaultFormat.toString());
}

void registerAll()
{
    using benchmark::kMillisecond;
    benchmark::RegisterBenchmark("select", select)->Arg(500)->Arg(5000)->Unit(kMillisecond);
    benchmark::RegisterBenchmark("scroll", scroll)
        ->Arg(500)
        ->Arg(5000)
        ->Arg(50'000)
        ->Unit(kMillisecond);
    for (const char *descriptor : {"a", "4xhu", "1bhu", "s1h"})
        benchmark::RegisterBenchmark((std::string("long_value/") + descriptor).c_str(),
                                     [=](auto &state) { longValue(state, descriptor); })
            ->Arg(4096)
            ->Arg(65536)
            ->Unit(kMillisecond);
}
} // namespace

int main(int argc, char **argv)
{
    const OffscreenApplication application(argc, argv);
    PreferencesStore::standard().registerDefaults(TavPropertyOutlineItem::defaultsToRegister());
    TavRegistryEntry::setPropertyClass(TavPropertyOutlineItem::staticPropertyClass());
    registerAll();
    return runBenchmarks(argc, argv);
}
