// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "activity/EventLog.h"
#include "store/filter/FilterExpression.h"

#include <QDateTime>
#include <QHash>
#include <memory>
#include <optional>

class TavDataStore;
class TavRegistryEntry;

// Which rows of a log a filter expression lets through: those whose entry satisfies it. Of an entry
// that the store no longer has, what its row knows is asked. That messages were lost always shows.
class EventLogFilter
{
public:
    explicit EventLogFilter(std::shared_ptr<TavDataStore> store);

    void set(std::optional<FilterExpression> expression); // none: everything passes
    void refresh();                                       // if the store has changed
    bool isSet() const { return expression_.has_value(); }
    bool passes(const LogRow &row);

private:
    using Test = std::function<bool(const TavRegistryEntry &)>;

    bool matches(const LogRow &row);
    void readStore();

    std::shared_ptr<TavDataStore> store_;
    std::optional<FilterExpression> expression_;
    Test test_;
    std::pair<QDateTime, std::size_t> asOf_; // the store's last update and number of entries
    QHash<quint64, const TavRegistryEntry *> entries_; // of the store, by tag
    QHash<quint64, bool> answers_;                     // by tag, of entries of the store
};
