// SPDX-License-Identifier: Apache-2.0
#include "store/TavDocument.h"

#include "platform/archive/ArchiveFormat.h"
#include "platform/preferences/PreferencesStore.h"
#include "platform/runloop/RunLoop.h"
#include "store/DataStoreDecoder.h"
#include "store/DataStoreEncoder.h"
#include "store/DataStoreNotifications.h"
#include "store/FileVersionExceptions.h"
#include "store/StoreBuilder.h"
#include "store/StoreLogging.h"
#include "store/TavDocumentController.h"

#include <QDateTime>

namespace {
constexpr qsizetype maxNameLength = 50; // of a host in the name of a file

// The table's text, or the fallback.
QString errorText(const char *key, int code, const char *fallback)
{
    const QByteArray fullKey = key + QByteArray::number(code);
    const QString text = QCoreApplication::translate("TavError", fullKey.constData());
    return text == QString::fromLatin1(fullKey) ? QCoreApplication::translate("TavError", fallback)
                                                : text;
}

DocumentError errorWithCode(TavDocument::ErrorCode code)
{
    return {
        TavDocument::errorDomain(), code,
        errorText("description", code,
                  "Vandrel could not complete the operation because an unknown error occurred."),
        errorText("failureReason", code, "An unknown error occurred.")};
}
} // namespace

std::unique_ptr<TavDocument> TavDocument::createUntitled(TavDocumentController &controller)
{
    auto document = std::make_unique<TavDocument>(controller);
    if (!document->takeSnapshot())
        return nullptr;
    document->applyUpdatePreferences();
    // Later: nobody waits for it to see the window.
    RunLoop::performLater(*document, [opened = document.get()] {
        opened->openedState_ = StoreBuilder::copyOf(*opened->dataStore_);
    });
    document->setIndex(++controller.documentCounter_);
    controller.synchronizeTitles();
    controller.scheduleBookmarksCheck();
    return document;
}

TavDocument::TavDocument(TavDocumentController &controller)
    : Document(controller)
    , documents_(controller)
{}

TavDocument::~TavDocument()
{
    observations_.clear();
    closeWindowControllers(); // they use the store
    if (dataStore_)
        dataStore_->setDelegate(nullptr);
    dataStore_.reset();
    documents_.noteDocumentClosed();
}

bool TavDocument::takeSnapshot()
{
    // The store does not own the document.
    const std::shared_ptr<TavDataStoreDelegate> delegate(std::shared_ptr<void>(), this);
    dataStore_ = TavDataStore::initFromDxRegistry(documents_.registryService(), delegate);
    if (!dataStore_)
        return false;
    _registerForDataStoreNotifications();
    return true;
}

void TavDocument::setDataStore(std::shared_ptr<TavDataStore> store)
{
    dataStore_ = std::move(store);
    _registerForDataStoreNotifications();
}

void TavDocument::markThisMoment()
{
    markedState_ = StoreBuilder::copyOf(*dataStore_);
}

void TavDocument::applyUpdatePreferences()
{
    const PreferencesStore &preferences = PreferencesStore::standard();
    dataStore_->setAutoupdate(preferences.flag(PreferenceKeys::autoupdate));
    dataStore_->setPolledUpdate(preferences.flag(PreferenceKeys::polledUpdate));
    dataStore_->setPollInterval(
        static_cast<double>(preferences.integer(PreferenceKeys::pollInterval)));
}

QString TavDocument::displayName() const
{
    if (hasFile() || !dataStore_ || !dataStore_->isLive())
        return Document::displayName();
    if (documents_.documentCounter_ < 2)
        return dataStore_->hostName();
    return tr("%1 (%2)").arg(dataStore_->hostName(), QString::number(index_));
}

// Unique for every file.
QString TavDocument::suggestedName() const
{
    if (hasFile() || !dataStore_ || !dataStore_->isLive())
        return displayName();
    return dataStore_->hostName().left(maxNameLength) +
           QDateTime::currentDateTime().toString(QStringLiteral(" yyyy-MM-dd HH.mm.ss"));
}

void TavDocument::makeWindowControllers()
{
    if (documents_.windowControllerFactory_)
        addWindowController(documents_.windowControllerFactory_(*this));
}

bool TavDocument::checkBeginning(const QByteArray &bytes, DocumentError &error) const
{
    if (bytes.startsWith(ArchiveFormat::signature))
        return true;
    error = errorWithCode(UnknownError);
    return false;
}

Document::Content TavDocument::decode(const QByteArray &data, const QString &,
                                      WorkProgress &progress)
{
    std::shared_ptr<TavDataStore> store;
    ErrorCode code = UnknownError;
    try {
        store = DataStoreDecoder::decode(data, progress);
    } catch (const TavOldUnsupportedFileVersionException &) {
        code = OldVersionError;
    } catch (const TavNewUnsupportedFileVersionException &) {
        code = NewVersionError;
    }
    return [this, store, code](DocumentError &error) { return takeContent(store, code, error); };
}

bool TavDocument::takeContent(std::shared_ptr<TavDataStore> store, ErrorCode code,
                              DocumentError &error)
{
    dataStore_ = std::move(store);
    if (dataStore_)
        dataStore_->setBundleService(documents_.registryService());
    else
        error = errorWithCode(code);
    return dataStore_ != nullptr;
}

bool TavDocument::writeData(QIODevice &device, const QString &, DocumentError &error)
{
    if (dataStore_->isLive())
        dataStore_->lookUpDeviceNamesNow(); // another machine may not know them
    const QString problem = DataStoreEncoder::encode(*dataStore_, device);
    if (!problem.isNull())
        error = {errorDomain(), UnknownError, {}, problem};
    return problem.isNull();
}

void TavDocument::_registerForDataStoreNotifications()
{
    using namespace DataStoreNotifications;
    observations_.clear();
    // Deliberate: a single reread entry posts its own notification, which is not handled here.
    const auto observe = [this](const QString &name, void (TavDocument::*handler)()) {
        observations_.push_back(NotificationCenter::defaultCenter().observe(
            name, dataStore_.get(), [this, handler](const auto &) { (this->*handler)(); }));
    };
    observe(outOfDate, &TavDocument::noteDataStoreOutOfDate);
    observe(changed, &TavDocument::noteDataStoreChanged);
    observe(objectChanged, &TavDocument::noteDataStoreObjectChanged);
    observe(objectsTerminated, &TavDocument::noteDataStoreObjectsTerminated);
    observe(clearedTerminatedObjects, &TavDocument::noteDataStoreClearedTerminatedObjects);
}

void TavDocument::noteDataStoreOutOfDate()
{
    relay(&TavDocumentWindowController::noteDataStoreOutOfDate, true);
}

void TavDocument::noteDataStoreChanged()
{
    relay(&TavDocumentWindowController::noteDataStoreChanged, true);
}

void TavDocument::noteDataStoreObjectChanged()
{
    relay(&TavDocumentWindowController::noteDataStoreObjectChanged, false);
}

void TavDocument::noteDataStoreObjectsTerminated()
{
    relay(&TavDocumentWindowController::noteDataStoreObjectsTerminated, true);
}

void TavDocument::noteDataStoreClearedTerminatedObjects()
{
    relay(&TavDocumentWindowController::noteDataStoreClearedTerminatedObjects, true);
}

void TavDocument::relay(Relay note, bool changesTitle)
{
    if (hasFile())
        setDocumentEdited(true);
    if (changesTitle)
        synchronizeWindowTitleWithDocumentName();
    forEachWindowController([note](DocumentWindowController &controller) {
        (static_cast<TavDocumentWindowController &>(controller).*note)();
    });
}

void TavDocument::dataViewOptionsChanged(TavRegistryProperty *item)
{
    forEachWindowController([item](DocumentWindowController &controller) {
        static_cast<TavDocumentWindowController &>(controller).dataViewOptionsChanged(item);
    });
}

void TavDocument::fatalDxRegistryError()
{
    documents_.reportRegistryFailure();
}
