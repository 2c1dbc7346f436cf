#include "platform/desktop/DesktopRunLoop.h"

#include "platform/desktop/WorkDialog.h"

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
    LongWork::setDisplayFactory([](const QString &title, LongWork::Kind kind) {
        return std::make_unique<WorkDialog>(title, kind);
    });
    qApp->installEventFilter(this);
}

DesktopRunLoop::~DesktopRunLoop()
{
    waitEnded();
    LongWork::setDisplayFactory(nullptr);
    loop_.setWaitDisplay(nullptr);
    loop_.setModeTest(nullptr);
}

bool DesktopRunLoop::eventFilter(QObject *watched, QEvent *event)
{
    // Deferred, for the popup or dialog counts as open until it has dealt with the event.
    if (event->type() == QEvent::Hide && watched->isWidgetType() &&
        static_cast<QWidget *>(watched)->isWindow())
        QMetaObject::invokeMethod(
            this, [this] { loop_.noteModeChange(); }, Qt::QueuedConnection);
    return false;
}

void DesktopRunLoop::waiting(Wait &wait, std::chrono::milliseconds elapsed)
{
    constexpr std::chrono::milliseconds unnoticed(500);
    if (elapsed < unnoticed)
        return;
    if (!waitDialog_)
        waitDialog_ = new WaitDialog(QApplication::activeWindow());
    waitDialog_->showWait(wait);
    // The user's input reaches the dialog alone, which is modal to all windows.
    QApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
}

void DesktopRunLoop::waitEnded()
{
    delete waitDialog_;
}
