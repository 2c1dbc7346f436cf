// SPDX-License-Identifier: Apache-2.0
#include "activity/PropertyChanges.h"

#include <QMap>

namespace {
using Scalars = QMap<QString, std::pair<RegistryValue, RegistryValue>>;

// What is not read now follows from the state, and says nothing about the device by itself.
bool isAboutReading(const QString &key)
{
    return key == QLatin1String("DxUnreadAttributes") || key == QLatin1String("DxReadOnRequest");
}

// Recursive: no deeper than a tree of attributes.
void add(const RegistryValue &value, const QString &prefix,
         RegistryValue std::pair<RegistryValue, RegistryValue>::*side, Scalars &scalars)
{
    for (const auto &[key, member] : value.members()) {
        const QString path = prefix + key.toOwner();
        if (isAboutReading(path))
            continue;
        if (member.type() == RegistryValue::Type::Dictionary)
            add(member, path + u'/', side, scalars);
        else
            scalars[path].*side = member;
    }
}
} // namespace

std::vector<PropertyChange> PropertyChange::between(const RegistryValue &before,
                                                    const RegistryValue &after)
{
    Scalars scalars;
    if (!before.isSameCollectionAs(after)) {
        add(before, {}, &std::pair<RegistryValue, RegistryValue>::first, scalars);
        add(after, {}, &std::pair<RegistryValue, RegistryValue>::second, scalars);
    }
    std::vector<PropertyChange> changes;
    for (auto it = scalars.cbegin(); it != scalars.cend(); ++it) {
        if (!(it->first == it->second))
            changes.push_back({it.key(), it->first, it->second});
    }
    return changes;
}
