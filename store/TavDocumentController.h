// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/documents/DocumentController.h"
#include "store/TavDocumentWindowController.h"

class RegistryService;
class TavDocument;

// The open documents, what they share, and what they need from the layers above.
class TavDocumentController : public DocumentController
{
    Q_OBJECT
public:
    using WindowControllerFactory =
        std::function<std::unique_ptr<TavDocumentWindowController>(TavDocument &document)>;

    // New documents show the registry of the service, which must outlive them.
    explicit TavDocumentController(RegistryService &service);
    ~TavDocumentController() override;

    RegistryService &registryService() const { return service_; }
    // Documents have no windows before this is set.
    void setWindowControllerFactory(WindowControllerFactory factory);
    // Called soon after a document was opened or closed.
    void setBookmarksCheck(std::function<void()> check);

    void dataViewOptionsChanged(TavRegistryProperty *item);

private:
    friend class TavDocument;

    std::unique_ptr<Document> makeUntitledDocument() override;
    std::unique_ptr<Document> makeDocument() override;
    void synchronizeTitles();
    void scheduleBookmarksCheck();
    void noteDocumentClosed();
    void reportRegistryFailure();

    RegistryService &service_;
    WindowControllerFactory windowControllerFactory_;
    std::function<void()> bookmarksCheck_;
    unsigned documentCounter_ = 0; // live documents made in this run
    bool hasReportedRegistryFailure_ = false;
};
