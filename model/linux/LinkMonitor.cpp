// SPDX-License-Identifier: Apache-2.0
#include "model/linux/LinkMonitor.h"

#include "model/ModelLogging.h"
#include "model/linux/SysfsRoot.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <linux/if.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

namespace {
constexpr std::size_t messageLimit = 65536;

QString operationalState(quint8 state)
{
    static const char *const names[] = {"unknown", "notpresent", "down", "lowerlayerdown",
                                        "testing", "dormant",    "up"};
    return state < std::size(names) ? QString::fromLatin1(names[state]) : QString();
}

// As sysfs has them: without those that follow from the state.
QString flagsText(unsigned flags)
{
    constexpr unsigned computed = IFF_RUNNING | IFF_LOWER_UP | IFF_DORMANT;
    return QStringLiteral("0x") + QString::number(flags & ~computed, 16);
}

template<class Number>
std::optional<Number> number(rtattr &attribute)
{
    Number value;
    if (RTA_PAYLOAD(&attribute) < sizeof value)
        return std::nullopt;
    std::memcpy(&value, RTA_DATA(&attribute), sizeof value);
    return value;
}

template<class Number>
QString numberText(rtattr &attribute)
{
    const auto value = number<Number>(attribute);
    return value ? QString::number(*value) : QString();
}

QByteArray bytesOf(rtattr &attribute)
{
    return {static_cast<const char *>(RTA_DATA(&attribute)),
            static_cast<qsizetype>(RTA_PAYLOAD(&attribute))};
}

// Null: there is no such interface any more.
SysfsPath pathOf(const QByteArray &name)
{
    constexpr char folder[] = "class/net";
    const FileDescriptor links(::open("/sys/class/net", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    const QByteArray target = links ? SysfsRoot::readLink(links.get(), name) : QByteArray();
    return target.isNull() ? SysfsPath() : SysfsRoot::resolveLink(folder, target);
}
} // namespace

std::unique_ptr<LinkMonitor> LinkMonitor::open()
{
    FileDescriptor socket(
        ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | SOCK_NONBLOCK, NETLINK_ROUTE));
    sockaddr_nl address{};
    address.nl_family = AF_NETLINK;
    address.nl_groups = RTMGRP_LINK;
    if (!socket ||
        bind(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
        return nullptr;
    std::unique_ptr<LinkMonitor> monitor(new LinkMonitor(std::move(socket)));
    return monitor->askForAll() ? std::move(monitor) : nullptr;
}

// The answers arrive like changes, of interfaces that are not known yet.
bool LinkMonitor::askForAll() const
{
    struct
    {
        nlmsghdr header;
        ifinfomsg link;
    } request{};
    request.header.nlmsg_len = sizeof request;
    request.header.nlmsg_type = RTM_GETLINK;
    request.header.nlmsg_flags = NLM_F_REQUEST | NLM_F_DUMP;
    return send(socket_.get(), &request, sizeof request, 0) == ssize_t(sizeof request);
}

DeviceEventSource::Reception LinkMonitor::receive(DeviceEvent &event)
{
    while (received_.empty()) {
        const Reception reception = receiveMessages();
        if (reception != Reception::Event)
            return reception;
    }
    event = std::move(received_.front());
    received_.pop_front();
    return Reception::Event;
}

// Event: there may be events now.
DeviceEventSource::Reception LinkMonitor::receiveMessages()
{
    alignas(nlmsghdr) static thread_local char buffer[messageLimit];
    sockaddr_nl sender{};
    socklen_t senderSize = sizeof sender;
    const ssize_t size = recvfrom(socket_.get(), buffer, sizeof buffer, MSG_TRUNC,
                                  reinterpret_cast<sockaddr *>(&sender), &senderSize);
    if (size < 0 && (errno == EAGAIN || errno == EINTR))
        return Reception::Nothing;
    if (size < 0 || static_cast<std::size_t>(size) > sizeof buffer) {
        qCDebug(modelLog, "Changes of network interfaces were lost: %s", std::strerror(errno));
        askForAll();
        return Reception::Loss;
    }
    if (sender.nl_pid != 0) // not from the kernel
        return Reception::Event;
    auto rest = static_cast<unsigned>(size);
    auto *message = reinterpret_cast<nlmsghdr *>(buffer);
    for (; NLMSG_OK(message, rest); message = NLMSG_NEXT(message, rest))
        take(*message);
    return Reception::Event;
}

void LinkMonitor::take(nlmsghdr &message)
{
    const bool isLink = message.nlmsg_type == RTM_NEWLINK || message.nlmsg_type == RTM_DELLINK;
    if (!isLink || message.nlmsg_len < NLMSG_LENGTH(sizeof(ifinfomsg)))
        return;
    auto &header = *static_cast<ifinfomsg *>(NLMSG_DATA(&message));
    if (header.ifi_family != AF_UNSPEC) // of a bridge's port: the port has its own
        return;
    if (message.nlmsg_type == RTM_DELLINK) {
        links_.remove(header.ifi_index);
        return;
    }
    Link link = linkOf(message);
    const auto known = links_.constFind(header.ifi_index);
    if (known != links_.constEnd())
        noteChanges(*known, link);
    links_[header.ifi_index] = std::move(link);
}

LinkMonitor::Link LinkMonitor::linkOf(nlmsghdr &message)
{
    auto &header = *static_cast<ifinfomsg *>(NLMSG_DATA(&message));
    Link link;
    const auto add = [&](const char *key, const QString &text) {
        link.attributes.emplace_back(key, text);
    };
    add("flags", flagsText(header.ifi_flags));
    auto *attribute = IFLA_RTA(&header);
    auto rest = static_cast<unsigned>(IFLA_PAYLOAD(&message));
    for (; RTA_OK(attribute, rest); attribute = RTA_NEXT(attribute, rest)) {
        switch (attribute->rta_type) {
        case IFLA_IFNAME:
            link.name = bytesOf(*attribute);
            link.name.truncate(static_cast<qsizetype>(
                qstrnlen(link.name.constData(), static_cast<size_t>(link.name.size()))));
            break;
        case IFLA_OPERSTATE:
            add("operstate", operationalState(number<quint8>(*attribute).value_or(0)));
            break;
        case IFLA_MTU:
            add("mtu", numberText<quint32>(*attribute));
            break;
        case IFLA_TXQLEN:
            add("tx_queue_len", numberText<quint32>(*attribute));
            break;
        case IFLA_GROUP:
            add("netdev_group", numberText<quint32>(*attribute));
            break;
        case IFLA_ADDRESS:
            add("address", QString::fromLatin1(bytesOf(*attribute).toHex(':')));
            break;
        default:
            break;
        }
    }
    return link;
}

void LinkMonitor::noteChanges(const Link &before, const Link &after)
{
    DeviceEvent event;
    event.subsystem = "net";
    for (const auto &[key, text] : after.attributes) {
        const auto old =
            std::find_if(before.attributes.begin(), before.attributes.end(),
                         [key = key](const auto &its) { return std::strcmp(its.first, key) == 0; });
        if (old != before.attributes.end() && old->second != text)
            event.changes.push_back({QString::fromLatin1(key), old->second, text});
    }
    if (event.changes.empty())
        return;
    event.path = pathOf(after.name);
    if (!event.path.isNull())
        received_.push_back(std::move(event));
}
