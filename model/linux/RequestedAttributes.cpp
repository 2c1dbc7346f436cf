#include "model/linux/RequestedAttributes.h"

RegistryValue::Members mergedMembers(RegistryValue::Members base,
                                     const RegistryValue::Members &added)
{
    for (const RegistryValue::Member &member : added) {
        const auto place =
            std::lower_bound(base.begin(), base.end(), member, [](const auto &a, const auto &b) {
                return a.key.toOwner().toUtf8() < b.key.toOwner().toUtf8();
            });
        const bool isThere = place != base.end() && place->key == member.key;
        if (!isThere)
            base.insert(place, member);
        else if (member.value.type() == RegistryValue::Type::Dictionary)
            place->value = RegistryValue::dictionary(
                mergedMembers(place->value.members(), member.value.members()));
        else
            place->value = member.value;
    }
    return base;
}

void RequestedAttributes::set(quint64 node, SweepObject read)
{
    Requested &requested = byNode_[node];
    requested.unread = std::move(read.unread);
    if (read.members.empty())
        return;
    requested.members = std::move(read.members);
    requested.date = QDateTime::currentDateTimeUtc();
}

void RequestedAttributes::addTo(HostObject &object) const
{
    const auto requested = byNode_.constFind(object.nodeID);
    if (requested == byNode_.constEnd())
        return;
    object.unread.insert(object.unread.end(), requested->unread.begin(), requested->unread.end());
    if (requested->date.isNull())
        return;
    object.members = mergedMembers(std::move(object.members), requested->members);
    object.members = mergedMembers(
        std::move(object.members),
        {{CompactString(QStringLiteral("DxReadOnRequest")), RegistryValue::date(requested->date)}});
}
