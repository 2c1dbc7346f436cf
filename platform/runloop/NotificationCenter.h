// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <vector>

// Delivers named notifications to their observers, synchronously and in the order of registration.
// Main thread only. During a delivery, observers may be added and removed.
class NotificationCenter
{
public:
    struct Notification
    {
        QString name;
        const void *object; // the sender or the subject, depending on the name
    };
    using Handler = std::function<void(const Notification &)>;

    // An observer stays registered while this exists.
    class Observation
    {
    public:
        Observation() = default;

    private:
        friend class NotificationCenter;
        struct Observer;
        explicit Observation(std::shared_ptr<Observer> observer)
            : observer_(std::move(observer))
        {}
        std::shared_ptr<Observer> observer_;
    };

    static NotificationCenter &defaultCenter();

    // Without an object, notifications about any object are delivered.
    [[nodiscard]] Observation observe(const QString &name, const void *object, Handler handler);
    void post(const QString &name, const void *object);

private:
    void forgetExpired();

    std::vector<std::weak_ptr<Observation::Observer>> observers_;
    int posting_ = 0;
};
