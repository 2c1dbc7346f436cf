// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/linux/DeviceEventSource.h"
#include "model/linux/FileDescriptor.h"

#include <QHash>
#include <deque>
#include <memory>

struct nlmsghdr;

// Changes of the running kernel's network interfaces, such as up, down and another MTU: no device
// event reports these. Appearing, going and renaming have device events.
class LinkMonitor : public DeviceEventSource
{
public:
    static std::unique_ptr<LinkMonitor> open(); // null when it cannot be opened

    int descriptor() const override { return socket_.get(); }
    Reception receive(DeviceEvent &event) override;

private:
    struct Link
    {
        QByteArray name;
        // In an order of their own, as the files of these names in sysfs show them.
        std::vector<std::pair<const char *, QString>> attributes;
    };

    explicit LinkMonitor(FileDescriptor socket)
        : socket_(std::move(socket))
    {}
    bool askForAll() const;
    Reception receiveMessages();
    void take(nlmsghdr &message);
    void noteChanges(const Link &before, const Link &after);
    static Link linkOf(nlmsghdr &message);

    FileDescriptor socket_;
    QHash<int, Link> links_; // by index
    std::deque<DeviceEvent> received_;
};
