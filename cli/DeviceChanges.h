// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/DevicePicture.h"
#include "model/linux/DeviceEvent.h"

#include <QDateTime>
#include <QSet>

// A device that appeared, went or changed.
struct DeviceChange
{
    using Action = DeviceEvent::Action;
    using Device = DevicePicture::Device;

    Action action;
    QDateTime time;
    QString kernelPath;
    std::optional<Device> before; // none: it was not there
    std::optional<Device> after;  // none: it is gone

    const Device *device() const; // null: it came and went between two pictures
    QString path() const;
    QString driver() const;  // that was bound or unbound
    QString oldPath() const; // of what has another path now; null: none is known
    bool isRename() const;   // under the same parent
};

// Makes changes of the kernel's messages and of what two pictures of the registry say.
class DeviceChanges
{
public:
    struct Message
    {
        DeviceEvent event;
        QDateTime time;
    };

    explicit DeviceChanges(DevicePicture picture)
        : picture_(std::move(picture))
    {}

    // After the messages, the registry was as in the picture.
    std::vector<DeviceChange> after(const std::vector<Message> &messages, DevicePicture picture);
    // When messages are lost, only the pictures say what happened.
    std::vector<DeviceChange> afterLoss(const QDateTime &time, DevicePicture picture);

private:
    std::optional<DeviceChange> changeFor(const Message &message, const DevicePicture &fresh,
                                          QSet<QString> &compared) const;
    std::vector<DeviceChange> goneWithoutMessage(const QSet<quint64> &reported,
                                                 const QDateTime &time, const DevicePicture &fresh);

    DevicePicture picture_;
    QSet<QString> foundGone_; // kernel paths whose message is still to come
};
