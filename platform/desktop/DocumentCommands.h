#pragma once

#include "platform/documents/Document.h"
#include "platform/documents/RecentDocuments.h"

#include <QStringList>

class DocumentController;
class QFileDialog;
class QWidget;

// What the user does with documents, with all that has to be asked and told.
class DocumentCommands : public QObject
{
    Q_OBJECT
public:
    // What the files are called.
    struct Kind
    {
        QString name;
        QString extension;
    };
    using Done = std::function<void(bool)>; // whether it was done; not called if the window goes

    DocumentCommands(DocumentController &documents, Kind kind);

    RecentDocuments &recentDocuments() { return recentDocuments_; }

    void newDocument();
    void openDocument(QWidget &window);                        // asks which
    void openFiles(const QStringList &files, QWidget *window); // tells what cannot be opened
    struct Failure
    {
        QString file;
        DocumentError error;
    };
    QList<Failure> open(const QStringList &files, bool display = true);
    void tell(const QList<Failure> &failures, QWidget *window) const;
    void saveDocument(Document &document, const Done &done = {});
    void saveDocumentAs(Document &document, const Done &done = {}); // asks where
    // Asks about unsaved changes. Done with true, the document may be closed.
    void prepareToClose(Document &document, const Done &done);
    // Asks about the unsaved changes of every document; then closes all. Not to be called from a
    // window that goes.
    void terminate();

Q_SIGNALS:
    void readyToTerminate(); // all documents are closed

private:
    QFileDialog *makeDialog(QWidget &window, const QString &title) const;
    QString suggestedFile(const Document &document) const;
    void save(Document &document, const QString &file, QWidget *window, const Done &done);

    DocumentController &documents_;
    Kind kind_;
    RecentDocuments recentDocuments_;
};
