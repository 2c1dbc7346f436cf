// SPDX-License-Identifier: Apache-2.0
#include "store/TavDocumentController.h"

#include "platform/host/Alert.h"
#include "store/TavDocument.h"

#include <QTimer>

TavDocumentController::TavDocumentController(RegistryService &service)
    : service_(service)
{}

TavDocumentController::~TavDocumentController()
{
    closeAllDocuments(); // they use this object
}

void TavDocumentController::setWindowControllerFactory(WindowControllerFactory factory)
{
    windowControllerFactory_ = std::move(factory);
}

void TavDocumentController::setBookmarksCheck(std::function<void()> check)
{
    bookmarksCheck_ = std::move(check);
}

std::unique_ptr<Document> TavDocumentController::makeUntitledDocument()
{
    return TavDocument::createUntitled(*this);
}

std::unique_ptr<Document> TavDocumentController::makeDocument()
{
    return std::make_unique<TavDocument>(*this);
}

void TavDocumentController::dataViewOptionsChanged(TavRegistryProperty *item)
{
    for (const auto &document : documents())
        static_cast<TavDocument &>(*document).dataViewOptionsChanged(item);
}

void TavDocumentController::synchronizeTitles()
{
    for (const auto &document : documents())
        document->synchronizeWindowTitleWithDocumentName();
}

void TavDocumentController::scheduleBookmarksCheck()
{
    QTimer::singleShot(0, this, [this] {
        if (bookmarksCheck_)
            bookmarksCheck_();
    });
}

void TavDocumentController::noteDocumentClosed()
{
    const std::size_t remaining = documents().size();
    if (remaining < 2)
        documentCounter_ = static_cast<unsigned>(remaining);
    if (remaining == 1) {
        auto &last = static_cast<TavDocument &>(*documents().front());
        last.setIndex(1);
        last.synchronizeWindowTitleWithDocumentName();
    }
    scheduleBookmarksCheck();
}

void TavDocumentController::reportRegistryFailure()
{
    if (std::exchange(hasReportedRegistryFailure_, true))
        return;
    AlertPanel::show({.title = tr("DxRegistry Error"),
                      .message = tr("Could not access the DxRegistry. No data can be read.Other "
                                    "documents may also fail to read data."),
                      .buttons = {tr("Quit"), tr("Continue")}},
                     [this](int button) {
                         if (button == 0)
                             Q_EMIT terminationRequested();
                     });
}
