// SPDX-License-Identifier: Apache-2.0
#include "model/linux/RequestedAttributes.h"

namespace {
RegistryValue::Members membersOf(const RegistryValue &value)
{
    return {value.members().begin(), value.members().end()};
}

RegistryValue::Members::iterator placeOf(RegistryValue::Members &members,
                                         const RegistryValue::Member &member)
{
    return std::lower_bound(members.begin(), members.end(), member,
                            [](const auto &a, const auto &b) {
                                return a.key.toOwner().toUtf8() < b.key.toOwner().toUtf8();
                            });
}

// Sets the value at a path, replacing an existing one.
void setMember(RegistryValue::Members &members, QByteArrayView path, RegistryValue value)
{
    const qsizetype slash = path.indexOf('/');
    const QByteArrayView key = slash < 0 ? path : path.first(slash);
    RegistryValue::Member member{CompactString(QString::fromUtf8(key)), std::move(value)};
    const auto place = placeOf(members, member);
    const bool isThere = place != members.end() && place->key == member.key;
    if (slash >= 0) {
        const bool isFolder = isThere && place->value.type() == RegistryValue::Type::Dictionary;
        RegistryValue::Members below =
            isFolder ? membersOf(place->value) : RegistryValue::Members();
        setMember(below, path.sliced(slash + 1), std::move(member.value));
        member.value = RegistryValue::dictionary(std::move(below));
    }
    if (isThere)
        place->value = std::move(member.value);
    else
        members.insert(place, std::move(member));
}
RegistryValue textsOf(const QMap<QByteArray, QDateTime> &dates)
{
    RegistryValue::Members texts;
    for (auto date = dates.cbegin(); date != dates.cend(); ++date)
        texts.push_back(
            {CompactString(QString::fromUtf8(date.key())),
             RegistryValue::string(date->toString(QStringLiteral("yyyy-MM-dd HH:mm:ss 'UTC'")))});
    return RegistryValue::dictionary(std::move(texts));
}
} // namespace

RegistryValue::Members mergedMembers(RegistryValue::Members base,
                                     const RegistryValue::Members &added)
{
    for (const RegistryValue::Member &member : added) {
        const auto place = placeOf(base, member);
        const bool isThere = place != base.end() && place->key == member.key;
        if (!isThere)
            base.insert(place, member);
        else if (member.value.type() == RegistryValue::Type::Dictionary)
            place->value = RegistryValue::dictionary(
                mergedMembers(membersOf(place->value), membersOf(member.value)));
        else
            place->value = member.value;
    }
    return base;
}

void RequestedAttributes::add(quint64 node, const RawObject &read)
{
    if (read.requested.empty() && read.unread.empty())
        return;
    Requested &its = byNode_[node];
    const QDateTime now = QDateTime::currentDateTimeUtc();
    for (const auto &[path, value] : read.requested) {
        its.values[path] = {value, now};
        its.unread.remove(path);
    }
    for (const RawObject::Unread &unread : read.unread)
        its.unread[unread.path] = unread;
}

void RequestedAttributes::addTo(HostObject &object) const
{
    const auto its = byNode_.constFind(object.nodeID);
    if (its == byNode_.constEnd())
        return;
    QMap<QByteArray, QDateTime> dates;
    for (RawObject::Unread &left : object.unread) {
        const auto value = its->values.constFind(left.path);
        if (value != its->values.cend()) {
            setMember(object.members, left.path, value->value);
            dates[left.path] = value->date;
            left.reason.clear();
        }
        const auto failed = its->unread.constFind(left.path);
        if (failed != its->unread.cend())
            left = *failed;
    }
    if (!dates.isEmpty())
        setMember(object.members, "DxReadOnRequest", textsOf(dates));
}

void RequestedAttributes::forgetUnanswered()
{
    for (Requested &its : byNode_) {
        its.unread.removeIf(
            [](const auto &unread) { return RawObject::isUnanswered(unread.value().reason); });
    }
}
