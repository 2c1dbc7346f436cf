#include "display/views/TavPropertiesOutlineView.h"
#include "explorer/find/TavFindTableViewDataSource.h"
#include "explorer/selection/SelectionHistory.h"
#include "explorer/tree/TavRegistryOutlineItem.h"
#include "explorer/tree/TavRegistryOutlineView.h"
#include "explorer/window/DateText.h"
#include "explorer/window/IncompleteBar.h"
#include "explorer/window/TavWindowController.h"
#include "platform/desktop/WindowTitle.h"
#include "platform/widgets/ColumnBrowser.h"
#include "platform/widgets/FactField.h"
#include "platform/widgets/VisibleText.h"
#include "store/TavDataStore.h"
#include "store/TavDocument.h"

#include <QCheckBox>
#include <QLabel>
#include <QMainWindow>
#include <QStyle>

QString TavWindowController::windowTitleForDocumentDisplayName(const QString &displayName) const
{
    const QString object = selectedEntry_ ? selectedEntry_->nameAtLocationInPlane(registryPlane_)
                                          : tr("(no object selected)");
    QString title = document_.hasFile() && dataStore_->isLive()
                        ? tr("%1 (%2) — %3 — %4")
                              .arg(displayName, dataStore_->hostName(), registryPlane_, object)
                        : tr("%1 — %2 — %3").arg(displayName, registryPlane_, object);
    if (dataStore_->isLive() && !dataStore_->isUpToDate())
        title += tr(" (needs update)");
    return title;
}

void TavWindowController::synchronizeWindowTitleWithDocumentName()
{
    WindowTitle::set(*window_, windowTitleForDocumentDisplayName(document_.displayName()),
                     document_.isDocumentEdited());
}

void TavWindowController::setSelectedEntry(const EntryRef &entry)
{
    const PropertyRef previousRoot = rootPropertyItem_;
    populatePathsPopup(entry);
    selectedEntry_ = entry;
    if (entry) {
        rootPropertyItem_ = entry->propertiesRef();
        showObjectInfo(*entry);
    } else {
        clearObjectInfo();
        rootPropertyItem_.reset();
    }
    if (rootPropertyItem_ != previousRoot)
        showProperties(previousRoot);
    synchronizeWindowTitleWithDocumentName();
    validateActions();
}

void TavWindowController::showObjectInfo(const TavRegistryEntry &entry)
{
    objectNameField_->setDimmed(false);
    objectNameField_->setFact(entry.nameAtLocationInPlane(registryPlane_));
    QString inheritance = entry.inheritanceString();
    const RegistryService *const service = dataStore_->service();
    if (service && !service->hasSuperclassLookup())
        inheritance += tr(" (full inheritance not available)");
    objectInheritanceField_->setFact(inheritance);
    objectBundleField_->setFact(entry.bundleID());
    objectRetainCountField_->setFact(QString::number(entry.kernelRetainCount()));
    objectBusyCountField_->setFact(QString::number(entry.busyCount()));
    dxserviceAttributesView_->setVisible(entry.conformsToDxService());
    objectRegisteredCell_->setChecked(entry.isRegistered());
    objectMatchedCell_->setChecked(entry.isMatched());
    objectActiveCell_->setChecked(entry.isActive());
}

void TavWindowController::clearObjectInfo()
{
    objectNameField_->setDimmed(true);
    objectNameField_->setFact(tr("(No object selected)"));
    for (FactField *field : {objectInheritanceField_, objectBundleField_, objectRetainCountField_,
                             objectBusyCountField_})
        field->setFact(QString());
    dxserviceAttributesView_->setVisible(false);
    propertiesOutlineView_->clearSelection();
}

void TavWindowController::updateStatusBar()
{
    incompleteBar_->setObjects(dataStore_->incompleteObjects(), dataStore_->isLive());
    systemStatusField1_->setText(
        visibleText(QStringLiteral("%1 (%2)").arg(dataStore_->hostName(), dataStore_->archName())));
    QString state;
    if (!dataStore_->isUpToDate())
        state = dataStore_->isLive() ? tr("registry has changed") : tr("was out of date");
    systemStatusField2_->setText(state);
    const QDateTime &date = dataStore_->lastUpdateDate();
    systemStatusField3_->setText(
        QStringLiteral("%1 %2").arg(DateText::shortDate(date), DateText::mediumTime(date)));
}

QString TavWindowController::toolTipForRegistryEntry(const TavRegistryEntry &entry) const
{
    QString text = entry.nameAtLocationInPlane(registryPlane_);
    const auto append = [&](const QDateTime &date, const QString &format) {
        if (date.isNull())
            return;
        if (!text.isEmpty())
            text += u'\n';
        text += format.arg(DateText::shortDate(date), DateText::mediumTime(date));
    };
    append(entry.dateDiscovered(), tr("Discovered: %1 %2"));
    append(entry.dateLastUpdated(), tr("Updated: %1 %2"));
    append(entry.dateTerminated(), tr("Terminated: %1 %2"));
    const QString warning = warningForEntry(entry);
    return warning.isNull() ? text : text + u'\n' + warning;
}

// The root stands for the whole registry.
QString TavWindowController::warningForEntry(const TavRegistryEntry &entry) const
{
    return entry.isRegistryRoot() ? IncompleteBar::message(dataStore_->incompleteObjects().size())
                                  : QString();
}

QVariant TavWindowController::markForEntry(const TavRegistryEntry &entry) const
{
    return warningForEntry(entry).isNull()
               ? QVariant()
               : window_->style()->standardIcon(QStyle::SP_MessageBoxWarning);
}

QString TavWindowController::accessibleNameForOutlineItem(TavRegistryOutlineItem &item) const
{
    return accessibleNameForEntry(*item.registryEntry(), item.name());
}

QString TavWindowController::accessibleNameForEntry(const TavRegistryEntry &entry,
                                                    const QString &name) const
{
    switch (entry.registryState()) {
    case RegistryStateNew:
        return tr("%1, new").arg(name);
    case RegistryStateTerminated:
        return tr("%1, terminated").arg(name);
    default:
        return name;
    }
}

void TavWindowController::refreshDisplay()
{
    setSelectedEntry(selectedEntry_);
    // The tree shown rereads its nodes as it reloads, for its rows are to change with them.
    const TavRegistryOutlineItem *const shown = rootOutlineItem();
    for (const auto &item : std::as_const(rootOutlineItemsInPlanes_)) {
        if (item && item.get() != shown)
            item->rereadChildren();
    }
    if (!findQuery_.isNull())
        findObjectsMatching(findQuery_);
    registryOutlineView_->reloadData(TavRegistryOutlineItem::Reread::All);
    if (!browserIsVisible())
        registryBrowser_->reloadColumn(0); // so that it holds no entries that have gone
    goToEntryPath(selectedEntryPath_, false, false);
    refreshPropertiesOutlineView();
    validateActions(); // what stands beside the selection may have changed
}

void TavWindowController::refreshPropertiesOutlineView()
{
    propertiesOutlineView_->noteHeightOfAllRowsChanged();
}

void TavWindowController::noteDataStoreOutOfDate()
{
    updateStatusBar();
}

void TavWindowController::noteDataStoreChanged()
{
    refreshDisplay();
    updateStatusBar();
}

void TavWindowController::noteDataStoreObjectChanged()
{
    refreshDisplay();
    updateStatusBar();
}

void TavWindowController::noteDataStoreObjectsTerminated()
{
    registryOutlineView_->reloadData();
    registryBrowser_->redisplay();
    findDataSource_->redisplay();
    updateStatusBar();
    validateActions();
}

void TavWindowController::noteDataStoreClearedTerminatedObjects()
{
    if (document_.hasFile())
        document_.setDocumentEdited(true);
    refreshDisplay();
    history_->forgetWhatIsGone();
    validateActions();
}
