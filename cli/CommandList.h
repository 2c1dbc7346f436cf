// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "cli/Command.h"

#include <memory>

// The commands of vandrel-cli, in the order of the help.
class CommandList
{
public:
    static std::vector<CommandDescription> descriptions();
    static std::unique_ptr<Command> make(const QString &name); // null: there is none
    static QStringList names();
};
