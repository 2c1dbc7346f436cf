#include "display/views/TavPropertiesOutlineView.h"
#include "explorer/tree/TavRegistryOutlineView.h"
#include "explorer/window/TavWindowController.h"
#include "platform/desktop/InterfaceLoader.h"
#include "platform/desktop/SplitViewAutosave.h"
#include "platform/widgets/ColumnBrowser.h"
#include "platform/widgets/SearchField.h"
#include "platform/widgets/SegmentedControl.h"

#include <QAction>
#include <QApplication>
#include <QLayout>
#include <QMainWindow>
#include <QSplitter>
#include <QStackedWidget>

bool TavWindowController::browserIsVisible() const
{
    return explorerTabView_->currentWidget()->isAncestorOf(registryBrowser_);
}

QWidget *TavWindowController::explorerView() const
{
    return browserIsVisible() ? static_cast<QWidget *>(registryBrowser_) : registryOutlineView_;
}

bool TavWindowController::isExplorerFirstResponder() const
{
    const QWidget *const focused = window_->focusWidget();
    return focused && (focused == registryOutlineView_ || focused == registryBrowser_ ||
                       registryBrowser_->isAncestorOf(focused));
}

void TavWindowController::makeExplorerFirstResponder()
{
    explorerView()->setFocus(Qt::OtherFocusReason);
}

void TavWindowController::changeView()
{
    switch (viewStyleControl_->selectedTag()) {
    case 0:
        outlineView();
        break;
    case 1:
        browserView();
        break;
    default:
        break;
    }
}

void TavWindowController::outlineView()
{
    showView(ViewStyle::Outline);
}

void TavWindowController::browserView()
{
    showView(ViewStyle::Browser);
}

void TavWindowController::showView(ViewStyle style)
{
    const bool isBrowser = style == ViewStyle::Browser;
    const bool hadFocus = isExplorerFirstResponder();
    window_->setUpdatesEnabled(false);
    viewStyleControl_->selectSegmentWithTag(isBrowser ? 1 : 0);
    explorerTabView_->setCurrentWidget(
        InterfaceLoader::outlet<QWidget>(*window_, isBrowser ? "Browser" : "Outline"));
    arrangeSplitView(isBrowser ? Qt::Vertical : Qt::Horizontal);
    goToEntryPath(selectedEntryPath_, true, true);
    if (hadFocus)
        makeExplorerFirstResponder();
    QWidget::setTabOrder(findField_, explorerView());
    QWidget::setTabOrder(explorerView(), propertiesOutlineView_);
    refreshPropertiesOutlineView();
    validateActions();
    window_->setUpdatesEnabled(true);
}

// The dividers run across the direction in which the panes are laid out.
void TavWindowController::arrangeSplitView(Qt::Orientation panes)
{
    const bool isSideBySide = panes == Qt::Horizontal;
    const bool isRestored = splitViewAutosave_->arrange(
        panes, isSideBySide ? QStringLiteral("TavExplorerSplitView-Vertical")
                            : QStringLiteral("TavExplorerSplitView-Horizontal"));
    const int extent = isSideBySide ? window_->width() : window_->height();
    if (!isRestored)
        explorerSplitView_->setSizes({extent * 2 / 5, extent * 3 / 5});
    setPaneMargins(isSideBySide);
}

// Each pane keeps its distance from the window's edges, and none from the divider.
void TavWindowController::setPaneMargins(bool isSideBySide)
{
    constexpr int margin = 8;
    const int inner = isSideBySide ? 0 : margin;
    const auto layout = [&](const char *pane) {
        return InterfaceLoader::outlet<QWidget>(*window_, pane)->layout();
    };
    layout("explorerPane")->setContentsMargins(margin, margin, inner, 0);
    layout("propertiesPane")->setContentsMargins(inner, margin, margin, 0);
}
