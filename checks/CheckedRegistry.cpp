// SPDX-License-Identifier: Apache-2.0
#include "checks/CheckedRegistry.h"

#include "checks/ChecksLogging.h"
#include "store/TavDataStore.h"

#include <QRegularExpression>

namespace {
const QString servicePlane = QStringLiteral("DxService");
const QString sysfs = QStringLiteral("/sys/");
constexpr quint32 noNumber = ~quint32(0);

QString lastPart(QStringView path)
{
    return path.sliced(path.lastIndexOf(u'/') + 1).toString();
}
} // namespace

QString CheckedEntry::kernelName() const
{
    return lastPart(kernelPath());
}

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
    if (its.type() != RegistryValue::Type::Number) {
        if (!its.isNone())
            noteUnknownForm(path);
        return std::nullopt;
    }
    return its.isSignedNumber() ? its.signedNumber() : static_cast<qint64>(its.numberBits());
}

std::optional<qint64> CheckedEntry::rise(QStringView path) const
{
    const RegistryValue *before = &earlier_;
    for (const QStringView key : path.tokenize(u'/'))
        before = &before->member(key);
    const auto now = number(path);
    if (!now || before->type() != RegistryValue::Type::Number)
        return std::nullopt;
    return *now - static_cast<qint64>(before->numberBits());
}

std::optional<double> CheckedEntry::leadingNumber(QStringView path) const
{
    if (value(path).type() == RegistryValue::Type::Number)
        return static_cast<double>(number(path).value_or(0));
    static const QRegularExpression pattern(QStringLiteral("^\\s*(\\d+(\\.\\d+)?)(\\s|$)"));
    const auto match = pattern.match(text(path));
    if (match.hasMatch())
        return match.captured(1).toDouble();
    if (has(path))
        noteUnknownForm(path);
    return std::nullopt;
}

void CheckedEntry::noteUnknownForm(QStringView path) const
{
    qCDebug(checksLog, "%s is no number: %s", qUtf8Printable(path.toString()),
            qUtf8Printable(kernelPath()));
}

QString CheckedEntry::linkName(QStringView path) const
{
    return lastPart(value(path).stringView());
}

const CheckedEntry *CheckedEntry::linkTarget(QStringView path) const
{
    return registry_->atLink(value(path).toString());
}

void CheckedRegistry::setMachine(const TavDataStore &store)
{
    RegistryService *const service = store.isLive() ? store.service() : nullptr;
    modules_ = service ? service->moduleCatalog() : nullptr;
    deviceNodes_ = service ? service->deviceNodes() : nullptr;
}

void CheckedRegistry::add(const TavDataStore &store)
{
    reserve(store.registryEntries().size());
    for (const EntryRef &entry : store.registryEntries())
        add(*entry);
    finish();
}

void CheckedRegistry::add(const TavRegistryEntry &entry, const Measurement::Tables &measured)
{
    if (entry.registryState() == RegistryStateTerminated || entry.hasTerminationDate())
        return;
    CheckedEntry &checked = entries_.emplace_back();
    checked.registry_ = this;
    checked.tag_ = entry.entryTag();
    checked.inheritance_ = entry.inheritance();
    if (measured.base.isNone()) {
        checked.table_ = entry.table();
    } else {
        Measurement::Tables tables = measured.over(entry.table());
        checked.table_ = std::move(tables.now);
        checked.earlier_ = std::move(tables.earlier);
    }
    checked.kernelPath_ = entry.facts().kernelPath;
    const auto &parents = entry.parentsInPlane(servicePlane);
    numbers_.push_back(entry.number());
    parentNumbers_.push_back(parents.empty() ? noNumber : parents.front()->number());
}

void CheckedRegistry::finish(const CheckedRegistry *before)
{
    linkParents();
    if (before)
        noteUnchanged(*before);
    QHash<QStringView, QString> names; // by the link's text, which few entries have alone
    for (CheckedEntry &entry : entries_) {
        const QStringView link = entry.value(u"subsystem").stringView();
        QString &name = names[link];
        if (!link.isEmpty() && name.isNull())
            name = lastPart(link);
        entry.subsystem_ = link.isEmpty() ? entry.inheritance_.value(0) : name;
        subsystems_[entry.subsystem_].push_back(&entry);
    }
}

void CheckedRegistry::linkParents()
{
    for (std::size_t place = 0; place < numbers_.size(); ++place) {
        if (numbers_[place] >= places_.size())
            places_.resize(numbers_[place] + std::size_t(1), -1);
        places_[numbers_[place]] = static_cast<int>(place);
    }
    for (std::size_t place = 0; place < entries_.size(); ++place) {
        const quint32 number = parentNumbers_[place];
        const int parent = number < places_.size() ? places_[number] : -1;
        if (parent < 0)
            continue;
        entries_[place].parent_ = parent;
        CheckedEntry &above = entries_[static_cast<std::size_t>(parent)];
        entries_[place].nextSibling_ = std::exchange(above.firstChild_, static_cast<int>(place));
    }
    parentNumbers_ = {};
}

// By the identity of tables, so nothing is compared that was not read again.
void CheckedRegistry::noteUnchanged(const CheckedRegistry &before)
{
    for (std::size_t place = 0; place < entries_.size(); ++place) {
        const quint32 number = numbers_[place];
        const int old = number < before.places_.size() ? before.places_[number] : -1;
        if (old < 0)
            continue;
        CheckedEntry &entry = entries_[place];
        const CheckedEntry &was = before.entries_[static_cast<std::size_t>(old)];
        entry.isUnchanged_ = entry.tag_ == was.tag_ &&
                             entry.table_.isSameCollectionAs(was.table_) &&
                             entry.earlier_.isNone() && was.earlier_.isNone();
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
    std::call_once(hasKernelPaths_, [this] {
        for (const CheckedEntry &entry : entries_)
            kernelPaths_.insert(entry.kernelPath(), &entry);
    });
    return target.isEmpty() ? nullptr : kernelPaths_.value(sysfs + target);
}
