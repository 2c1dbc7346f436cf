#include "platform/desktop/DocumentWindows.h"

#include "platform/DocumentController.h"
#include "platform/DocumentWindowController.h"
#include "platform/RunLoop.h"

#include <QCloseEvent>
#include <QPointer>
#include <QTimer>
#include <QWidget>

DocumentWindows::DocumentWindows(DocumentController &documents)
    : documents_(documents)
{
    connect(&documents, &DocumentController::windowControllerAdded, this,
            [this](Document &, DocumentWindowController &controller) { watch(controller); });
}

void DocumentWindows::watch(DocumentWindowController &controller)
{
    controller.documentWindow()->installEventFilter(this);
}

bool DocumentWindows::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Close) {
        // The window still has to deal with the event, and the document may be at work below.
        QTimer::singleShot(0, this, [this, window = QPointer(static_cast<QWidget *>(watched))] {
            RunLoop::main().performInDefaultMode(life_, [this, window] {
                if (window && !window->isVisible())
                    noteWindowClosed(*window);
            });
        });
    }
    return false;
}

void DocumentWindows::noteWindowClosed(const QWidget &window)
{
    Document *const document = documents_.documentForWindow(window);
    if (!document)
        return;
    const auto &controllers = document->windowControllers();
    if (controllers.size() == 1) {
        documents_.closeDocument(*document);
        return;
    }
    const auto closed =
        std::find_if(controllers.begin(), controllers.end(), [&](const auto &controller) {
            return controller->documentWindow() == &window;
        });
    document->removeWindowController(**closed);
}
