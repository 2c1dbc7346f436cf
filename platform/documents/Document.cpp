// SPDX-License-Identifier: Apache-2.0
#include "platform/documents/Document.h"

#include "platform/documents/DocumentController.h"
#include "platform/documents/DocumentFile.h"
#include "platform/runloop/LongWork.h"

#include <QBuffer>
#include <QFileInfo>
#include <QPointer>

Document::Document(DocumentController &controller)
    : controller_(controller)
{}

Document::~Document() = default;

QString Document::displayName() const
{
    return hasFile() ? QFileInfo(fileName_).fileName() : tr("Untitled");
}

void Document::setDocumentEdited(bool edited)
{
    if (std::exchange(isEdited_, edited) != edited)
        synchronizeWindowTitleWithDocumentName();
}

bool Document::read(const QString &file, LongWork &work, DocumentError &error)
{
    const auto check = [this](const QByteArray &bytes, DocumentError &e) {
        return checkBeginning(bytes, e);
    };
    Content content;
    const auto decodeFile = [&](WorkProgress &progress) {
        if (const auto data = DocumentFile::read(file, check, error))
            content = decode(*data, fileType(), progress);
    };
    try {
        if (!work.run(decodeFile)) {
            error = DocumentFile::cancelledError(file);
            return false;
        }
        if (!content || !content(error))
            return false;
    } catch (const std::bad_alloc &) { // leave the other documents usable
        error = DocumentFile::memoryError(file);
        return false;
    }
    fileName_ = QFileInfo(file).absoluteFilePath();
    return true;
}

bool Document::readFromData(const QByteArray &data, const QString &ofType, DocumentError &error)
{
    WorkProgress progress;
    return decode(data, ofType, progress)(error);
}

bool Document::save(const QString &file, DocumentError &error)
{
    if (!DocumentFile::write(
            file,
            [this](QIODevice &device, DocumentError &e) {
                return writeData(device, fileType(), e);
            },
            error))
        return false;
    fileName_ = QFileInfo(file).absoluteFilePath();
    isEdited_ = false;
    synchronizeWindowTitleWithDocumentName();
    return true;
}

std::optional<QByteArray> Document::dataOfType(const QString &type, DocumentError &error)
{
    QBuffer data;
    data.open(QIODevice::WriteOnly);
    if (!writeData(data, type, error))
        return std::nullopt;
    return data.data();
}

void Document::addWindowController(std::unique_ptr<DocumentWindowController> controller)
{
    DocumentWindowController &added = *controller;
    windowControllers_.push_back(std::move(controller));
    Q_EMIT controller_.windowControllerAdded(*this, added);
}

void Document::removeWindowController(DocumentWindowController &controller)
{
    const auto found = std::find_if(windowControllers_.begin(), windowControllers_.end(),
                                    [&](const auto &owned) { return owned.get() == &controller; });
    if (found == windowControllers_.end())
        return;
    const auto removed = std::move(*found); // destroyed after it left the list
    windowControllers_.erase(found);
}

void Document::showWindows()
{
    forEachWindowController([](DocumentWindowController &controller) { controller.showWindow(); });
}

void Document::synchronizeWindowTitleWithDocumentName()
{
    forEachWindowController([](DocumentWindowController &controller) {
        controller.synchronizeWindowTitleWithDocumentName();
    });
}

void Document::forEachWindowController(const std::function<void(DocumentWindowController &)> &call)
{
    std::vector<DocumentWindowController *> listed;
    for (const auto &controller : windowControllers_)
        listed.push_back(controller.get());
    const QPointer<Document> alive(this);
    for (DocumentWindowController *controller : listed) {
        if (!alive)
            return;
        if (std::any_of(windowControllers_.begin(), windowControllers_.end(),
                        [&](const auto &owned) { return owned.get() == controller; }))
            call(*controller);
    }
}
