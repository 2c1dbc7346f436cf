// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/documents/Document.h"
#include "platform/documents/RecentDocuments.h"

#include <QStringList>

class DocumentController;
class QCheckBox;
class QFileDialog;
class QWidget;

// The user's commands on documents, with their questions and messages.
class DocumentCommands : public QObject
{
    Q_OBJECT
public:
    struct Kind
    {
        QString name;
        QString extension;
        QString copyOption = {}; // the text of a box that saves another copy; null: none
    };
    using Done = std::function<void(bool)>; // whether it was done; not called if the window closes

    DocumentCommands(DocumentController &documents, Kind kind);

    RecentDocuments &recentDocuments() { return recentDocuments_; }

    void newDocument();
    void openDocument(QWidget &window);                        // asks for the files
    void openFiles(const QStringList &files, QWidget *window); // reports failures
    struct Failure
    {
        QString file;
        DocumentError error;
    };
    QList<Failure> open(const QStringList &files, bool display = true);
    void showFailures(const QList<Failure> &failures, QWidget *window) const;
    void saveDocument(Document &document, const Done &done = {});
    void saveDocumentAs(Document &document, const Done &done = {}); // asks for the name
    // Asks about unsaved changes. The document may be closed when done gets true.
    void prepareToClose(Document &document, const Done &done);
    // Asks about the unsaved changes of every document, then closes all. Must not be called from a
    // window that is closing.
    void terminate();

Q_SIGNALS:
    void readyToTerminate(); // all documents are closed
    // The user ticked the box, which leaves the document as it is.
    void copyRequested(Document &document, const QString &file);

private:
    QFileDialog *makeDialog(QWidget &window, const QString &title) const;
    QCheckBox *addCopyBox(QFileDialog &dialog) const; // null: there is no such option
    QString suggestedFile(const Document &document) const;
    void noteUsed(const Document &document, const QString &file);
    void save(Document &document, const QString &file, QWidget *window, const Done &done);

    DocumentController &documents_;
    Kind kind_;
    RecentDocuments recentDocuments_;
};
