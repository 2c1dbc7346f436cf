// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/Command.h"
#include "cli/RegistrySource.h"
#include "model/FindOptions.h"
#include "store/filter/FilterExpression.h"

// Finds entries by a text or by a filter expression, and prints their paths.
class FindCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(FindCommand)
public:
    CommandDescription description() const override;
    ExitCode run(const CommandInput &input, RegistrySource &source, CommandOutput &output) override;

    // Throws CommandError with the place of the error.
    static FilterExpression parse(const QString &expression);
    // Those that satisfy the expression.
    static EntrySet matches(TavDataStore &store, const FilterExpression &expression);

private:
    using Entries = std::vector<TavRegistryEntry *>;

    static FindOptions optionsOf(const QStringList &places);
    static void markFindings(TavDataStore &store, const QString &question);
    EntrySet matches(TavDataStore &store, const QString &text) const;
    Entries find(TavDataStore &store, const CommandInput &input) const;
    void write(const Entries &entries, const QStringList &columns, CommandOutput &output) const;
    void writeJson(const TavRegistryEntry &entry, const QStringList &columns,
                   CommandOutput &output) const;

    QString plane_;
    FindOptions options_;
    std::optional<FilterExpression> filter_;
};
