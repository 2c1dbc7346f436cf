#pragma once

#include "platform/DocumentError.h"
#include "platform/DocumentWindowController.h"

#include <QObject>
#include <functional>
#include <memory>
#include <vector>

class DocumentController;
class QIODevice;

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

    // Whether there is something that its file does not hold.
    bool isDocumentEdited() const { return isEdited_; }
    void setDocumentEdited(bool edited);

    // Both leave the document as it was when they fail. The file becomes the document's own.
    bool read(const QString &file, DocumentError &error);
    bool save(const QString &file, DocumentError &error);

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
    virtual bool readFromData(const QByteArray &data, DocumentError &error) = 0;
    // The error needs no description, and nothing at all where it is the device that fails.
    virtual bool writeData(QIODevice &device, DocumentError &error) = 0;

    // Any window, and the document itself, may be closed by what is called.
    void forEachWindowController(const std::function<void(DocumentWindowController &)> &call);
    void closeWindowControllers() { windowControllers_.clear(); }

private:
    DocumentController &controller_;
    QString fileName_;
    bool isEdited_ = false;
    std::vector<std::unique_ptr<DocumentWindowController>> windowControllers_;
};
