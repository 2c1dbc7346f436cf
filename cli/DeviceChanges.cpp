// SPDX-License-Identifier: Apache-2.0
#include "cli/DeviceChanges.h"

namespace {
using Action = DeviceEvent::Action;
using Device = DevicePicture::Device;

std::optional<Device> copyOf(const Device *device)
{
    return device ? std::optional(*device) : std::nullopt;
}
} // namespace

const Device *DeviceChange::device() const
{
    if (after)
        return &*after;
    return before ? &*before : nullptr;
}

QString DeviceChange::path() const
{
    return device() ? device()->path : kernelPath;
}

QString DeviceChange::driver() const
{
    const std::optional<Device> &bound = action == Action::Unbind ? before : after;
    return bound ? bound->driver : QString();
}

QString DeviceChange::oldPath() const
{
    return before && after && before->path != after->path ? before->path : QString();
}

bool DeviceChange::isRename() const
{
    const auto parentOf = [](const QString &path) { return path.left(path.lastIndexOf(u'/')); };
    return !oldPath().isNull() && parentOf(before->path) == parentOf(after->path);
}

std::vector<DeviceChange> DeviceChanges::after(const std::vector<Message> &messages,
                                               DevicePicture picture)
{
    std::vector<DeviceChange> changes;
    QSet<QString> compared;
    QSet<quint64> reported;
    for (const Message &message : messages) {
        auto change = changeFor(message, picture, compared);
        if (!change)
            continue;
        for (const std::optional<Device> &device : {change->before, change->after}) {
            if (device)
                reported.insert(device->id);
        }
        changes.push_back(std::move(*change));
    }
    const QDateTime time =
        messages.empty() ? QDateTime::currentDateTimeUtc() : messages.back().time;
    auto gone = goneWithoutMessage(reported, time, picture);
    std::move(gone.begin(), gone.end(), std::back_inserter(changes));
    picture_ = std::move(picture);
    return changes;
}

// None for what is no device of the registry.
std::optional<DeviceChange> DeviceChanges::changeFor(const Message &message,
                                                     const DevicePicture &fresh,
                                                     QSet<QString> &compared) const
{
    const auto &[event, time] = message;
    const QString path = QStringLiteral("/sys/") + event.path.toString();
    if (event.action == Action::Remove && foundGone_.contains(path))
        return std::nullopt; // reported already
    DeviceChange change{event.action, time, path, copyOf(picture_.at(path)),
                        copyOf(fresh.at(path))};
    if (!change.before && change.after) // it may have another name now
        change.before = copyOf(picture_.withID(change.after->id));
    const bool isUnknown = !change.before && !change.after;
    if (isUnknown && !fresh.hasSubsystem(event.subsystem))
        return std::nullopt;
    // Several messages of one device share its differences.
    if (compared.contains(path) && change.after)
        change.before = change.after;
    compared.insert(path);
    return change;
}

// As when a device has another name before it goes.
std::vector<DeviceChange> DeviceChanges::goneWithoutMessage(const QSet<quint64> &reported,
                                                            const QDateTime &time,
                                                            const DevicePicture &fresh)
{
    foundGone_.clear();
    std::vector<DeviceChange> changes;
    for (auto it = picture_.devices().cbegin(); it != picture_.devices().cend(); ++it) {
        if (reported.contains(it->id) || fresh.withID(it->id))
            continue;
        foundGone_.insert(it.key());
        changes.push_back({Action::Remove, time, it.key(), *it, {}});
    }
    return changes;
}

std::vector<DeviceChange> DeviceChanges::afterLoss(const QDateTime &time, DevicePicture picture)
{
    std::vector<DeviceChange> changes = goneWithoutMessage({}, time, picture);
    foundGone_.clear();
    for (auto it = picture.devices().cbegin(); it != picture.devices().cend(); ++it) {
        const Device *const known = picture_.withID(it->id);
        if (!known)
            changes.push_back({Action::Add, time, it.key(), {}, *it});
        else if (known->driver != it->driver)
            changes.push_back(
                {it->driver.isNull() ? Action::Unbind : Action::Bind, time, it.key(), *known, *it});
        else if (known->path != it->path)
            changes.push_back({Action::Change, time, it.key(), *known, *it});
    }
    picture_ = std::move(picture);
    return changes;
}
