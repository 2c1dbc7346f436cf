// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/Command.h"

// Lists the planes with the number of entries in each.
class PlanesCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(PlanesCommand)
public:
    CommandDescription description() const override;
    ExitCode run(const CommandInput &input, RegistrySource &source, CommandOutput &output) override;
};
