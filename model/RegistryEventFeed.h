// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryEvent.h"

#include <QObject>

// The events of a registry, one by one and in order.
class RegistryEventFeed : public QObject
{
    Q_OBJECT
Q_SIGNALS:
    void happened(const RegistryEvent &event);
};
