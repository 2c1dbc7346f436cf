// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/Command.h"

// Writes a snapshot of the registry.
class CaptureCommand : public Command
{
    Q_DECLARE_TR_FUNCTIONS(CaptureCommand)
public:
    CommandDescription description() const override;
    ExitCode run(const CommandInput &input, RegistrySource &source, CommandOutput &output) override;
};
