// SPDX-License-Identifier: Apache-2.0
#pragma once

// As of grep, and of sysexits for a wrong command line.
enum class ExitCode : int {
    Found = 0,
    Nothing = 1,
    Failed = 2,
    WrongUsage = 64,
};
