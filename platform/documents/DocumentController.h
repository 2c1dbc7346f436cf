// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/documents/Document.h"

// The open documents. Subclasses create the documents. Main thread only.
class DocumentController : public QObject
{
    Q_OBJECT
public:
    DocumentController();
    ~DocumentController() override;

    const std::vector<std::unique_ptr<Document>> &documents() const { return documents_; }

    // Opens an untitled document with its windows. Null when the user cancelled.
    Document *newDocument(bool display = true);
    // Brings a document that is already open to the front. Null on failure.
    Document *openDocument(const QString &file, DocumentError &error, bool display = true);
    // Takes over a document that was made elsewhere, with windows.
    Document &add(std::unique_ptr<Document> document, bool display = true);
    // Closes its windows too, without a question.
    void closeDocument(Document &document);
    void closeAllDocuments();
    Document *documentForFile(const QString &file) const; // null unless open
    Document *documentForWindow(const QWidget &window) const;

Q_SIGNALS:
    // For a receiver that can ask the user about unsaved changes first.
    void terminationRequested();
    void windowControllerAdded(Document &document, DocumentWindowController &controller);

protected:
    virtual std::unique_ptr<Document> makeUntitledDocument() = 0; // null: cancelled
    virtual std::unique_ptr<Document> makeDocument() = 0;         // for reading from a file

private:
    std::vector<std::unique_ptr<Document>> documents_;
};
