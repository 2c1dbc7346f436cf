// SPDX-License-Identifier: Apache-2.0
#include "explorer/views/ExplorerViews.h"

#include "explorer/columns/TavBrowserDelegate.h"
#include "explorer/tree/TavRegistryOutlineView.h"
#include "platform/desktop/InterfaceLoader.h"
#include "platform/desktop/SplitViewAutosave.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/widgets/ColumnBrowser.h"
#include "platform/widgets/SegmentedControl.h"

#include <QLayout>
#include <QMainWindow>
#include <QSplitter>
#include <QStackedWidget>

ExplorerViews::ExplorerViews(QMainWindow &window, const ExplorerContext &context)
    : window_(window)
    , context_(context)
    , outlineDataSource_(std::make_unique<TavRegistryOutlineViewDataSource>(context))
    , browserDelegate_(std::make_unique<TavBrowserDelegate>(context))
{
    connectOutlets(window);
    setUpTree();
    setUpBrowser();
    explorerSplitView_->setStretchFactor(0, 0);
    explorerSplitView_->setStretchFactor(1, 1);
    splitViewAutosave_ = std::make_unique<SplitViewAutosave>(*explorerSplitView_);
    setUpStyleControl();
}

ExplorerViews::~ExplorerViews() = default;

void ExplorerViews::connectOutlets(QMainWindow &window)
{
    viewStyleControl_ = InterfaceLoader::outlet<SegmentedControl>(window, "viewStyleControl");
    explorerSplitView_ = InterfaceLoader::outlet<QSplitter>(window, "explorerSplitView");
    explorerTabView_ = InterfaceLoader::outlet<QStackedWidget>(window, "explorerTabView");
    registryBrowser_ = InterfaceLoader::outlet<ColumnBrowser>(window, "registryBrowser");
    registryOutlineView_ =
        InterfaceLoader::outlet<TavRegistryOutlineView>(window, "registryOutlineView");
}

void ExplorerViews::setUpTree()
{
    registryOutlineView_->setDataSource(*outlineDataSource_);
    connect(outlineDataSource_.get(),
            &TavRegistryOutlineViewDataSource::outlineViewSelectionChanged, this, [this] {
                const TavRegistryOutlineItem *const selected = outlineDataSource_->selectedItem();
                Q_EMIT selectionChanged(selected ? Path(selected->entryPath()) : std::nullopt);
            });
    connect(registryOutlineView_, &TavRegistryOutlineView::contextMenuRequested, this,
            &ExplorerViews::contextMenuRequested);
}

void ExplorerViews::setUpStyleControl()
{
    viewStyleControl_->setUp();
    connect(viewStyleControl_, &SegmentedControl::segmentChosen, this, [this] {
        switch (viewStyleControl_->selectedTag()) {
        case 0:
            Q_EMIT styleChosen(Style::Outline);
            break;
        case 1:
            Q_EMIT styleChosen(Style::Browser);
            break;
        default:
            break;
        }
    });
}

void ExplorerViews::show(Style style)
{
    const bool isBrowser = style == Style::Browser;
    viewStyleControl_->selectSegmentWithTag(isBrowser ? 1 : 0);
    explorerTabView_->setCurrentWidget(
        InterfaceLoader::outlet<QWidget>(window_, isBrowser ? "Browser" : "Outline"));
    arrangeSplitView(isBrowser ? Qt::Vertical : Qt::Horizontal);
}

// The dividers run across the direction in which the panes are laid out.
void ExplorerViews::arrangeSplitView(Qt::Orientation panes)
{
    const bool isSideBySide = panes == Qt::Horizontal;
    const bool isRestored = splitViewAutosave_->arrange(
        panes, (isSideBySide ? PreferenceKeys::dividerOfTree : PreferenceKeys::dividerOfColumns)
                   .toString());
    const int extent = isSideBySide ? window_.width() : window_.height();
    if (!isRestored)
        explorerSplitView_->setSizes({extent * 2 / 5, extent * 3 / 5});
    setPaneMargins(isSideBySide);
}

// Each pane keeps its distance from the window's edges, and none from the divider.
void ExplorerViews::setPaneMargins(bool isSideBySide)
{
    constexpr int margin = 8;
    const int inner = isSideBySide ? 0 : margin;
    const auto layout = [&](const char *pane) {
        return InterfaceLoader::outlet<QWidget>(window_, pane)->layout();
    };
    layout("explorerPane")->setContentsMargins(margin, margin, inner, 0);
    layout("propertiesPane")->setContentsMargins(inner, margin, margin, 0);
}

bool ExplorerViews::browserIsVisible() const
{
    return explorerTabView_->currentWidget()->isAncestorOf(registryBrowser_);
}

QWidget *ExplorerViews::visibleView() const
{
    return browserIsVisible() ? static_cast<QWidget *>(registryBrowser_) : registryOutlineView_;
}

bool ExplorerViews::isFirstResponder() const
{
    const QWidget *const focused = window_.focusWidget();
    return focused && (focused == registryOutlineView_ || focused == registryBrowser_ ||
                       registryBrowser_->isAncestorOf(focused));
}

void ExplorerViews::makeFirstResponder()
{
    visibleView()->setFocus(Qt::OtherFocusReason);
}

TavRegistryOutlineItem *ExplorerViews::rootOutlineItem() const
{
    return outlineDataSource_->rootOutlineItem();
}

void ExplorerViews::reloadTree()
{
    registryOutlineView_->reloadData();
}

void ExplorerViews::reload()
{
    registryOutlineView_->reloadData();
    registryBrowser_->reloadColumn(0);
}

void ExplorerViews::redisplay()
{
    registryOutlineView_->reloadData();
    registryBrowser_->redisplay();
}

void ExplorerViews::redisplayRows()
{
    registryOutlineView_->redisplay();
    registryBrowser_->redisplay();
}

void ExplorerViews::reloadAfterChange()
{
    registryOutlineView_->reloadData(TavRegistryOutlineItem::Reread::All);
    if (!browserIsVisible())
        registryBrowser_->reloadColumn(0); // so that it keeps no entries that are gone
}

// The tree rereads the nodes that it shows as it reloads, because its rows must change with them.
void ExplorerViews::rereadHiddenNodes()
{
    outlineDataSource_->rereadHiddenNodes();
}

void ExplorerViews::windowWillClose()
{
    splitViewAutosave_.reset();
}

void ExplorerViews::disposeOfNodes()
{
    outlineDataSource_->disposeOfNodes();
}

void ExplorerViews::expandAll()
{
    registryOutlineView_->setAllRowsExpanded(true);
}

void ExplorerViews::collapseAll()
{
    registryOutlineView_->setAllRowsExpanded(false);
    if (const TavRegistryOutlineItem *const root = rootOutlineItem()) {
        registryOutlineView_->selectRow(*root);
        registryOutlineView_->scrollToSelection();
    }
}

TavRegistryEntryPath ExplorerViews::selectEntryPath(const TavRegistryEntryPath &path,
                                                    bool scrollToVisible)
{
    return browserIsVisible() ? selectInBrowser(path, scrollToVisible)
                              : registryOutlineView_->selectItemAtEntryPath(path, scrollToVisible);
}

void ExplorerViews::selectNothing()
{
    registryBrowser_->reloadColumn(0);
    registryOutlineView_->deselectAll();
}

// Deliberate: in the columns only the first row has none before it, so that the command can run
// with no row selected.
bool ExplorerViews::hasSibling(int step) const
{
    if (!browserIsVisible())
        return siblingInTree(step).has_value();
    const int column = registryBrowser_->selectedColumn();
    const int row = registryBrowser_->selectedRow(column);
    return step > 0 ? row != registryBrowser_->numberOfRows(column) - 1 : row != 0;
}

ExplorerViews::Path ExplorerViews::siblingInTree(int step) const
{
    const TavRegistryOutlineItem *const selected = outlineDataSource_->selectedItem();
    if (!selected)
        return std::nullopt;
    const TavRegistryOutlineItem *const sibling =
        step > 0 ? selected->nextSibling() : selected->previousSibling();
    return sibling ? Path(sibling->entryPath()) : std::nullopt;
}
