// SPDX-License-Identifier: Apache-2.0
#include "activity/ValueFollower.h"

#include "activity/ValuePath.h"
#include "model/UpdatedTable.h"
#include "store/TavDataStore.h"

#include <QPointer>

ValueFollower::ValueFollower(std::shared_ptr<TavDataStore> store)
    : store_(std::move(store))
{
    connect(&timer_, &QTimer::timeout, this, &ValueFollower::read);
}

void ValueFollower::setInterval(int milliseconds)
{
    timer_.setInterval(milliseconds);
}

void ValueFollower::follow(const EntryRef &entry)
{
    if (entry == entry_)
        return;
    entry_ = entry;
    base_ = current_ = {};
    stopped_.clear();
    isReading_ = false;
    if (isActive_)
        read();
}

void ValueFollower::setActive(bool active)
{
    if (active == isActive_)
        return;
    isActive_ = active;
    if (!active)
        return timer_.stop();
    timer_.start();
    read();
}

RegistryValue ValueFollower::table() const
{
    return entry_ && !base_.isNone() && base_.isSameCollectionAs(entry_->table()) ? current_
                                                                                  : RegistryValue();
}

QStringList ValueFollower::askedFor() const
{
    QStringList attributes;
    const RegistryValue read =
        ValuePath::parse(QStringLiteral("DxReadOnRequest")).in(entry_->table().members());
    for (const auto &asked : read.members())
        attributes.append(asked.key.toOwner());
    return attributes;
}

void ValueFollower::read()
{
    const bool isThere = entry_ && entry_->DxRegistryEntry() && !entry_->kernelPath().isEmpty();
    if (isReading_ || !isThere || !store_->isLive() || !store_->service())
        return;
    isReading_ = true;
    const auto take = [self = QPointer(this), number = ++reading_](const ObjectSample &sample) {
        if (self && self->reading_ == number)
            self->take(sample);
    };
    store_->service()->sample({.kernelPath = entry_->kernelPath(), .onRequest = askedFor()}, take);
}

void ValueFollower::take(const ObjectSample &sample)
{
    isReading_ = false;
    if (!entry_ || !isActive_)
        return;
    for (const QString &attribute : sample.unanswered) {
        if (!stopped_.contains(attribute)) {
            stopped_.insert(attribute);
            Q_EMIT attributeStopped(attribute);
        }
    }
    if (table().isNone())
        base_ = current_ = entry_->table();
    RegistryValue newer = updatedTable(current_, sample.members);
    if (newer.isSameCollectionAs(current_))
        return;
    current_ = std::move(newer);
    Q_EMIT changed();
}
