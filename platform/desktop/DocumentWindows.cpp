// SPDX-License-Identifier: Apache-2.0
#include "platform/desktop/DocumentWindows.h"

#include "platform/desktop/DocumentCommands.h"
#include "platform/documents/DocumentController.h"
#include "platform/runloop/RunLoop.h"

#include <QDropEvent>
#include <QMimeData>
#include <QUrl>

namespace {
QStringList localFiles(const QMimeData &data)
{
    QStringList files;
    for (const QUrl &url : data.urls()) {
        if (url.isLocalFile())
            files.append(url.toLocalFile());
    }
    return files;
}
} // namespace

DocumentWindows::DocumentWindows(DocumentController &documents, DocumentCommands &commands)
    : documents_(documents)
    , commands_(commands)
{
    connect(&documents, &DocumentController::windowControllerAdded, this,
            [this](Document &, DocumentWindowController &controller) {
                controller.documentWindow()->installEventFilter(this);
                controller.documentWindow()->setAcceptDrops(true);
            });
}

DocumentWindowController *DocumentWindows::mainWindowController() const
{
    DocumentWindowController *last = nullptr;
    for (const auto &document : documents_.documents()) {
        for (const auto &controller : document->windowControllers()) {
            last = controller.get();
            if (last->documentWindow() == mainWindow_)
                return last;
        }
    }
    return last;
}

bool DocumentWindows::eventFilter(QObject *watched, QEvent *event)
{
    auto &window = *static_cast<QWidget *>(watched);
    switch (event->type()) {
    case QEvent::WindowActivate:
        mainWindow_ = &window;
        return false;
    case QEvent::Close:
        if (asksBeforeClosing(window)) {
            event->ignore();
            return true;
        }
        noteWindowClosed(window);
        return false;
    case QEvent::DragEnter:
    case QEvent::Drop:
        return takeDrop(window, *static_cast<QDropEvent *>(event));
    default:
        return false;
    }
}

bool DocumentWindows::asksBeforeClosing(QWidget &window)
{
    Document *const document = documents_.documentForWindow(window);
    if (!document || !document->isDocumentEdited() || document->windowControllers().size() > 1)
        return false;
    commands_.prepareToClose(*document, [this, document = QPointer(document)](bool mayClose) {
        if (mayClose && document)
            documents_.closeDocument(*document);
    });
    return true;
}

void DocumentWindows::noteWindowClosed(QWidget &window)
{
    // Deferred: the window still has to handle the event, and the document may be active further
    // down the stack.
    RunLoop::performLater(*this, [this, watched = QPointer(&window)] {
        if (watched && !watched->isVisible())
            closeWindow(*watched);
    });
}

void DocumentWindows::closeWindow(const QWidget &window)
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

bool DocumentWindows::takeDrop(QWidget &window, QDropEvent &event)
{
    const QStringList files = localFiles(*event.mimeData());
    if (files.isEmpty())
        return false;
    event.acceptProposedAction();
    // Deferred: the source of the files waits for the answer.
    if (event.type() == QEvent::Drop)
        RunLoop::performLater(*this, [this, files, watched = QPointer(&window)] {
            commands_.openFiles(files, watched);
        });
    return true;
}
