// SPDX-License-Identifier: Apache-2.0
#include "explorer/window/WindowStatus.h"

#include "explorer/DateText.h"
#include "explorer/IncompleteBar.h"
#include "platform/desktop/AlertBox.h"
#include "platform/desktop/InterfaceLoader.h"
#include "platform/widgets/VisibleText.h"
#include "store/TavDataStore.h"

#include <QBoxLayout>
#include <QLabel>
#include <QMainWindow>
#include <QStatusBar>
#include <QToolButton>

namespace {
constexpr int messageMilliseconds = 10'000;
} // namespace

WindowStatus::WindowStatus(QMainWindow &window)
    : window_(window)
    , incompleteBar_(new IncompleteBar)
    , findingsButton_(new QToolButton)
    , systemStatusField1_(InterfaceLoader::outlet<QLabel>(window, "systemStatusField1"))
    , systemStatusField2_(InterfaceLoader::outlet<QLabel>(window, "systemStatusField2"))
    , systemStatusField3_(InterfaceLoader::outlet<QLabel>(window, "systemStatusField3"))
{
    window.statusBar()->addWidget(InterfaceLoader::outlet<QWidget>(window, "statusFields"), 1);
    findingsButton_->setObjectName(QStringLiteral("findingsButton"));
    findingsButton_->setAutoRaise(true);
    findingsButton_->setAccessibleName(tr("Findings"));
    findingsButton_->setFocusPolicy(Qt::TabFocus);
    findingsButton_->setToolTip(tr("Shows what looks wrong"));
    findingsButton_->hide();
    connect(findingsButton_, &QToolButton::clicked, this, &WindowStatus::findingsRequested);
    window.statusBar()->addPermanentWidget(findingsButton_);
    static_cast<QBoxLayout *>(window.centralWidget()->layout())->insertWidget(1, incompleteBar_);
    connect(incompleteBar_, &IncompleteBar::tryAgainRequested, this,
            &WindowStatus::tryAgainRequested);
}

void WindowStatus::updateStatusBar(const TavDataStore &dataStore)
{
    incompleteBar_->setObjects(dataStore.incompleteObjects(), dataStore.isLive());
    systemStatusField1_->setText(
        visibleText(QStringLiteral("%1 (%2)").arg(dataStore.hostName(), dataStore.archName())));
    QString state;
    if (dataStore.isPaused())
        state = dataStore.heldEvents() == 1
                    ? tr("paused, 1 event waiting")
                    : tr("paused, %1 events waiting").arg(dataStore.heldEvents());
    else if (!dataStore.isUpToDate())
        state = dataStore.isLive() ? tr("registry has changed") : tr("was out of date");
    systemStatusField2_->setText(state);
    const QDateTime &date = dataStore.lastUpdateDate();
    systemStatusField3_->setText(
        QStringLiteral("%1 %2").arg(DateText::shortDate(date), DateText::mediumTime(date)));
}

void WindowStatus::reportPathNotFound(const QString &message)
{
    window_.statusBar()->showMessage(message, messageMilliseconds);
}

void WindowStatus::reportFollowingStopped(const QString &attribute)
{
    window_.statusBar()->showMessage(
        tr("“%1” did not answer and is no longer followed").arg(visibleText(attribute)),
        messageMilliseconds);
}

// Of the worst severity that there is.
void WindowStatus::showFindings(std::size_t errors, std::size_t warnings, std::size_t notes)
{
    const QString text = errors == 1     ? tr("1 error")
                         : errors > 1    ? tr("%1 errors").arg(errors)
                         : warnings == 1 ? tr("1 warning")
                         : warnings > 1  ? tr("%1 warnings").arg(warnings)
                         : notes == 1    ? tr("1 note")
                                         : tr("%1 notes").arg(notes);
    findingsButton_->setText(text);
    findingsButton_->setAccessibleName(tr("Findings: %1").arg(text));
    findingsButton_->setVisible(errors + warnings + notes > 0);
}

void WindowStatus::reportPathFound(bool isAmbiguous)
{
    window_.statusBar()->clearMessage();
    if (isAmbiguous)
        AlertBox::show({.title = tr("Multiple Matches for Path"),
                        .message = tr("Multiple Matches for Path"),
                        .details = tr("The first object matching the path will be selected"),
                        .window = &window_,
                        .kind = Alert::Kind::Information});
}
