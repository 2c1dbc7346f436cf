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

void RequestedAttributes::set(quint64 id, RegistryValue::Members members)
{
    byID_.insert(id, {std::move(members), QDateTime::currentDateTimeUtc()});
}

void RequestedAttributes::addTo(RegistryValue::Members &members, quint64 id) const
{
    const auto requested = byID_.constFind(id);
    if (requested == byID_.constEnd())
        return;
    members = mergedMembers(std::move(members), requested->members);
    members = mergedMembers(std::move(members), {{CompactString(QStringLiteral("DxReadOnRequest")),
                                                  RegistryValue::date(requested->date)}});
}
