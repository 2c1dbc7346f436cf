// SPDX-License-Identifier: Apache-2.0
#include "platform/desktop/DesktopRunLoop.h"

#include "platform/desktop/WorkDialog.h"
#include "platform/host/DesktopServices.h"

#include <QApplication>
#include <QEvent>

namespace {
bool isInDefaultMode()
{
    if (QApplication::activePopupWidget())
        return false;
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::none_of(windows.begin(), windows.end(), [](const QWidget *window) {
        return window->isVisible() && window->windowModality() == Qt::ApplicationModal;
    });
}
} // namespace

DesktopRunLoop::DesktopRunLoop(RunLoop &loop)
    : loop_(loop)
{
    loop_.setModeTest(isInDefaultMode);
    loop_.setWaitDisplay(this);
    DesktopServices::instance().makeWorkDisplay = [](const QString &title, LongWork::Kind kind) {
        return std::make_unique<WorkDialog>(title, kind);
    };
    qApp->installEventFilter(this);
}

DesktopRunLoop::~DesktopRunLoop()
{
    waitEnded();
    DesktopServices::instance().makeWorkDisplay = nullptr;
    loop_.setWaitDisplay(nullptr);
    loop_.setModeTest(nullptr);
}

bool DesktopRunLoop::eventFilter(QObject *watched, QEvent *event)
{
    // Deferred: the popup or dialog counts as open until it has handled the event.
    if (event->type() == QEvent::Hide && watched->isWidgetType() &&
        static_cast<QWidget *>(watched)->isWindow())
        QMetaObject::invokeMethod(
            this, [this] { loop_.noteModeChange(); }, Qt::QueuedConnection);
    return false;
}

void DesktopRunLoop::waiting(Wait &wait, std::chrono::milliseconds elapsed)
{
    constexpr std::chrono::milliseconds minShownWait(500);
    if (elapsed < minShownWait)
        return;
    if (!waitDialog_)
        waitDialog_ = new WaitDialog(QApplication::activeWindow());
    waitDialog_->showWait(wait);
    // Only the dialog gets the user's input, as it is modal to all windows.
    QApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
}

void DesktopRunLoop::waitEnded()
{
    delete waitDialog_;
}
