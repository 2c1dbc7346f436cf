// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/documents/Document.h"
#include "platform/runloop/NotificationCenter.h"
#include "store/TavDataStoreDelegate.h"

class TavDataStore;
class TavDocumentController;
class TavDocumentWindowController;
class TavRegistryProperty;

// A document: one snapshot of the registry, live or from a file, and its windows.
class TavDocument : public Document, private TavDataStoreDelegate
{
    Q_OBJECT
public:
    static QString errorDomain() { return QStringLiteral("VandrelErrorDomain"); }
    enum ErrorCode { UnknownError = 1, OldVersionError, NewVersionError };

    // Captures the running registry and follows it according to the preferences. Null when the user
    // cancels.
    static std::unique_ptr<TavDocument> createUntitled(TavDocumentController &controller);
    // To be read from a file; no data store before that.
    explicit TavDocument(TavDocumentController &controller);
    ~TavDocument() override;

    const std::shared_ptr<TavDataStore> &dataStore() const { return dataStore_; }
    unsigned index() const { return index_; } // of live documents; 0 for others
    void setIndex(unsigned index) { index_ = index; }
    QString displayName() const override;
    QString suggestedName() const override; // the host, and the time of day
    QString fileType() const override { return QStringLiteral("application/x-vandrel-snapshot"); }
    void makeWindowControllers() override;
    void dataViewOptionsChanged(TavRegistryProperty *item);
    // Whether its content can be saved as a snapshot.
    virtual bool isSnapshot() const { return true; }

    // A live document as it was when it was opened, and when the user last marked it. Null: never.
    const std::shared_ptr<TavDataStore> &openedState() const { return openedState_; }
    const std::shared_ptr<TavDataStore> &markedState() const { return markedState_; }
    void markThisMoment();

    void fatalDxRegistryError() override;
    void _registerForDataStoreNotifications();
    void noteDataStoreOutOfDate();
    void noteDataStoreChanged();
    void noteDataStoreObjectChanged();
    void noteDataStoreObjectsTerminated();
    void noteDataStoreClearedTerminatedObjects();

protected:
    void setDataStore(std::shared_ptr<TavDataStore> store); // and hears its notifications
    bool checkBeginning(const QByteArray &bytes, DocumentError &error) const override;
    // Deliberate: the type is ignored; there is only one.
    Content decode(const QByteArray &data, const QString &ofType, WorkProgress &progress) override;
    bool writeData(QIODevice &device, const QString &type, DocumentError &error) override;

private:
    using Relay = void (TavDocumentWindowController::*)();

    bool takeContent(std::shared_ptr<TavDataStore> store, ErrorCode code, DocumentError &error);
    bool takeSnapshot();
    void applyUpdatePreferences();
    void relay(Relay note, bool changesTitle);

    TavDocumentController &documents_;
    std::shared_ptr<TavDataStore> dataStore_;
    std::shared_ptr<TavDataStore> openedState_;
    std::shared_ptr<TavDataStore> markedState_;
    unsigned index_ = 0;
    std::vector<NotificationCenter::Observation> observations_;
};
