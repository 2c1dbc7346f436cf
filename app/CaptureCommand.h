// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/CommandLine.h"

#include <QCoreApplication>

// Writes a snapshot of the registry to a file, or to standard output for "-". Needs no display.
class CaptureCommand
{
    Q_DECLARE_TR_FUNCTIONS(CaptureCommand)

public:
    enum ExitCode { Done, NoRegistry, NotWritten, Incomplete };

    // Incomplete: written, but some devices did not answer. Errors go to standard error. An
    // existing file is replaced completely or left as it was.
    static ExitCode run(const CommandLine &line);
};
