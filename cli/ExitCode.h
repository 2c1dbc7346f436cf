// SPDX-License-Identifier: Apache-2.0
#pragma once

// As of grep and diff, and of sysexits for a wrong command line.
enum class ExitCode : int {
    Found = 0,
    Nothing = 1,
    Same = Found,
    Different = Nothing,
    Failed = 2,
    // As of monitoring plug-ins.
    Good = Found,
    Warnings = 1,
    Errors = 2,
    CouldNotLook = 3,
    WrongUsage = 64,
};
