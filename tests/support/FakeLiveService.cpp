// SPDX-License-Identifier: Apache-2.0
#include "tests/support/FakeLiveService.h"

void FakeLiveService::finishPreparations()
{
    for (const auto &ready : std::exchange(held_, {})) {
        prepare();
        ready();
    }
}

void FakeLiveService::prepareAsync(std::function<void()> ready)
{
    held_.push_back(std::move(ready));
    if (!holdsPreparations_)
        finishPreparations();
}

void FakeLiveService::announce(NotificationPorts::Matching kind, Node node)
{
    const RegistryObject object = handOut(node);
    ports().announce(kind, object);
    release(object);
    ports().deliver();
}

void FakeLiveService::terminate(Node node)
{
    remove(node);
    announce(NotificationPorts::Matching::Terminate, node);
}

void FakeLiveService::report(NotificationPorts::Interest kind, quintptr argument)
{
    const RegistryObject host = entryFromPath(QStringLiteral("DxService:/"));
    ports().report(kind, host, argument);
    release(host);
    ports().deliver();
}

void FakeLiveService::reportPower(quint32 type, quintptr notificationID)
{
    ports().reportPower(power_, static_cast<PowerMessage>(type), notificationID);
    ports().deliver();
}

RegistryStatus FakeLiveService::addInterestNotification(NotificationPort port,
                                                        RegistryObject object, const char *type,
                                                        InterestCallback callback,
                                                        RegistryNotification &notification)
{
    if (refused_ == Refused::Interest)
        return RegistryStatus::Failed;
    return FakeRegistryService::addInterestNotification(port, object, type, std::move(callback),
                                                        notification);
}

PowerConnection FakeLiveService::registerForSystemPower(PowerCallback callback,
                                                        NotificationPort &port,
                                                        RegistryNotification &notification)
{
    if (refused_ == Refused::Power)
        return 0;
    port = ports().create();
    power_ = notification = ports().addPower(port, std::move(callback));
    ++powerRegistrations_;
    return power_;
}
