// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/CommandDescription.h"

// What can follow on a command line, for the completions of shells.
namespace Completion {
// Words: after the program's name, the last one is being written and may be empty. The candidates
// begin with it. A last line "@files" or "@folders" asks the shell for names of files.
QStringList candidates(const QStringList &words);
} // namespace Completion
