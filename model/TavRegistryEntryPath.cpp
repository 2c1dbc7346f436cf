// SPDX-License-Identifier: Apache-2.0
#include "model/TavRegistryEntryPath.h"

#include "model/RegistryOrder.h"

#include <algorithm>

TavRegistryEntryPath::TavRegistryEntryPath(const QString &plane,
                                           std::vector<EntryRef> registryEntries)
    : plane_(plane)
    , registryEntries_(std::move(registryEntries))
{}

TavRegistryEntryPath TavRegistryEntryPath::subpathOfLength(std::size_t length) const
{
    const auto count = static_cast<std::ptrdiff_t>(std::min(length, registryEntries_.size()));
    return TavRegistryEntryPath(plane_,
                                {registryEntries_.begin(), registryEntries_.begin() + count});
}

void TavRegistryEntryPath::appendRegistryEntry(const EntryRef &entry)
{
    registryEntries_.push_back(entry);
}

void TavRegistryEntryPath::prependRegistryEntry(const EntryRef &entry)
{
    registryEntries_.insert(registryEntries_.begin(), entry);
}

EntryRef TavRegistryEntryPath::lastRegistryEntry() const
{
    return registryEntries_.empty() ? nullptr : registryEntries_.back();
}

bool TavRegistryEntryPath::containsRegistryEntry(const TavRegistryEntry &entry) const
{
    return std::any_of(registryEntries_.begin(), registryEntries_.end(),
                       [&](const EntryRef &candidate) { return *candidate == entry; });
}

int TavRegistryEntryPath::compareToEntryPath(const TavRegistryEntryPath &other) const
{
    if (const int order = compareRegistryPlaneForUI(plane_, other.plane_))
        return order;
    const std::size_t common = std::min(length(), other.length());
    for (std::size_t i = 0; i < common; ++i) {
        if (registryEntries_[i] == other.registryEntries_[i])
            continue;
        if (const int order = TavRegistryEntry::compareForPlane(*registryEntries_[i],
                                                                *other.registryEntries_[i], plane_))
            return order;
    }
    return length() < other.length() ? -1 : length() > other.length() ? 1 : 0;
}

QString TavRegistryEntryPath::registryPath() const
{
    switch (length()) {
    case 0:
        return {};
    case 1:
        return u'(' + plane_ + u')';
    case 2:
        return plane_ + QLatin1String(":/");
    default:
        break;
    }
    QString path = plane_ + u':';
    for (std::size_t i = 2; i < length(); ++i)
        path += u'/' + registryEntries_[i]->nameAtLocationInPlane(plane_);
    return path;
}

QString TavRegistryEntryPath::description() const
{
    return QStringLiteral("<TavRegistryEntryPath 0x%1 - %2>")
        .arg(reinterpret_cast<quintptr>(this), 0, 16)
        .arg(registryPath());
}

bool operator==(const TavRegistryEntryPath &a, const TavRegistryEntryPath &b)
{
    return &a == &b || (a.plane_ == b.plane_ &&
                        std::equal(a.registryEntries_.begin(), a.registryEntries_.end(),
                                   b.registryEntries_.begin(), b.registryEntries_.end(),
                                   [](const EntryRef &x, const EntryRef &y) { return *x == *y; }));
}
