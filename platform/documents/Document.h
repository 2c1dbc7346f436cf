// SPDX-License-Identifier: Apache-2.0
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

// A document that the user opens, views in one or more windows and may save to a file. Owned by its
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
    // The default name for the first save, without an extension.
    virtual QString suggestedName() const { return displayName(); }

    // Whether there are changes that are not in the file.
    bool isDocumentEdited() const { return isEdited_; }
    void setDocumentEdited(bool edited);

    // Both leave the document unchanged on failure. On success the file becomes the document's own.
    bool read(const QString &file, LongWork &work, DocumentError &error);
    bool save(const QString &file, DocumentError &error);

    virtual QString fileType() const = 0; // the media type of its files
    // Makes the data the document's content; the document gets no file name.
    bool readFromData(const QByteArray &data, const QString &ofType, DocumentError &error);
    // The content to save; none on failure.
    std::optional<QByteArray> dataOfType(const QString &type, DocumentError &error);

    virtual void makeWindowControllers() = 0;
    void addWindowController(std::unique_ptr<DocumentWindowController> controller);
    // Destroys its window. The document stays open.
    void removeWindowController(DocumentWindowController &controller);
    const std::vector<std::unique_ptr<DocumentWindowController>> &windowControllers() const
    {
        return windowControllers_;
    }
    void showWindows();
    void synchronizeWindowTitleWithDocumentName();

protected:
    // Whether a file with this beginning may be one of the documents; others are not read.
    virtual bool checkBeginning(const QByteArray &, DocumentError &) const { return true; }
    // Decodes a file on any thread. Calling the result on the main thread applies it to the
    // document; it returns false on failure.
    using Content = std::function<bool(DocumentError &)>;
    virtual Content decode(const QByteArray &data, const QString &ofType,
                           WorkProgress &progress) = 0;
    // The error needs no description; it stays empty when the device fails.
    virtual bool writeData(QIODevice &device, const QString &type, DocumentError &error) = 0;

    // The call may close any window and the document itself.
    void forEachWindowController(const std::function<void(DocumentWindowController &)> &call);
    void closeWindowControllers() { windowControllers_.clear(); }

private:
    DocumentController &controller_;
    QString fileName_;
    bool isEdited_ = false;
    std::vector<std::unique_ptr<DocumentWindowController>> windowControllers_;
};
