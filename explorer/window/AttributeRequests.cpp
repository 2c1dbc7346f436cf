// SPDX-License-Identifier: Apache-2.0
#include "explorer/window/AttributeRequests.h"

#include "store/TavDataStore.h"

#include <QPointer>

AttributeRequests::AttributeRequests(std::shared_ptr<TavDataStore> store)
    : store_(std::move(store))
{}

AttributeRequests::Reading AttributeRequests::reading(const TavRegistryEntry &entry,
                                                      const QString &attribute) const
{
    if (underWay_.contains({entry.entryTag(), attribute}))
        return Reading::UnderWay;
    return store_->mayReadAttribute(entry, attribute) ? Reading::Offered : Reading::NotOffered;
}

void AttributeRequests::read(TavRegistryEntry &entry, const QString &attribute)
{
    if (reading(entry, attribute) != Reading::Offered)
        return;
    const quint64 tag = entry.entryTag();
    underWay_.insert({tag, attribute});
    store_->readAttribute(entry, attribute, [self = QPointer(this), tag, attribute] {
        if (!self) // the window is closed
            return;
        self->underWay_.remove({tag, attribute});
        Q_EMIT self->finished(tag, attribute);
    });
    Q_EMIT begun();
}
