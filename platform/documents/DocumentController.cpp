// SPDX-License-Identifier: Apache-2.0
#include "platform/documents/DocumentController.h"

#include "platform/runloop/LongWork.h"

#include <QFileInfo>

DocumentController::DocumentController() = default;

DocumentController::~DocumentController()
{
    closeAllDocuments();
}

void DocumentController::closeAllDocuments()
{
    while (!documents_.empty())
        closeDocument(*documents_.back());
}

Document *DocumentController::newDocument(bool display)
{
    auto document = makeUntitledDocument();
    return document ? &add(std::move(document), display) : nullptr;
}

Document *DocumentController::openDocument(const QString &file, DocumentError &error, bool display)
{
    if (Document *const open = documentForFile(file)) {
        open->showWindows();
        return open;
    }
    auto document = makeDocument();
    LongWork work(tr("Opening “%1”…").arg(QFileInfo(file).fileName()));
    return document->read(file, work, error) ? &add(std::move(document), display) : nullptr;
}

Document &DocumentController::add(std::unique_ptr<Document> document, bool display)
{
    documents_.push_back(std::move(document));
    Document &added = *documents_.back();
    added.makeWindowControllers();
    if (display)
        added.showWindows();
    return added;
}

void DocumentController::closeDocument(Document &document)
{
    const auto found = std::find_if(documents_.begin(), documents_.end(),
                                    [&](const auto &open) { return open.get() == &document; });
    if (found == documents_.end())
        return;
    const auto closed = std::move(*found); // destroyed after it left the list
    documents_.erase(found);
}

Document *DocumentController::documentForFile(const QString &file) const
{
    const QFileInfo info(file);
    const auto found = std::find_if(documents_.begin(), documents_.end(), [&](const auto &open) {
        return open->hasFile() && QFileInfo(open->fileName()) == info;
    });
    return found != documents_.end() ? found->get() : nullptr;
}

Document *DocumentController::documentForWindow(const QWidget &window) const
{
    for (const auto &document : documents_) {
        for (const auto &controller : document->windowControllers()) {
            if (controller->documentWindow() == &window)
                return document.get();
        }
    }
    return nullptr;
}
