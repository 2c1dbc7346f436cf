// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "checks/Check.h"

#include <QSet>

// All checks, or some, over a registry. Any thread.
class CheckRun
{
public:
    struct Result
    {
        std::vector<Finding> findings; // errors first, then in the order of the checks
        QStringList failed; // IDs of checks that gave up; none of their findings are here

        std::size_t count(Severity severity) const;
    };

    // Empty: all of them. Unknown IDs are ignored.
    explicit CheckRun(QStringList only = {}, QStringList skipped = {});

    // These, which must outlive it.
    explicit CheckRun(const std::vector<const Check *> &checks);

    Result over(const CheckedRegistry &registry) const;
    // The same, but takes what was found at entries that are unchanged from the result before.
    Result over(const CheckedRegistry &registry, const Result &before) const;

private:
    struct Item
    {
        CheckDescription description;
        const Check *check;
    };
    using EntriesByKey = QHash<QString, std::vector<const CheckedEntry *>>;
    Result over(const CheckedRegistry &registry, const Result &before, bool isChangedOnly) const;
    static QSet<quint64> unchangedEntriesOf(const Result &result, const CheckedRegistry &registry);
    // None: the check gave up.
    static std::optional<std::vector<Finding>> run(const Item &item,
                                                   const CheckedRegistry &registry,
                                                   const EntriesByKey &withKeys,
                                                   bool isChangedOnly);
    EntriesByKey entriesWithKeys(const CheckedRegistry &registry) const;

    std::vector<Item> items_;
};
