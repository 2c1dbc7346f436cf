// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/ExitCode.h"

#include <QString>

// Thrown to end a command with a message on standard error.
struct CommandError
{
    QString message;
    ExitCode code = ExitCode::Failed;
};
