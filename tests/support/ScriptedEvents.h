// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/DeviceEventSource.h"

#include <deque>
#include <memory>
#include <sys/eventfd.h>
#include <unistd.h>

// Events created by a test, as if from the kernel.
class ScriptedEvents
{
public:
    ScriptedEvents()
        : state_(std::make_shared<State>())
    {}

    // With a device path such as "devices/a".
    void send(QByteArrayView action, const QByteArray &path)
    {
        state_->queue.push_back(DeviceEvent::parse(action, '/' + path));
        state_->wake();
    }
    void send(const DeviceEvent &event)
    {
        state_->queue.emplace_back(event);
        state_->wake();
    }
    void lose()
    {
        state_->queue.push_back(std::nullopt);
        state_->wake();
    }
    bool isOpen() const { return state_->isOpen; }

    std::unique_ptr<DeviceEventSource> open() const { return std::make_unique<Source>(state_); }

private:
    struct State
    {
        State()
            : descriptor(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
        {}
        ~State() { close(descriptor); }
        void wake() const { eventfd_write(descriptor, 1); }

        int descriptor;
        std::deque<std::optional<DeviceEvent>> queue; // empty: lost events
        bool isOpen = false;
    };
    class Source : public DeviceEventSource
    {
    public:
        explicit Source(std::shared_ptr<State> state)
            : state_(std::move(state))
        {
            state_->isOpen = true;
        }
        ~Source() override { state_->isOpen = false; }
        int descriptor() const override { return state_->descriptor; }
        Reception receive(DeviceEvent &event) override
        {
            if (state_->queue.empty()) {
                eventfd_t count = 0;
                eventfd_read(state_->descriptor, &count);
                return Reception::Nothing;
            }
            const auto next = std::move(state_->queue.front());
            state_->queue.pop_front();
            if (next)
                event = *next;
            return next ? Reception::Event : Reception::Loss;
        }

    private:
        std::shared_ptr<State> state_;
    };

    std::shared_ptr<State> state_;
};
