#pragma once

#include <QPointer>
#include <QWidget>

class DocumentCommands;
class DocumentController;
class DocumentWindowController;
class QDropEvent;

// Ties documents to their windows: a document whose last window is closed is closed too, and files
// dropped onto a window are opened.
class DocumentWindows : public QObject
{
    Q_OBJECT
public:
    DocumentWindows(DocumentController &documents, DocumentCommands &commands);

    // Of the window that was active last; null without one.
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
