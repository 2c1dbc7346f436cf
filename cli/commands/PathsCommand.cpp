// SPDX-License-Identifier: Apache-2.0
#include "cli/commands/PathsCommand.h"

#include "cli/CommandInput.h"
#include "cli/CommandOutput.h"
#include "cli/EntryArgument.h"
#include "cli/EntrySummary.h"
#include "cli/RegistrySource.h"

CommandDescription PathsCommand::description() const
{
    return {.name = QStringLiteral("paths"),
            .arguments = QStringLiteral("PATH…"),
            .argumentKind = ArgumentKind::Path,
            .minArguments = 1,
            .maxArguments = -1,
            .summary = tr("List all paths to an entry, in all planes"),
            .details = tr("Ends with the path in the kernel's own tree, if it has one."),
            .examples = {{QStringLiteral("paths eth0"), tr("Every place of a network interface")},
                         {QStringLiteral("paths 0000:00:02.0 --format ndjson"),
                          tr("The same of a PCI device, for a script")}}};
}

ExitCode PathsCommand::run(const CommandInput &input, RegistrySource &source, CommandOutput &output)
{
    TavDataStore &store = source.store(RegistrySource::Need::Structure);
    output.describe(store);
    for (const QString &argument : input.arguments()) {
        const EntryArgument chosen(store, argument);
        for (TavRegistryEntry *const entry : chosen.entries()) {
            const auto add = [&](const QString &plane, const QString &path) {
                if (path.isEmpty())
                    return;
                if (output.isText()) {
                    output.add(path);
                    return output.endLine();
                }
                output.addResult([&](JsonWriter &json) {
                    json.member(QLatin1String("id"), QString::number(entry->entryTag()));
                    json.member(QLatin1String("plane"), plane);
                    json.member(QLatin1String("path"), path);
                });
            };
            for (const QString &plane : store.registryPlanes()) {
                for (const QString &path : EntrySummary::paths(*entry, plane))
                    add(plane, path);
            }
            add({}, entry->kernelPath());
        }
    }
    return ExitCode::Found;
}
