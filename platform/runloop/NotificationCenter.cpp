// SPDX-License-Identifier: Apache-2.0
#include "platform/runloop/NotificationCenter.h"

struct NotificationCenter::Observation::Observer
{
    QString name;
    const void *object;
    Handler handler;
};

NotificationCenter &NotificationCenter::defaultCenter()
{
    static NotificationCenter center;
    return center;
}

NotificationCenter::Observation NotificationCenter::observe(const QString &name, const void *object,
                                                            Handler handler)
{
    forgetExpired();
    auto observer = std::make_shared<Observation::Observer>(
        Observation::Observer{name, object, std::move(handler)});
    observers_.push_back(observer);
    return Observation(std::move(observer));
}

void NotificationCenter::post(const QString &name, const void *object)
{
    const Notification notification{name, object};
    ++posting_;
    // Observers added during the delivery do not get this notification.
    const std::size_t count = observers_.size();
    for (std::size_t i = 0; i < count; ++i) {
        const auto observer = observers_[i].lock();
        if (observer && observer->name == notification.name &&
            (!observer->object || observer->object == object))
            observer->handler(notification);
    }
    --posting_;
    forgetExpired();
}

void NotificationCenter::forgetExpired()
{
    if (!posting_)
        std::erase_if(observers_, [](const auto &observer) { return observer.expired(); });
}
