// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/Command.h"

class TavDataStore;
class TavRegistryEntry;

// Shows a plane, or what is below an entry, as a tree.
class TreeCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(TreeCommand)
public:
    CommandDescription description() const override;
    ExitCode run(const CommandInput &input, RegistrySource &source, CommandOutput &output) override;

private:
    struct Row;

    static std::vector<Row> rowsOf(const TavRegistryEntry &top, const QString &plane,
                                   const TavDataStore &store, quint32 depth);
    void writeText(const std::vector<Row> &rows, const QString &plane, CommandOutput &output) const;
    void writeFacts(const TavRegistryEntry &entry, CommandOutput &output) const;
    static void writeJson(const std::vector<Row> &rows, const QString &plane,
                          CommandOutput &output);

    bool showsClasses_ = false;
    bool showsIDs_ = false;
    bool showsNames_ = false;
};
