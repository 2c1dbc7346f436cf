// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "checks/CheckRun.h"
#include "cli/Command.h"

class ModuleCatalog;
class TavDataStore;
class TavRegistryEntry;

// Says what looks wrong in a registry.
class CheckCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(CheckCommand)
public:
    CommandDescription description() const override;
    ExitCode run(const CommandInput &input, RegistrySource &source, CommandOutput &output) override;

private:
    static QStringList checkIds(const CommandInput &input, const char *option);
    static std::shared_ptr<const ModuleCatalog> modulesIn(const QString &folder);
    static Severity leastSeverity(const CommandInput &input);
    static void list(CommandOutput &output);
    CheckRun::Result look(const CommandInput &input, RegistrySource &source);
    void writeText(const CheckRun::Result &result, Severity least, CommandOutput &output) const;
    void writeJson(const CheckRun::Result &result, Severity least, CommandOutput &output) const;
    static void writeStatusLine(const CheckRun::Result &result, CommandOutput &output);
    QString pathOf(quint64 tag) const;

    TavDataStore *store_ = nullptr;
};
