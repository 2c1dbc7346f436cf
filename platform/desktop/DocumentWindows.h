// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QPointer>
#include <QWidget>

class DocumentCommands;
class DocumentController;
class DocumentWindowController;
class QDropEvent;

// Connects documents and windows: closing the last window of a document closes the document, and
// files dropped onto a window are opened.
class DocumentWindows : public QObject
{
    Q_OBJECT
public:
    DocumentWindows(DocumentController &documents, DocumentCommands &commands);

    // The controller of the last active window; null without one.
    DocumentWindowController *mainWindowController() const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool asksBeforeClosing(QWidget &window);
    void noteWindowClosed(QWidget &window);
    void closeWindow(const QWidget &window);
    bool takeDrop(QWidget &window, QDropEvent &event);

    DocumentController &documents_;
    DocumentCommands &commands_;
    QPointer<QWidget> mainWindow_;
};
