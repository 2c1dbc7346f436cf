#pragma once

#include "platform/documents/DocumentError.h"
#include "platform/documents/DocumentWindowController.h"

#include <QObject>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

class DocumentController;
class LongWork;
class QIODevice;
class WorkProgress;

// Something the user opens, looks at in one or more windows and may save as a file. Belongs to its
// controller. Main thread only.
class Document : public QObject
{
    Q_OBJECT
public:
    explicit Document(DocumentController &controller);
    ~Document() override;

    const QString &fileName() const { return fileName_; } // absolute; null while untitled
    bool hasFile() const { return !fileName_.isNull(); }
    virtual QString displayName() const; // "Untitled" without a file
    // To save it under for the first time, without an extension.
    virtual QString suggestedName() const { return displayName(); }

    // Whether there is something that its file does not hold.
    bool isDocumentEdited() const { return isEdited_; }
    void setDocumentEdited(bool edited);

    // Both leave the document as it was when they fail. The file becomes the document's own.
    bool read(const QString &file, LongWork &work, DocumentError &error);
    bool save(const QString &file, DocumentError &error);

    virtual QString fileType() const = 0; // the media type of its files
    // The content of a file as the document's. The document has no name by it.
    bool readFromData(const QByteArray &data, const QString &ofType, DocumentError &error);
    // What its file would hold; none when it fails.
    std::optional<QByteArray> dataOfType(const QString &type, DocumentError &error);

    virtual void makeWindowControllers() = 0;
    void addWindowController(std::unique_ptr<DocumentWindowController> controller);
    // Ends its window. The document stays.
    void removeWindowController(DocumentWindowController &controller);
    const std::vector<std::unique_ptr<DocumentWindowController>> &windowControllers() const
    {
        return windowControllers_;
    }
    void showWindows();
    void synchronizeWindowTitleWithDocumentName();

protected:
    // Whether a file that begins like this may be one of the documents; what cannot is not read.
    virtual bool checkBeginning(const QByteArray &, DocumentError &) const { return true; }
    // What is read from a file, on any thread; calling it on the main one makes it the document's.
    // False when it cannot be.
    using Content = std::function<bool(DocumentError &)>;
    virtual Content decode(const QByteArray &data, const QString &ofType,
                           WorkProgress &progress) = 0;
    // The error needs no description, and nothing at all where it is the device that fails.
    virtual bool writeData(QIODevice &device, const QString &type, DocumentError &error) = 0;

    // Any window, and the document itself, may be closed by what is called.
    void forEachWindowController(const std::function<void(DocumentWindowController &)> &call);
    void closeWindowControllers() { windowControllers_.clear(); }

private:
    DocumentController &controller_;
    QString fileName_;
    bool isEdited_ = false;
    std::vector<std::unique_ptr<DocumentWindowController>> windowControllers_;
};
