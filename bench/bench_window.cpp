// SPDX-License-Identifier: Apache-2.0
// The cost of the explorer window with 100,000 entries, all planes and the whole tree expanded.
// "ratio" compares with a bare tree view over a plain model of the same rows, measured just before.
#include "bench/support/BenchmarkMain.h"
#include "bench/support/RegistryGenerator.h"
#include "bench/support/Timing.h"
#include "display/TavPropertyOutlineItem.h"
#include "explorer/tree/TavRegistryOutlineItem.h"
#include "explorer/tree/TavRegistryOutlineView.h"
#include "explorer/window/TavWindowController.h"
#include "platform/preferences/PreferencesStore.h"
#include "store/TavDataStore.h"
#include "store/TavDocument.h"
#include "store/TavDocumentController.h"
#include "tests/support/FakeRegistryService.h"

#include <QComboBox>
#include <QMainWindow>
#include <QPainter>
#include <QScrollBar>
#include <QTreeView>
#include <benchmark/benchmark.h>
#include <malloc.h>
#include <map>

namespace {
constexpr quint32 entryCount = 100'000;

struct PlainNode
{
    QString name;
    PlainNode *parent;
    int row;
    std::vector<std::unique_ptr<PlainNode>> children;
};

class PlainModel : public QAbstractItemModel
{
public:
    explicit PlainModel(TavRegistryEntry &root) { top_.children.push_back(copy(root, &top_, 0)); }

    QModelIndex index(int row, int column, const QModelIndex &parent) const override
    {
        const auto &rows = node(parent)->children;
        return row < static_cast<int>(rows.size())
                   ? createIndex(row, column, rows[static_cast<std::size_t>(row)].get())
                   : QModelIndex();
    }
    QModelIndex parent(const QModelIndex &index) const override
    {
        PlainNode *const parent = node(index)->parent;
        return parent == &top_ ? QModelIndex() : createIndex(parent->row, 0, parent);
    }
    int rowCount(const QModelIndex &parent) const override
    {
        return static_cast<int>(node(parent)->children.size());
    }
    int columnCount(const QModelIndex &) const override { return 1; }
    QVariant data(const QModelIndex &index, int role) const override
    {
        return role == Qt::DisplayRole ? QVariant(node(index)->name) : QVariant();
    }
    void insertOne()
    {
        const QModelIndex host = index(0, 0, index(0, 0, {}));
        auto &rows = node(host)->children;
        const auto row = static_cast<int>(rows.size());
        beginInsertRows(host, row, row);
        rows.push_back(
            std::make_unique<PlainNode>(PlainNode{QStringLiteral("another"), node(host), row, {}}));
        endInsertRows();
    }

private:
    PlainNode *node(const QModelIndex &index) const
    {
        return index.isValid() ? static_cast<PlainNode *>(index.internalPointer()) : &top_;
    }
    static std::unique_ptr<PlainNode> copy(TavRegistryEntry &entry, PlainNode *parent, int row)
    {
        const QString plane = QStringLiteral("DxService");
        auto node = std::make_unique<PlainNode>(
            PlainNode{entry.nameAtLocationInPlane(plane), parent, row, {}});
        for (TavRegistryEntry *child : entry.childrenInPlane(plane))
            node->children.push_back(
                copy(*child, node.get(), static_cast<int>(node->children.size())));
        return node;
    }

    mutable PlainNode top_{{}, nullptr, 0, {}};
};

struct Registry
{
    FakeRegistryService service;
    TavDocumentController documents{service};
    std::unique_ptr<TavDocument> document;
    std::shared_ptr<TavDataStore> store;

    Registry()
    {
        RegistryGenerator::generate(service, {.entries = entryCount, .nodesPerEntry = 4});
        document = TavDocument::createUntitled(documents);
        store = document->dataStore();
    }
    static Registry &shared()
    {
        static Registry registry;
        return registry;
    }
};

struct BareView
{
    PlainModel model{*Registry::shared().store->registryRoot()};
    QTreeView view;

    BareView()
    {
        view.setUniformRowHeights(true);
        view.resize(440, 660);
    }
    void open()
    {
        view.setModel(&model);
        view.expandAll();
        view.show();
        view.grab();
    }
};

TavRegistryOutlineView &treeOf(const TavWindowController &controller)
{
    return *controller.window()->findChild<TavRegistryOutlineView *>();
}

std::map<std::string, double> baselines;

// Measures the body only, not the preparation.
template<class Prepare, class Body>
void measure(benchmark::State &state, const std::string &what, bool isBaseline, Prepare prepare,
             Body body)
{
    double total = 0;
    for (auto _ : state) {
        auto prepared = prepare();
        const double start = Timing::threadSeconds();
        body(*prepared);
        const double time = Timing::threadSeconds() - start;
        state.SetIterationTime(time);
        total += time;
    }
    const double mean = total / static_cast<double>(state.iterations());
    if (isBaseline)
        baselines[what] = mean;
    else
        state.counters["ratio"] = mean / baselines[what];
}

std::unique_ptr<BareView> openBareView()
{
    auto view = std::make_unique<BareView>();
    view->open();
    return view;
}

std::unique_ptr<TavWindowController> openWindow()
{
    auto controller = std::make_unique<TavWindowController>(*Registry::shared().document);
    controller->window()->show();
    controller->window()->grab();
    return controller;
}

void openBare(benchmark::State &state)
{
    measure(
        state, "open", true, [] { return std::make_unique<BareView>(); },
        [](BareView &bare) { bare.open(); });
}

void openExplorer(benchmark::State &state)
{
    std::vector<std::unique_ptr<TavWindowController>> windows;
    measure(
        state, "open", false, [] { return std::make_unique<int>(); },
        [&](int) { windows.push_back(openWindow()); });
    windows.resize(1);
    const std::size_t before = mallinfo2().uordblks;
    windows.clear();
    state.counters["bytes/node"] =
        static_cast<double>(before - mallinfo2().uordblks) / static_cast<double>(entryCount);
}

void insertBare(benchmark::State &state)
{
    const auto bare = openBareView();
    measure(
        state, "insert", true, [&] { return bare.get(); },
        [](BareView &view) {
            view.model.insertOne();
            view.view.grab();
        });
}

// A new entry in an expanded part of the tree, without the store's reading.
void refreshExplorer(benchmark::State &state)
{
    Registry &registry = Registry::shared();
    const auto controller = openWindow();
    TavRegistryEntry &host =
        *registry.store->registryRoot()->childrenInPlane(QStringLiteral("DxService")).front();
    for (const QString &plane : registry.store->registryPlanes()) {
        controller->setRegistryPlane(plane, true);
        controller->window()->grab();
    }
    controller->setRegistryPlane(QStringLiteral("DxService"), true);
    measure(
        state, "insert", false,
        [&] {
            registry.service.link(static_cast<RegistryObject>(host.entryTag()),
                                  registry.service.add(QStringLiteral("DxDevice"), "another"),
                                  "DxService");
            host.updateIsSingle(false);
            return controller.get();
        },
        [](TavWindowController &window) {
            window.noteDataStoreChanged();
            window.window()->grab();
        });
}

void refreshUnchanged(benchmark::State &state)
{
    const auto controller = openWindow();
    measure(
        state, "insert", false, [&] { return controller.get(); },
        [](TavWindowController &window) {
            window.noteDataStoreChanged();
            window.window()->grab();
        });
}

// The minimum for showing a place in a plane: all rows expanded, one selected.
void expandBare(benchmark::State &state)
{
    const auto bare = openBareView();
    measure(
        state, "switch", true,
        [&] {
            bare->view.collapseAll();
            return bare.get();
        },
        [](BareView &view) {
            view.view.expandAll();
            const QModelIndex host = view.model.index(0, 0, view.model.index(0, 0, {}));
            const QModelIndex last = view.model.index(view.model.rowCount(host) - 1, 0, host);
            view.view.setCurrentIndex(last);
            view.view.scrollTo(last);
            view.view.grab();
        });
}

std::unique_ptr<TavWindowController> openWindowDeepInTheTree()
{
    auto controller = openWindow();
    TavRegistryEntry &entry = *Registry::shared().store->registryEntries()[entryCount / 2];
    controller->goToEntryPath(entry.entryPathInPlane(QStringLiteral("DxService"), 0), true, true);
    return controller;
}

void switchViews(benchmark::State &state)
{
    const auto controller = openWindowDeepInTheTree();
    measure(
        state, "switch", false, [&] { return controller.get(); },
        [](TavWindowController &window) {
            window.browserIsVisible() ? window.outlineView() : window.browserView();
            window.window()->grab();
        });
}

void switchPlanes(benchmark::State &state)
{
    const auto controller = openWindowDeepInTheTree();
    const QStringList &planes = Registry::shared().store->registryPlanes();
    auto *const popup =
        controller->window()->findChild<QComboBox *>(QStringLiteral("planeListButton"));
    int plane = 0;
    measure(
        state, "switch", false,
        [&] {
            popup->setCurrentText(planes[++plane % planes.size()]);
            return controller.get();
        },
        [](TavWindowController &window) {
            window.planePopupChanged();
            window.window()->grab();
        });
}

// Collapsing and expanding the whole tree.
void toggleBare(benchmark::State &state)
{
    const auto bare = openBareView();
    measure(
        state, "toggle", true, [&] { return &bare->view; },
        [](QTreeView &view) {
            view.collapseAll();
            view.viewport()->grab();
            view.expandAll();
            view.viewport()->grab();
        });
}

void toggleExplorer(benchmark::State &state)
{
    const auto controller = openWindow();
    measure(
        state, "toggle", false, [&] { return &treeOf(*controller); },
        [](TavRegistryOutlineView &view) {
            view.setSubtreeExpanded(view.model()->index(0, 0), false);
            view.viewport()->grab();
            view.setSubtreeExpanded(view.model()->index(0, 0), true);
            view.viewport()->grab();
        });
}

void paintPage(QTreeView &view)
{
    view.verticalScrollBar()->setValue(view.verticalScrollBar()->value() + view.height());
    view.viewport()->grab();
}

void paintBare(benchmark::State &state)
{
    const auto bare = openBareView();
    measure(
        state, "paint", true, [&] { return &bare->view; }, paintPage);
}

void paintExplorer(benchmark::State &state)
{
    const auto controller = openWindow();
    measure(
        state, "paint", false, [&] { return &treeOf(*controller); }, paintPage);
}

BENCHMARK(openBare)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);
BENCHMARK(openExplorer)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);
BENCHMARK(insertBare)->UseManualTime()->Iterations(20)->Unit(benchmark::kMillisecond);
BENCHMARK(refreshExplorer)->UseManualTime()->Iterations(20)->Unit(benchmark::kMillisecond);
BENCHMARK(refreshUnchanged)->UseManualTime()->Iterations(20)->Unit(benchmark::kMillisecond);
BENCHMARK(expandBare)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);
BENCHMARK(switchViews)->UseManualTime()->Iterations(10)->Unit(benchmark::kMillisecond);
BENCHMARK(switchPlanes)->UseManualTime()->Iterations(12)->Unit(benchmark::kMillisecond);
BENCHMARK(toggleBare)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);
BENCHMARK(toggleExplorer)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);
BENCHMARK(paintBare)->UseManualTime()->Iterations(200)->Unit(benchmark::kMillisecond);
BENCHMARK(paintExplorer)->UseManualTime()->Iterations(200)->Unit(benchmark::kMillisecond);
} // namespace

int main(int argc, char **argv)
{
    const OffscreenApplication application(argc, argv);
    TavRegistryEntry::setPropertyClass(TavPropertyOutlineItem::staticPropertyClass());
    PreferencesStore::standard().registerDefaults(
        {{QStringLiteral("DefaultPlane"), QStringLiteral("DxService")},
         {QStringLiteral("DefaultView"), QStringLiteral("outline")}});
    return runBenchmarks(argc, argv);
}
