// SPDX-License-Identifier: Apache-2.0
#include "store/filter/KeysOccurring.h"

#include "store/TavDataStore.h"
#include "store/filter/PropertyLookup.h"

namespace {
constexpr qsizetype maxKeys = 20'000;

// Elements of lists have no keys of their own.
void addKeys(const RegistryValue &value, const QString &above, QSet<QString> &keys)
{
    if (value.type() == RegistryValue::Type::Set || keys.size() >= maxKeys)
        return;
    for (const auto &[key, member] : value.members()) {
        const QString path = above + key.toOwner();
        keys.insert(path);
        addKeys(member, path + u'/', keys);
    }
    for (const RegistryValue &element : value.elements())
        addKeys(element, above, keys);
}
} // namespace

QStringList keysOccurring(const TavDataStore &store)
{
    QSet<QString> keys;
    QSet<const char *> seen; // entries of one kind share the text of their keys
    for (const EntryRef &entry : store.registryEntries()) {
        const PropertyText &text = entry->propertyText();
        if (text.isWhole() && seen.contains(text.keys().data()))
            continue;
        seen.insert(text.keys().data());
        RegistryValue made;
        addKeys(PropertyLookup::tableOf(*entry, made), QString(), keys);
    }
    QStringList sorted(keys.begin(), keys.end());
    sorted.sort(Qt::CaseInsensitive);
    return sorted;
}
