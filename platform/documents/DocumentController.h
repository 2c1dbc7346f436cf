#pragma once

#include "platform/documents/Document.h"

// The documents that are open. What the kinds of documents are is for its heirs to say.
// Main thread only.
class DocumentController : public QObject
{
    Q_OBJECT
public:
    DocumentController();
    ~DocumentController() override;

    const std::vector<std::unique_ptr<Document>> &documents() const { return documents_; }

    // Untitled, with its windows. Null when the user has cancelled it.
    Document *newDocument(bool display = true);
    // One that is open already is only brought to the front. Null when it fails.
    Document *openDocument(const QString &file, DocumentError &error, bool display = true);
    // With its windows and without a question.
    void closeDocument(Document &document);
    void closeAllDocuments();
    Document *documentForFile(const QString &file) const; // null unless open
    Document *documentForWindow(const QWidget &window) const;

Q_SIGNALS:
    // To whoever can ask the user about unsaved changes first.
    void terminationRequested();
    void windowControllerAdded(Document &document, DocumentWindowController &controller);

protected:
    virtual std::unique_ptr<Document> makeUntitledDocument() = 0; // null: cancelled
    virtual std::unique_ptr<Document> makeDocument() = 0;         // to be read from a file

private:
    Document &add(std::unique_ptr<Document> document, bool display);

    std::vector<std::unique_ptr<Document>> documents_;
};
