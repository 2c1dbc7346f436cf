// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/views/PropertiesViewController.h"
#include "model/TavRegistryEntry.h"

#include <QObject>
#include <QSet>

class TavDataStore;

// The attributes on request that the user of a window asked for, until each is read.
class AttributeRequests : public QObject
{
    Q_OBJECT
public:
    using Reading = PropertiesViewController::Reading;

    explicit AttributeRequests(std::shared_ptr<TavDataStore> store);

    Reading reading(const TavRegistryEntry &entry, const QString &attribute) const;
    void read(TavRegistryEntry &entry, const QString &attribute);

Q_SIGNALS:
    void begun();
    void finished(quint64 entryTag, const QString &attribute);

private:
    std::shared_ptr<TavDataStore> store_;
    QSet<std::pair<quint64, QString>> underWay_; // by the entry's tag
};
