// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/FakeRegistryService.h"

// A scripted registry that reports changes when the script says so.
class FakeLiveService : public FakeRegistryService
{
public:
    enum class Refused : quint8 { Nothing, Ports, Interest, Power };
    void setRefused(Refused refused) { refused_ = refused; }

    // Rereading ends immediately, or when the script says so.
    void setHoldsPreparations(bool holds) { holdsPreparations_ = holds; }
    std::size_t heldPreparations() const { return held_.size(); }
    void finishPreparations();

    void publish(Node node) { announce(NotificationPorts::Matching::Publish, node); }
    void match(Node node) { announce(NotificationPorts::Matching::Matched, node); }
    void terminate(Node node); // also removes it
    void reportChange() { report(NotificationPorts::Interest::General, 0); }
    void reportBusy(quintptr count) { report(NotificationPorts::Interest::Busy, count); }
    void reportPower(quint32 type, quintptr notificationID);
    const std::vector<quintptr> &allowedPowerChanges() const { return allowed_; }
    quint64 powerRegistrations() const { return powerRegistrations_; }

    void prepareAsync(std::function<void()> ready) override;
    NotificationPort createNotificationPort() override
    {
        return refused_ == Refused::Ports ? 0 : FakeRegistryService::createNotificationPort();
    }
    RegistryStatus addInterestNotification(NotificationPort port, RegistryObject object,
                                           const char *type, InterestCallback callback,
                                           RegistryNotification &notification) override;
    PowerConnection registerForSystemPower(PowerCallback callback, NotificationPort &port,
                                           RegistryNotification &notification) override;
    void deregisterForSystemPower(RegistryNotification notification) override
    {
        ports().releaseNotification(notification);
    }
    void allowPowerChange(PowerConnection, quintptr id) override { allowed_.push_back(id); }
    void releasePowerConnection(PowerConnection) override { --powerRegistrations_; }

private:
    void announce(NotificationPorts::Matching kind, Node node);
    void report(NotificationPorts::Interest kind, quintptr argument);

    Refused refused_ = Refused::Nothing;
    bool holdsPreparations_ = false;
    std::vector<std::function<void()>> held_;
    RegistryNotification power_ = 0;
    quint64 powerRegistrations_ = 0;
    std::vector<quintptr> allowed_;
};
