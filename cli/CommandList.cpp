// SPDX-License-Identifier: Apache-2.0
#include "cli/CommandList.h"

#include "cli/commands/CaptureCommand.h"
#include "cli/commands/CheckCommand.h"
#include "cli/commands/CompareCommand.h"
#include "cli/commands/DrivenCommand.h"
#include "cli/commands/ExportCommand.h"
#include "cli/commands/FindCommand.h"
#include "cli/commands/PathsCommand.h"
#include "cli/commands/PlanesCommand.h"
#include "cli/commands/PlotCommand.h"
#include "cli/commands/ShowCommand.h"
#include "cli/commands/TreeCommand.h"
#include "cli/commands/WatchCommand.h"

namespace {
std::vector<std::unique_ptr<Command>> all()
{
    std::vector<std::unique_ptr<Command>> commands;
    commands.push_back(std::make_unique<PlanesCommand>());
    commands.push_back(std::make_unique<TreeCommand>());
    commands.push_back(std::make_unique<ShowCommand>());
    commands.push_back(std::make_unique<FindCommand>());
    commands.push_back(std::make_unique<PathsCommand>());
    commands.push_back(std::make_unique<DrivenCommand>(DrivenCommand::By::Driver));
    commands.push_back(std::make_unique<DrivenCommand>(DrivenCommand::By::Module));
    commands.push_back(std::make_unique<WatchCommand>());
    commands.push_back(std::make_unique<PlotCommand>());
    commands.push_back(std::make_unique<CaptureCommand>());
    commands.push_back(std::make_unique<ExportCommand>());
    commands.push_back(std::make_unique<CompareCommand>());
    commands.push_back(std::make_unique<CheckCommand>());
    return commands;
}
} // namespace

std::vector<CommandDescription> CommandList::descriptions()
{
    std::vector<CommandDescription> descriptions;
    for (const auto &command : all())
        descriptions.push_back(command->description());
    return descriptions;
}

std::unique_ptr<Command> CommandList::make(const QString &name)
{
    for (auto &command : all()) {
        if (command->description().name == name)
            return std::move(command);
    }
    return nullptr;
}

QStringList CommandList::names()
{
    QStringList names;
    for (const CommandDescription &description : descriptions())
        names.append(description.name);
    return names;
}
