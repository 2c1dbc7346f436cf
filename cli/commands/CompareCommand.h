// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/Command.h"
#include "cli/RegistrySource.h"
#include "display/comparison/ExportedDifferences.h"
#include "store/filter/FilterExpression.h"
#include "store/redaction/RedactedStore.h"

// Prints what differs between two registries, or between two states of one.
class CompareCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(CompareCommand)
public:
    CommandDescription description() const override;
    ExitCode run(const CommandInput &input, RegistrySource &source, CommandOutput &output) override;

private:
    using Filter = ExportedDifferences::Filter;
    using Matches = QSet<const TavRegistryEntry *>;

    static void check(const CommandInput &input);
    QString nameOf(const RegistrySource &source) const;
    const TavDataStore &shown(const TavDataStore &store,
                              const std::unique_ptr<RedactedStore> &copy) const;
    Filter filterOf(const CommandInput &input, TavDataStore &before, TavDataStore &after) const;
    static void addMatches(TavDataStore &store, const FilterExpression &filter,
                           const RedactedStore *copy, Matches &matches);
    static ExportedDifferences::Detail detailOf(const CommandInput &input);
    static void write(const ExportedDifferences &differences, const CommandInput &input,
                      CommandOutput &output);
    static void writeText(const ExportedDifferences &differences, CommandOutput &output);
    static void writeJson(const ExportedDifferences &differences, CommandOutput &output);

    std::optional<FilterExpression> where_;
    RedactedStore::Pair copies_; // null: serial numbers stay
};
