// SPDX-License-Identifier: Apache-2.0
#include "display/views/PropertiesContextMenu.h"

#include "display/TavPropertyOutlineItem.h"
#include "display/views/ShowAsMenu.h"
#include "display/views/TavFormatController.h"
#include "display/views/TavPropertiesOutlineView.h"
#include "display/views/TavPropertiesOutlineViewDataSource.h"

#include <QClipboard>
#include <QGuiApplication>

using DataSource = TavPropertiesOutlineViewDataSource;

PropertiesContextMenu::PropertiesContextMenu(TavPropertiesOutlineView &view,
                                             const QModelIndex &index)
    : QMenu(&view)
    , view_(view)
    , index_(index)
{
    setAttribute(Qt::WA_DeleteOnClose);
    if (index.isValid()) {
        addLinkActions();
        addReadAction();
        addPlotAction();
        addCopyActions();
    }
    addExpansionActions();
    if (index.isValid()) {
        addSeparator();
        addShowAsMenu();
        addFormatAction();
    }
}

void PropertiesContextMenu::addLinkActions()
{
    DataSource *const source = view_.dataSource();
    if (!source->isLink(index_))
        return;
    addAction(tr("&Go to Target"), this, [this, source] { source->followLink(index_, false); });
    addAction(tr("Open Target in &New Window"), this,
              [this, source] { source->followLink(index_, true); });
    addSeparator();
}

// For attributes that are read only on request.
void PropertiesContextMenu::addReadAction()
{
    DataSource *const source = view_.dataSource();
    if (source->reading(index_) != PropertiesViewController::Reading::Offered)
        return;
    addAction(source->isUnreadAttribute(index_) ? tr("&Read") : tr("&Read Again"), this,
              [this, source] { source->readAttribute(index_); });
    addSeparator();
}

void PropertiesContextMenu::addPlotAction()
{
    using Plotting = PropertiesViewController::Plotting;
    DataSource *const source = view_.dataSource();
    const Plotting plotting = source->plotting(index_);
    if (plotting == Plotting::NotOffered)
        return;
    addAction(plotting == Plotting::Plotted  ? tr("Stop &Plotting")
              : plotting == Plotting::NoRoom ? tr("&Plot (No More Lines)")
                                             : tr("&Plot"),
              this, [this, source] { source->togglePlot(index_); })
        ->setEnabled(plotting != Plotting::NoRoom);
    addSeparator();
}

void PropertiesContextMenu::addCopyActions()
{
    addAction(tr("Copy &Key"), this, [this] { copy(cellText(DataSource::KeyColumn)); });
    addAction(QIcon::fromTheme(QStringLiteral("edit-copy")), tr("Copy &Value"), this,
              [this] { copy(cellText(DataSource::ValueColumn)); });
    addAction(tr("Copy Pa&th"), this, [this] { copy(path()); });
    addAction(tr("Copy &Row"), this, [this] {
        copy(cellText(DataSource::KeyColumn) + u'\t' + cellText(DataSource::TypeColumn) + u'\t' +
             cellText(DataSource::ValueColumn));
    });
    addSeparator();
}

void PropertiesContextMenu::addExpansionActions()
{
    addAction(QIcon::fromTheme(QStringLiteral("view-expand-all")), tr("&Expand All"), &view_,
              [view = &view_] { view->setAllRowsExpanded(true); });
    addAction(QIcon::fromTheme(QStringLiteral("view-collapse-all")), tr("Co&llapse All"), &view_,
              [view = &view_] { view->setAllRowsExpanded(false); });
}

void PropertiesContextMenu::addShowAsMenu()
{
    auto *const item = dynamic_cast<TavPropertyOutlineItem *>(view_.dataSource()->item(index_));
    if (!item || !ShowAsMenu::isFor(*item))
        return;
    auto *const menu = new ShowAsMenu(*item, this);
    addMenu(menu);
    const auto select = [this] {
        if (index_.isValid())
            view_.setCurrentIndex(index_);
        return index_.isValid();
    };
    TavFormatController &formats = TavFormatController::sharedInstance();
    connect(menu, &ShowAsMenu::formatChosen, this, [select, &formats](const auto &options) {
        if (select())
            formats.formatSelectionForItsClass(options);
    });
    connect(menu, &ShowAsMenu::resetChosen, this, [select, &formats] {
        if (select())
            formats.resetFormatOfSelection();
    });
}

void PropertiesContextMenu::addFormatAction()
{
    addAction(tr("Show in &Format Panel"), this, [this] {
        if (!index_.isValid())
            return;
        view_.setCurrentIndex(index_);
        TavFormatController::sharedInstance().showPropertyFormatPanel();
    });
}

void PropertiesContextMenu::copy(const QString &text) const
{
    if (index_.isValid())
        QGuiApplication::clipboard()->setText(text);
}

QString PropertiesContextMenu::cellText(int column) const
{
    return QModelIndex(index_).siblingAtColumn(column).data(Qt::EditRole).toString();
}

QString PropertiesContextMenu::path() const
{
    const TavRegistryProperty *const item = view_.dataSource()->item(index_);
    return item ? item->propertyPath() : QString();
}
