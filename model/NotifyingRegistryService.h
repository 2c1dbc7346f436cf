// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/NotificationPorts.h"
#include "model/RegistryEventFeed.h"

// A registry service with notifications: subclasses announce changes through ports(). Iterators of
// notifications must be passed on to it.
class NotifyingRegistryService : public RegistryService
{
public:
    RegistryEventFeed *eventFeed() override { return &eventFeed_; }
    NotificationPort createNotificationPort() override { return ports_.create(); }
    void destroyNotificationPort(NotificationPort port) override { ports_.destroy(port); }
    MessagePort messagePort(NotificationPort port) override { return ports_.messagePort(port); }
    bool addToRunLoop(MessagePort port, MessageHandler handler) override
    {
        return ports_.addToRunLoop(port, std::move(handler));
    }
    void removeFromRunLoop(MessagePort port) override { ports_.removeFromRunLoop(port); }
    void dispatchMessage(NotificationPort port, const RegistryMessage &message) override
    {
        ports_.dispatch(port, message);
    }
    RegistryStatus addMatchingNotification(NotificationPort port, const char *type,
                                           const QString &className, MatchingCallback callback,
                                           RegistryIterator &iterator) override
    {
        return ports_.addMatching(port, type, className, std::move(callback), iterator);
    }
    RegistryStatus addInterestNotification(NotificationPort port, RegistryObject object,
                                           const char *type, InterestCallback callback,
                                           RegistryNotification &notification) override
    {
        return ports_.addInterest(port, object, type, std::move(callback), notification);
    }
    void releaseNotification(RegistryNotification notification) override
    {
        ports_.releaseNotification(notification);
    }

protected:
    NotificationPorts &ports() { return ports_; }

private:
    NotificationPorts ports_{*this};
    RegistryEventFeed eventFeed_;
};
