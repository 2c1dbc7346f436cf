// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/Command.h"

class RegistryValue;
class TavDataStore;
class TavRegistryEntry;

// Shows the facts and properties of entries, or one value alone.
class ShowCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(ShowCommand)
public:
    CommandDescription description() const override;
    ExitCode run(const CommandInput &input, RegistrySource &source, CommandOutput &output) override;

private:
    void writeText(TavRegistryEntry &entry, CommandOutput &output) const;
    static void writeFacts(TavRegistryEntry &entry, CommandOutput &output);
    void writeProperties(const TavRegistryEntry &entry, CommandOutput &output) const;
    static void writeJson(TavRegistryEntry &entry, CommandOutput &output);
    bool writeValues(const TavRegistryEntry &entry, const QString &key,
                     CommandOutput &output) const;

    bool isRaw_ = false;
    QStringList planes_;
};
