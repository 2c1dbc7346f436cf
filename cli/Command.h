// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/CommandDescription.h"
#include "cli/CommandError.h"

#include <QCoreApplication>

class CommandInput;
class CommandOutput;
class RegistrySource;

// A command of vandrel-cli.
class Command
{
public:
    virtual ~Command() = default;
    virtual CommandDescription description() const = 0;
    // Throws CommandError.
    virtual ExitCode run(const CommandInput &input, RegistrySource &source,
                         CommandOutput &output) = 0;
};
