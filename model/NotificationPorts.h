// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryService.h"

#include <deque>
#include <map>

// Routes registry notifications to subscribers, as messages on their ports. Main thread only.
class NotificationPorts
{
public:
    enum class Matching : quint8 { Publish, Matched, Terminate };
    enum class Interest : quint8 { Busy, General };

    // The service provides the classes of objects, and holds those that wait in queues.
    explicit NotificationPorts(RegistryService &service);
    ~NotificationPorts();
    NotificationPorts(const NotificationPorts &) = delete;
    NotificationPorts &operator=(const NotificationPorts &) = delete;

    NotificationPort create();
    void destroy(NotificationPort port);
    MessagePort messagePort(NotificationPort port) const;
    bool addToRunLoop(MessagePort port, RegistryService::MessageHandler handler);
    void removeFromRunLoop(MessagePort port);
    void dispatch(NotificationPort port, const RegistryMessage &message);

    RegistryStatus addMatching(NotificationPort port, const char *type, const QString &className,
                               RegistryService::MatchingCallback callback,
                               RegistryIterator &iterator);
    RegistryStatus addInterest(NotificationPort port, RegistryObject object, const char *type,
                               RegistryService::InterestCallback callback,
                               RegistryNotification &notification);
    RegistryNotification addPower(NotificationPort port, RegistryService::PowerCallback callback);
    void releaseNotification(RegistryNotification notification);

    // Iterators of matching notifications have a number range of their own.
    static bool isIterator(RegistryIterator iterator) { return iterator & iteratorBit; }
    RegistryObject next(RegistryIterator iterator);
    void releaseIterator(RegistryIterator iterator);

    // To subscribers of the object's class, or to all subscribers.
    void announce(Matching kind, RegistryObject object, bool toAll = false);
    void report(Interest kind, RegistryObject object, quintptr argument = 0);
    void reportPower(RegistryNotification notification, PowerMessage type, quintptr notificationID);
    // Delivers waiting messages to the handlers, as soon as the main run loop is in its default
    // mode.
    void deliver();

private:
    static constexpr RegistryIterator iteratorBit = 0x80000000;

    struct Message
    {
        quint32 registration; // an iterator or a notification
        RegistryObject object = 0;
        quint32 type = 0;
        quintptr argument = 0;
    };
    struct Port
    {
        RegistryService::MessageHandler handler; // none while not in the run loop
        std::deque<RegistryMessage> messages;
    };
    struct Match
    {
        NotificationPort port;
        Matching kind;
        QString className;
        RegistryService::MatchingCallback callback;
        std::deque<RegistryObject> objects; // held
        bool isArmed = false;
    };
    struct Interested
    {
        NotificationPort port;
        Interest kind;
        RegistryObject object; // held
        RegistryService::InterestCallback callback;
    };
    struct Power
    {
        NotificationPort port;
        RegistryService::PowerCallback callback;
    };

    void post(NotificationPort port, const Message &message);
    void deliverNow();
    bool deliverOne();

    RegistryService &service_;
    std::map<NotificationPort, Port> ports_;
    std::map<RegistryIterator, Match> matches_;
    std::map<RegistryNotification, Interested> interests_;
    std::map<RegistryNotification, Power> powers_;
    quint32 lastNumber_ = 0;
    bool isDelivering_ = false;
    std::shared_ptr<const void> alive_;
};
