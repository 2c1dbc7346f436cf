#include "explorer/window/TavWindowController.h"
#include "platform/desktop/InterfaceLoader.h"
#include "platform/host/SystemBeep.h"
#include "store/TavDataStore.h"

#include <QDialog>
#include <QLineEdit>
#include <QMainWindow>
#include <QPushButton>

void TavWindowController::toggleAutoupdate()
{
    if (dataStore_->isLive())
        dataStore_->setAutoupdate(!dataStore_->isAutoupdate());
    validateActions();
}

void TavWindowController::toggleTimedUpdate()
{
    if (!dataStore_->isLive()) {
        SystemBeep::beep();
    } else if (dataStore_->isPolledUpdate()) {
        dataStore_->setPolledUpdate(false);
    } else {
        dataStore_->setPolledUpdate(true);
        changeTimedUpdate();
    }
    validateActions();
}

void TavWindowController::changeTimedUpdate()
{
    // Deliberate: once the sheet for paths has been loaded, this one is not loaded any more.
    if (!goToPathSheet_)
        loadTimedUpdateSheet();
    if (!timedUpdateSheet_) {
        SystemBeep::beep();
        return;
    }
    timedUpdateSheet_->open();
    timedUpdateField_->setText(QString::number(static_cast<int>(dataStore_->pollInterval())));
    timedUpdateField_->setFocus(Qt::OtherFocusReason);
    timedUpdateField_->selectAll();
}

void TavWindowController::loadTimedUpdateSheet()
{
    delete timedUpdateSheet_;
    timedUpdateSheet_ = loadSheet("TimedUpdateSheet");
    timedUpdateField_ = InterfaceLoader::outlet<QLineEdit>(*timedUpdateSheet_, "timedUpdateField");
    timedUpdateCancelButton_ =
        InterfaceLoader::outlet<QPushButton>(*timedUpdateSheet_, "timedUpdateCancelButton");
    timedUpdateSetButton_ =
        InterfaceLoader::outlet<QPushButton>(*timedUpdateSheet_, "timedUpdateSetButton");
    connect(timedUpdateCancelButton_, &QPushButton::clicked, this,
            &TavWindowController::cancelChangeTimedUpdate);
    connect(timedUpdateSetButton_, &QPushButton::clicked, this,
            &TavWindowController::performChangeTimedUpdate);
}

void TavWindowController::cancelChangeTimedUpdate()
{
    timedUpdateSheet_->done(0);
}

void TavWindowController::performChangeTimedUpdate()
{
    timedUpdateSheet_->done(1);
}
