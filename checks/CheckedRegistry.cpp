// SPDX-License-Identifier: Apache-2.0
#include "checks/CheckedRegistry.h"

#include "store/TavDataStore.h"

#include <QRegularExpression>

namespace {
const QString servicePlane = QStringLiteral("DxService");
const QString sysfs = QStringLiteral("/sys/");

QString lastPart(QStringView path)
{
    return path.sliced(path.lastIndexOf(u'/') + 1).toString();
}
} // namespace

const CheckedEntry *CheckedEntry::parent() const
{
    return parent_ < 0 ? nullptr : &registry_->entries_[static_cast<std::size_t>(parent_)];
}

std::vector<const CheckedEntry *> CheckedEntry::children() const
{
    std::vector<const CheckedEntry *> children;
    for (int place = firstChild_; place >= 0;) {
        const CheckedEntry &child = registry_->entries_[static_cast<std::size_t>(place)];
        children.push_back(&child);
        place = child.nextSibling_;
    }
    return children;
}

const RegistryValue &CheckedEntry::value(QStringView path) const
{
    const RegistryValue *at = &table_;
    for (const QStringView key : path.tokenize(u'/'))
        at = &at->member(key);
    return *at;
}

QString CheckedEntry::text(QStringView path) const
{
    return value(path).toString().trimmed();
}

std::optional<qint64> CheckedEntry::number(QStringView path) const
{
    const RegistryValue &its = value(path);
    if (its.type() != RegistryValue::Type::Number)
        return std::nullopt;
    return its.isSignedNumber() ? its.signedNumber() : static_cast<qint64>(its.numberBits());
}

std::optional<double> CheckedEntry::leadingNumber(QStringView path) const
{
    if (const auto whole = number(path))
        return static_cast<double>(*whole);
    static const QRegularExpression pattern(QStringLiteral("^\\s*(\\d+(\\.\\d+)?)(\\s|$)"));
    const auto match = pattern.match(text(path));
    return match.hasMatch() ? std::optional(match.captured(1).toDouble()) : std::nullopt;
}

QString CheckedEntry::linkName(QStringView path) const
{
    return lastPart(value(path).stringView());
}

const CheckedEntry *CheckedEntry::linkTarget(QStringView path) const
{
    return registry_->atLink(value(path).toString());
}

CheckedRegistry::CheckedRegistry(const TavDataStore &store)
{
    entries_.reserve(store.registryEntries().size());
    kernelPaths_.reserve(static_cast<qsizetype>(store.registryEntries().size()));
    linkParents(store);
    for (const CheckedEntry &entry : entries_) {
        subsystems_[entry.subsystem()].push_back(&entry);
        if (!entry.kernelPath().isEmpty())
            kernelPaths_.insert(entry.kernelPath(), &entry);
    }
}

void CheckedRegistry::add(const TavRegistryEntry &entry)
{
    CheckedEntry checked;
    checked.registry_ = this;
    checked.tag_ = entry.entryTag();
    checked.kernelPath_ = entry.kernelPath();
    checked.inheritance_ = entry.inheritance();
    checked.table_ = entry.table();
    const QString subsystem = checked.linkName(u"subsystem");
    checked.subsystem_ = subsystem.isEmpty() ? entry.DxcoreClass() : subsystem;
    entries_.push_back(std::move(checked));
}

void CheckedRegistry::linkParents(const TavDataStore &store)
{
    QHash<const TavRegistryEntry *, int> places;
    places.reserve(static_cast<qsizetype>(store.registryEntries().size()));
    for (const EntryRef &entry : store.registryEntries()) {
        if (entry->registryState() == RegistryStateTerminated || entry->hasTerminationDate())
            continue;
        places.insert(entry.get(), static_cast<int>(entries_.size()));
        add(*entry);
    }
    for (auto it = places.cbegin(); it != places.cend(); ++it) {
        const auto &parents = it.key()->parentsInPlane(servicePlane);
        const int parent = parents.empty() ? -1 : places.value(parents.front(), -1);
        if (parent < 0)
            continue;
        CheckedEntry &child = entries_[static_cast<std::size_t>(it.value())];
        CheckedEntry &above = entries_[static_cast<std::size_t>(parent)];
        child.parent_ = parent;
        child.nextSibling_ = std::exchange(above.firstChild_, it.value());
    }
}

const std::vector<const CheckedEntry *> &CheckedRegistry::ofSubsystem(const QString &name) const
{
    static const std::vector<const CheckedEntry *> none;
    const auto found = subsystems_.constFind(name);
    return found == subsystems_.constEnd() ? none : *found;
}

const CheckedEntry *CheckedRegistry::atLink(const QString &target) const
{
    return target.isEmpty() ? nullptr : kernelPaths_.value(sysfs + target);
}
