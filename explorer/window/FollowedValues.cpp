// SPDX-License-Identifier: Apache-2.0
#include "explorer/window/FollowedValues.h"

#include "display/TavPropertyOutlineItem.h"
#include "explorer/window/ValuePreferences.h"
#include "store/TavDataStore.h"

#include <QDateTime>
#include <QEvent>
#include <QMainWindow>

FollowedValues::FollowedValues(QMainWindow &window, std::shared_ptr<TavDataStore> store,
                               const ValuePreferences &preferences)
    : window_(window)
    , store_(store)
    , preferences_(preferences)
    , follower_(std::move(store))
{
    fading_.setSingleShot(true);
    fading_.setInterval(ValueChange::tinted + 50); // when all are surely over
    connect(&fading_, &QTimer::timeout, this, &FollowedValues::tintsFaded);
    connect(&follower_, &ValueFollower::changed, this, &FollowedValues::changed);
    connect(&follower_, &ValueFollower::attributeStopped, this, &FollowedValues::attributeStopped);
    connect(&preferences, &ValuePreferences::changed, this, &FollowedValues::updateActivity);
    window.installEventFilter(this);
    updateActivity();
}

bool FollowedValues::eventFilter(QObject *watched, QEvent *event)
{
    const QEvent::Type type = event->type();
    if (type == QEvent::Show || type == QEvent::Hide || type == QEvent::WindowStateChange)
        updateActivity();
    return QObject::eventFilter(watched, event);
}

bool FollowedValues::mayFollow() const
{
    return preferences_.follows() && store_->isLive() && !store_->isPaused() &&
           window_.isVisible() && !window_.isMinimized();
}

void FollowedValues::updateActivity()
{
    follower_.setInterval(preferences_.interval());
    follower_.setActive(mayFollow());
}

PropertyRef FollowedValues::treeFor(const EntryRef &entry)
{
    follower_.follow(entry);
    const RegistryValue table = follower_.table();
    if (!entry || table.isNone() || table.isSameCollectionAs(entry->table())) {
        tree_ = nullptr;
        shown_ = {};
        return entry ? entry->propertiesRef() : nullptr;
    }
    const bool isMade = tree_ && table.isSameCollectionAs(shown_);
    if (!isMade) {
        tree_ = TavRegistryProperty::create(TavRegistryEntry::currentPropertyClass(), entry, {},
                                            nullptr, {}, 0, table);
        tree_->clearIsNew();
        shown_ = table;
    }
    return tree_;
}

void FollowedValues::noteChanges(const TavRegistryProperty &older, const TavRegistryProperty &newer)
{
    QHash<const TavRegistryProperty *, ValueChange> changes;
    compare(older, newer, changes);
    changes_ = std::move(changes);
}

// Recursive: no deeper than a tree of properties.
void FollowedValues::compare(const TavRegistryProperty &older, const TavRegistryProperty &newer,
                             QHash<const TavRegistryProperty *, ValueChange> &changes)
{
    if (!older.isCollection() || !newer.isCollection()) {
        if (older.value().meansTheSameAs(newer.value())) {
            if (const auto earlier = changes_.constFind(&older); earlier != changes_.constEnd())
                changes.insert(&newer, *earlier);
            return;
        }
        auto *const shown = dynamic_cast<TavPropertyOutlineItem *>(
            const_cast<TavRegistryProperty *>(&older)); // its text is made when asked for
        changes.insert(&newer, {QDateTime::currentMSecsSinceEpoch(),
                                shown ? shown->displayValue().text() : QString()});
        fading_.start();
        return;
    }
    const auto olderChildren = older.children();
    const auto newerChildren = newer.children();
    for (std::size_t i = 0; i < newerChildren.size(); ++i) {
        const TavRegistryProperty &child = *newerChildren[i];
        const TavRegistryProperty *counterpart =
            i < olderChildren.size() ? olderChildren[i] : nullptr;
        if (child.hasName() && (!counterpart || counterpart->name() != child.name()))
            counterpart = older.childWithName(child.name());
        if (counterpart)
            compare(*counterpart, child, changes);
    }
}

std::optional<ValueChange> FollowedValues::changeOf(const TavRegistryProperty &item) const
{
    const auto found = changes_.constFind(&item);
    return found == changes_.constEnd() ? std::nullopt : std::optional(*found);
}
