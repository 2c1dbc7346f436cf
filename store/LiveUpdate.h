// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryHandle.h"
#include "platform/runloop/OneShotTimer.h"

#include <QDateTime>
#include <QObject>
#include <optional>
#include <vector>

// What a paused store catches up with afterwards.
struct HeldUpdates
{
    quint64 events = 0;
    bool anyChange = false;
    std::vector<std::pair<quint64, QDateTime>> terminations; // by tag
    QMetaObject::Connection counting;
};

// How a live store follows its registry: settings and registrations. A number is 0 when the
// registration failed.
struct LiveUpdate
{
    bool autoupdate = false;
    OneShotTimer::Ref autoupdateTimer;
    OneShotTimer::Ref autoupdateBusyTimer;
    bool polledUpdate = false;
    OneShotTimer::Ref pollTimer;
    double pollInterval = 30.0; // seconds

    NotificationPort dxcoreNotificationPort = 0;
    MessagePort dxcoreNotificationVornPort = 0;
    RegistryHandle serviceRoot;
    RegistryNotification busyInterestNotification = 0;
    RegistryNotification generalInterestNotification = 0;
    RegistryIterator servicePublishNotification = 0;
    RegistryIterator serviceMatchNotification = 0;
    RegistryIterator serviceTerminationNotification = 0;

    PowerConnection powerDomainRoot = 0;
    RegistryNotification powerInterestNotification = 0;
    NotificationPort dxcorePowerNotificationPort = 0;
    bool onSleepWakePath = false; // between will-sleep and has-powered-on

    quint64 changesSeen = 0; // while automatic update was off

    std::optional<HeldUpdates> held; // none: not paused
};
