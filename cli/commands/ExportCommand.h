// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/Command.h"
#include "display/export/ExportedEntries.h"

// Writes entries with everything that the registry knows of them.
class ExportCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(ExportCommand)
public:
    CommandDescription description() const override;
    ExitCode run(const CommandInput &input, RegistrySource &source, CommandOutput &output) override;

private:
    static ExportedEntries entriesOf(const CommandInput &input, TavDataStore &store);
    static bool write(const ExportedEntries &entries, const CommandInput &input, QIODevice &device);
    static void writeFile(const ExportedEntries &entries, const CommandInput &input);
};
