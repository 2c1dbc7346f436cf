// SPDX-License-Identifier: Apache-2.0
#include "model/NotificationPorts.h"

#include "platform/runloop/RunLoop.h"

#include <QScopeGuard>

namespace {
using Matching = NotificationPorts::Matching;
using Interest = NotificationPorts::Interest;

std::optional<Matching> matchingNamed(QLatin1String type)
{
    if (type == QLatin1String("DxServicePublish"))
        return Matching::Publish;
    if (type == QLatin1String("DxServiceMatched"))
        return Matching::Matched;
    if (type == QLatin1String("DxServiceTerminate"))
        return Matching::Terminate;
    return std::nullopt;
}

std::optional<Interest> interestNamed(QLatin1String type)
{
    if (type == QLatin1String("DxBusyInterest"))
        return Interest::Busy;
    if (type == QLatin1String("DxGeneralInterest"))
        return Interest::General;
    return std::nullopt;
}

// Calls a copy: the callback may end its own registration.
template<class Registrations, class Invoke>
void callBack(const Registrations &registrations, quint32 number, NotificationPort port,
              Invoke invoke)
{
    const auto found = registrations.find(number);
    if (found == registrations.end() || found->second.port != port)
        return;
    const auto callback = found->second.callback;
    invoke(callback);
}
} // namespace

NotificationPorts::NotificationPorts(RegistryService &service)
    : service_(service)
    , alive_(std::make_shared<int>())
{}

NotificationPorts::~NotificationPorts() = default;

NotificationPort NotificationPorts::create()
{
    ports_.try_emplace(++lastNumber_);
    return lastNumber_;
}

void NotificationPorts::destroy(NotificationPort port)
{
    const auto forgetAll = [port](const auto &registrations, auto forget) {
        std::vector<quint32> numbers;
        for (const auto &[number, registration] : registrations) {
            if (registration.port == port)
                numbers.push_back(number);
        }
        std::for_each(numbers.begin(), numbers.end(), forget);
    };
    forgetAll(matches_, [this](quint32 number) { releaseIterator(number); });
    forgetAll(interests_, [this](quint32 number) { releaseNotification(number); });
    forgetAll(powers_, [this](quint32 number) { releaseNotification(number); });
    ports_.erase(port);
}

MessagePort NotificationPorts::messagePort(NotificationPort port) const
{
    return ports_.contains(port) ? port : 0;
}

bool NotificationPorts::addToRunLoop(MessagePort port, RegistryService::MessageHandler handler)
{
    const auto found = ports_.find(port);
    if (found == ports_.end())
        return false;
    found->second.handler = std::move(handler);
    return true;
}

void NotificationPorts::removeFromRunLoop(MessagePort port)
{
    if (const auto found = ports_.find(port); found != ports_.end())
        found->second.handler = nullptr;
}

RegistryStatus NotificationPorts::addMatching(NotificationPort port, const char *type,
                                              const QString &className,
                                              RegistryService::MatchingCallback callback,
                                              RegistryIterator &iterator)
{
    const auto kind = matchingNamed(QLatin1String(type));
    if (!kind || !ports_.contains(port))
        return RegistryStatus::Failed;
    iterator = ++lastNumber_ | iteratorBit;
    matches_[iterator] = {port, *kind, className, std::move(callback), {}, false};
    return RegistryStatus::Success;
}

RegistryStatus NotificationPorts::addInterest(NotificationPort port, RegistryObject object,
                                              const char *type,
                                              RegistryService::InterestCallback callback,
                                              RegistryNotification &notification)
{
    const auto kind = interestNamed(QLatin1String(type));
    if (!kind || !object || !ports_.contains(port))
        return RegistryStatus::Failed;
    service_.retain(object);
    notification = ++lastNumber_;
    interests_[notification] = {port, *kind, object, std::move(callback)};
    return RegistryStatus::Success;
}

RegistryNotification NotificationPorts::addPower(NotificationPort port,
                                                 RegistryService::PowerCallback callback)
{
    if (!ports_.contains(port))
        return 0;
    powers_[++lastNumber_] = {port, std::move(callback)};
    return lastNumber_;
}

void NotificationPorts::releaseNotification(RegistryNotification notification)
{
    if (const auto found = interests_.find(notification); found != interests_.end()) {
        service_.release(found->second.object);
        interests_.erase(found);
    }
    powers_.erase(notification);
}

RegistryObject NotificationPorts::next(RegistryIterator iterator)
{
    const auto found = matches_.find(iterator);
    if (found == matches_.end())
        return 0;
    Match &match = found->second;
    match.isArmed = match.objects.empty();
    if (match.isArmed)
        return 0;
    const RegistryObject object = match.objects.front();
    match.objects.pop_front();
    return object;
}

void NotificationPorts::releaseIterator(RegistryIterator iterator)
{
    const auto found = matches_.find(iterator);
    if (found == matches_.end())
        return;
    for (const RegistryObject object : found->second.objects)
        service_.release(object);
    matches_.erase(found);
}

void NotificationPorts::announce(Matching kind, RegistryObject object, bool toAll)
{
    for (auto &[iterator, match] : matches_) {
        if (match.kind != kind || (!toAll && !service_.conformsTo(object, match.className)))
            continue;
        service_.retain(object);
        match.objects.push_back(object);
        if (std::exchange(match.isArmed, false))
            post(match.port, {iterator});
    }
}

void NotificationPorts::report(Interest kind, RegistryObject object, quintptr argument)
{
    for (const auto &[notification, interest] : interests_) {
        if (interest.kind == kind && service_.objectsEqual(interest.object, object))
            post(interest.port, {notification, interest.object, 0, argument});
    }
}

void NotificationPorts::reportPower(RegistryNotification notification, PowerMessage type,
                                    quintptr notificationID)
{
    if (const auto found = powers_.find(notification); found != powers_.end())
        post(found->second.port, {notification, 0, type, notificationID});
}

void NotificationPorts::post(NotificationPort port, const Message &message)
{
    ports_[port].messages.push_back({port, std::make_shared<const Message>(message)});
}

void NotificationPorts::dispatch(NotificationPort port, const RegistryMessage &message)
{
    if (message.port != messagePort(port) || !message.content)
        return;
    const auto content = std::static_pointer_cast<const Message>(message.content);
    callBack(matches_, content->registration, port,
             [&](const auto &callback) { callback(content->registration); });
    callBack(interests_, content->registration, port, [&](const auto &callback) {
        callback(content->object, content->type, content->argument);
    });
    callBack(powers_, content->registration, port,
             [&](const auto &callback) { callback(content->type, content->argument); });
}

void NotificationPorts::deliver()
{
    RunLoop::main().performInDefaultMode(alive_, [this] { deliverNow(); });
}

void NotificationPorts::deliverNow()
{
    if (isDelivering_)
        return; // the running delivery continues with the new messages
    isDelivering_ = true;
    const auto end = qScopeGuard([this] { isDelivering_ = false; });
    while (RunLoop::main().isInDefaultMode()) {
        if (!deliverOne())
            return;
    }
    // A handler opened a menu or dialog.
    RunLoop::main().performInDefaultMode(alive_, [this] { deliverNow(); });
}

bool NotificationPorts::deliverOne()
{
    const auto waiting = std::find_if(ports_.begin(), ports_.end(), [](const auto &numbered) {
        return numbered.second.handler && !numbered.second.messages.empty();
    });
    if (waiting == ports_.end())
        return false;
    Port &port = waiting->second;
    const RegistryMessage message = std::move(port.messages.front());
    port.messages.pop_front();
    const auto handler = port.handler; // the handler may destroy the port
    handler(message);
    return true;
}
