// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/Command.h"

// Lists all paths to an entry, in all planes.
class PathsCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(PathsCommand)
public:
    CommandDescription description() const override;
    ExitCode run(const CommandInput &input, RegistrySource &source, CommandOutput &output) override;
};
