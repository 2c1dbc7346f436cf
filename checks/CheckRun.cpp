// SPDX-License-Identifier: Apache-2.0
#include "checks/CheckRun.h"

#include "checks/CheckList.h"
#include "checks/ChecksLogging.h"

#include <algorithm>
#include <array>

std::size_t CheckRun::Result::count(Severity severity) const
{
    return static_cast<std::size_t>(
        std::count_if(findings.begin(), findings.end(),
                      [&](const Finding &finding) { return finding.severity == severity; }));
}

CheckRun::CheckRun(QStringList only, QStringList skipped)
{
    for (const auto &check : CheckList::all()) {
        CheckDescription description = check->description();
        if ((only.isEmpty() || only.contains(description.id)) && !skipped.contains(description.id))
            items_.push_back({std::move(description), check.get()});
    }
}

CheckRun::CheckRun(const std::vector<const Check *> &checks)
{
    for (const Check *const check : checks)
        items_.push_back({check->description(), check});
}

CheckRun::Result CheckRun::over(const CheckedRegistry &registry) const
{
    return over(registry, {}, false);
}

CheckRun::Result CheckRun::over(const CheckedRegistry &registry, const Result &before) const
{
    return over(registry, before, true);
}

CheckRun::Result CheckRun::over(const CheckedRegistry &registry, const Result &before,
                                bool isChangedOnly) const
{
    Result result;
    QHash<QString, std::vector<Finding>> lasting; // by check
    if (isChangedOnly) {
        const QSet<quint64> unchanged = unchangedEntriesOf(before, registry);
        for (const Finding &finding : before.findings) {
            if (unchanged.contains(finding.entryTag))
                lasting[finding.check].push_back(finding);
        }
    }
    const EntriesByKey withKeys = entriesWithKeys(registry);
    for (const Item &item : items_) {
        const QString &id = item.description.id;
        const bool isLocal =
            isChangedOnly && !item.description.looksAround && !before.failed.contains(id);
        auto found = run(item, registry, withKeys, isLocal);
        if (!found) {
            result.failed.append(id);
            continue;
        }
        if (isLocal)
            found->insert(found->end(), lasting[id].begin(), lasting[id].end());
        // The oldest entry first, whichever of them were looked at this time.
        std::stable_sort(found->begin(), found->end(), [](const Finding &a, const Finding &b) {
            return a.entryTag < b.entryTag;
        });
        std::move(found->begin(), found->end(), std::back_inserter(result.findings));
    }
    std::stable_sort(result.findings.begin(), result.findings.end(),
                     [](const Finding &a, const Finding &b) { return a.severity > b.severity; });
    return result;
}

QSet<quint64> CheckRun::unchangedEntriesOf(const Result &result, const CheckedRegistry &registry)
{
    QSet<quint64> having;
    for (const Finding &finding : result.findings)
        having.insert(finding.entryTag);
    QSet<quint64> unchanged;
    for (const CheckedEntry &entry : registry.entries()) {
        if (entry.isUnchanged() && having.contains(entry.tag()))
            unchanged.insert(entry.tag());
    }
    return unchanged;
}

// In one pass, as most members are of no interest to any check.
CheckRun::EntriesByKey CheckRun::entriesWithKeys(const CheckedRegistry &registry) const
{
    constexpr qsizetype maxSize = 64;
    std::array<bool, maxSize> sizes{};
    EntriesByKey entries;
    for (const Item &item : items_) {
        const QString &key = item.description.key;
        if (key.isNull() || key.size() >= maxSize)
            continue;
        sizes[static_cast<std::size_t>(key.size())] = true;
        entries.insert(key, {});
    }
    for (const CheckedEntry &entry : registry.entries()) {
        for (const auto &member : entry.table().members()) {
            const auto size = static_cast<qsizetype>(member.key.size());
            if (size >= maxSize || !sizes[static_cast<std::size_t>(size)])
                continue;
            const auto found = entries.find(member.key.toOwner());
            if (found != entries.end())
                found->push_back(&entry);
        }
    }
    return entries;
}

std::optional<std::vector<Finding>> CheckRun::run(const Item &item, const CheckedRegistry &registry,
                                                  const EntriesByKey &withKeys, bool isChangedOnly)
{
    std::vector<Finding> found;
    const auto look = [&](const CheckedEntry &entry) {
        if (isChangedOnly && entry.isUnchanged())
            return;
        const CheckDescription &its = item.description;
        item.check->look(entry, [&](const Check::Observation &seen) {
            found.push_back({its.id, seen.severity.value_or(its.severity), entry.tag(),
                             seen.properties, seen.detail,
                             seen.nextStep.isNull() ? its.nextStep : seen.nextStep});
        });
    };
    try {
        for (const QString &subsystem : item.description.subsystems) {
            for (const CheckedEntry *const entry : registry.ofSubsystem(subsystem))
                look(*entry);
        }
        if (const auto having = withKeys.constFind(item.description.key);
            having != withKeys.constEnd()) {
            for (const CheckedEntry *const entry : *having)
                look(*entry);
        } else if (item.description.subsystems.isEmpty()) {
            for (const CheckedEntry &entry : registry.entries())
                look(entry);
        }
        return found;
    } catch (const std::exception &error) {
        qCDebug(checksLog, "The check %s gave up: %s", qUtf8Printable(item.description.id),
                error.what());
    } catch (...) {
        qCDebug(checksLog, "The check %s gave up", qUtf8Printable(item.description.id));
    }
    return std::nullopt;
}
