// SPDX-License-Identifier: Apache-2.0
#include "model/UpdatedTable.h"

#include <QHash>

namespace {
using Members = RegistryValue::Members;
using Type = RegistryValue::Type;

QStringView keyOf(const RegistryValue::Member &member)
{
    return {member.key.data(), member.key.size()};
}
} // namespace

// Recursive: no deeper than folders of attributes.
RegistryValue updatedTable(const RegistryValue &table, std::span<const RegistryValue::Member> read)
{
    QHash<QStringView, const RegistryValue *> values;
    for (const auto &member : read)
        values.insert(keyOf(member), &member.value);
    Members members;
    bool differs = false;
    members.reserve(table.members().size());
    for (const auto &member : table.members()) {
        members.push_back(member);
        const RegistryValue *const value = values.value(keyOf(member));
        if (!value)
            continue;
        const bool areFolders =
            value->type() == Type::Dictionary && member.value.type() == Type::Dictionary;
        RegistryValue newer = areFolders ? updatedTable(member.value, value->members()) : *value;
        if (areFolders ? newer.isSameCollectionAs(member.value)
                       : newer.meansTheSameAs(member.value))
            continue;
        members.back().value = std::move(newer);
        differs = true;
    }
    return differs ? RegistryValue::dictionary(std::move(members)) : table;
}
