#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <vector>

// Delivers named notifications to their observers, at once and in the order of registration.
// Main thread only. An observer may add and remove observers, itself among them, while it is told.
class NotificationCenter
{
public:
    struct Notification
    {
        QString name;
        const void *object; // who sends it or what it is about, as the name says
    };
    using Handler = std::function<void(const Notification &)>;

    // Keeps an observer registered for as long as it lives.
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

    // With no object, notifications of that name about any object are delivered.
    [[nodiscard]] Observation observe(const QString &name, const void *object, Handler handler);
    void post(const QString &name, const void *object);

private:
    void forgetExpired();

    std::vector<std::weak_ptr<Observation::Observer>> observers_;
    int posting_ = 0;
};
