// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "compare/ComparisonStore.h"
#include "store/TavDocument.h"

// A document that shows how one registry differs from another. Where the newer one is live, the
// comparison follows it.
class ComparisonDocument : public TavDocument
{
    Q_OBJECT
public:
    struct Side
    {
        QString name; // for the user
        std::shared_ptr<TavDataStore> store;
    };

    // Null when the user cancels.
    static std::unique_ptr<ComparisonDocument> create(TavDocumentController &controller,
                                                      Side before, Side after);
    ComparisonDocument(TavDocumentController &controller, Side before, Side after);
    ~ComparisonDocument() override;

    const ComparisonStore &comparison() const { return *comparison_; }
    const QString &nameBefore() const { return before_.name; }
    const QString &nameAfter() const { return after_.name; }

    bool isLive() const { return after_.store->isLive(); }
    void update(); // the live registry

    bool showsVolatile() const { return options_.showsVolatile; }
    void setShowsVolatile(bool shows);
    const QStringList &ignoredKeys() const { return options_.ignoredKeys; }
    void setIgnoredKeys(const QStringList &keys); // of this and all later comparisons

    QString displayName() const override;
    bool isSnapshot() const override { return false; }

private:
    using Compared = ComparisonStore::Compared;

    bool compareFirst();
    void compareAgain();
    void follow();

    Side before_;
    Side after_;
    SnapshotComparison::Options options_;
    std::unique_ptr<ComparisonStore> comparison_;
    bool isComparingSoon_ = false;
    std::vector<NotificationCenter::Observation> changes_; // of what is live
};
