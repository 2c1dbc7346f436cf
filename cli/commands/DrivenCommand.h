// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/Command.h"

class TavDataStore;
class TavRegistryEntry;

// Lists the devices that a driver or a module drives.
class DrivenCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(DrivenCommand)
public:
    enum class By : quint8 { Driver, Module };

    explicit DrivenCommand(By by)
        : by_(by)
    {}
    CommandDescription description() const override;
    ExitCode run(const CommandInput &input, RegistrySource &source, CommandOutput &output) override;

private:
    using Entries = std::vector<TavRegistryEntry *>;

    struct Driven;

    // Throws CommandError if there is none of the name.
    Entries drivers(const TavDataStore &store, const QString &name) const;

    std::vector<Driven> devices(const TavDataStore &store, const QString &name) const;

    By by_;
};
