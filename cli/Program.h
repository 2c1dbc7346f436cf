// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/Command.h"

// Runs the command that a command line names.
class Program
{
    Q_DECLARE_TR_FUNCTIONS(Program)
public:
    // Arguments: without the program's name. Errors go to standard error.
    static ExitCode run(const QStringList &arguments);

private:
    static ExitCode runCommand(const QStringList &arguments);
    static ExitCode perform(Command &command, const QStringList &arguments);
    static ExitCode printHelp(const QStringList &arguments);
    static CommandError unknownCommand(const QString &name);
};
