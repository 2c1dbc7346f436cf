// SPDX-License-Identifier: Apache-2.0
#include "explorer/comparison/ComparisonDocument.h"

#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferencesStore.h"
#include "platform/runloop/LongWork.h"
#include "platform/runloop/RunLoop.h"
#include "store/DataStoreNotifications.h"
#include "store/StoreBuilder.h"

namespace {
QStringList storedIgnoredKeys()
{
    QStringList keys;
    for (const auto &key : PreferencesStore::standard().list(PreferenceKeys::ignoredKeys))
        keys.append(key.toString());
    return keys;
}

// A state that does not change while it is compared.
std::shared_ptr<TavDataStore> stillState(const std::shared_ptr<TavDataStore> &store)
{
    return store->isLive() ? StoreBuilder::copyOf(*store) : store;
}
} // namespace

std::unique_ptr<ComparisonDocument> ComparisonDocument::create(TavDocumentController &controller,
                                                               Side before, Side after)
{
    auto document =
        std::make_unique<ComparisonDocument>(controller, std::move(before), std::move(after));
    return document->compareFirst() ? std::move(document) : nullptr;
}

ComparisonDocument::ComparisonDocument(TavDocumentController &controller, Side before, Side after)
    : TavDocument(controller)
    , before_{std::move(before.name), stillState(before.store)}
    , after_(std::move(after))
    , options_{.ignoredKeys = storedIgnoredKeys()}
{}

ComparisonDocument::~ComparisonDocument()
{
    closeWindowControllers(); // they use the comparison
}

QString ComparisonDocument::displayName() const
{
    return tr("%1 → %2").arg(before_.name, after_.name);
}

bool ComparisonDocument::compareFirst()
{
    const std::shared_ptr<TavDataStore> newer = stillState(after_.store);
    std::shared_ptr<const Compared> compared;
    LongWork work(tr("Comparing…"));
    const bool isDone = work.run([&](WorkProgress &progress) {
        compared = std::make_shared<const Compared>(before_.store, newer, options_,
                                                    [&](double part) { progress.reach(part); });
    });
    if (!isDone)
        return false;
    comparison_ = std::make_unique<ComparisonStore>(std::move(compared));
    setDataStore(comparison_->store());
    follow();
    return true;
}

void ComparisonDocument::follow()
{
    using namespace DataStoreNotifications;
    if (!after_.store->isLive())
        return;
    for (const QString &change : {changed, objectsTerminated, objectChanged})
        changes_.push_back(NotificationCenter::defaultCenter().observe(
            change, after_.store.get(), [this](const auto &) { compareAgain(); }));
}

void ComparisonDocument::update()
{
    after_.store->update();
}

// Soon: several changes come together.
void ComparisonDocument::compareAgain()
{
    if (std::exchange(isComparingSoon_, true))
        return;
    RunLoop::performLater(*this, [this] {
        isComparingSoon_ = false;
        comparison_->show(std::make_shared<const Compared>(before_.store, stillState(after_.store),
                                                           options_, SnapshotComparison::Reach()));
    });
}

void ComparisonDocument::setShowsVolatile(bool shows)
{
    options_.showsVolatile = shows;
    compareAgain();
}

void ComparisonDocument::setIgnoredKeys(const QStringList &keys)
{
    PreferencesStore::standard().setValue(PreferenceKeys::ignoredKeys,
                                          QJsonArray::fromStringList(keys));
    options_.ignoredKeys = keys;
    compareAgain();
}
