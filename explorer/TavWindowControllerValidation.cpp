#include "explorer/TavWindowController.h"
#include "store/TavDataStore.h"

#include <QAction>

void TavWindowController::validateActions()
{
    const bool isLive = dataStore_->isLive();
    for (QAction *action : {updateAction_, clearTerminatedObjectsAction_, toggleAutoupdateAction_,
                            toggleTimedUpdateAction_, changeTimedUpdateAction_})
        action->setEnabled(isLive);
    updateSelectedObjectAction_->setEnabled(isLive && selectedEntry_);
    outlineViewAction_->setChecked(!browserIsVisible());
    browserViewAction_->setChecked(browserIsVisible());
    toggleAutoupdateAction_->setChecked(isLive && dataStore_->isAutoupdate());
    toggleShowTerminatedObjectsAction_->setText(
        showTerminatedObjects_ ? tr("&Hide Terminated Objects") : tr("&Show Terminated Objects"));
    validateTimedUpdateActions();
    validateNavigationActions();
}

void TavWindowController::validateTimedUpdateActions()
{
    const bool isPolled = dataStore_->isLive() && dataStore_->isPolledUpdate();
    const QString interval =
        QStringLiteral(" (%1s)").arg(QString::number(dataStore_->pollInterval(), 'g'));
    toggleTimedUpdateAction_->setChecked(isPolled);
    if (dataStore_->isLive())
        toggleTimedUpdateAction_->setText(isPolled ? tr("&Timed Update") + interval
                                                   : tr("&Timed Update…"));
    changeTimedUpdateAction_->setText(tr("Set Timed Update &Interval…") + interval);
}
