// SPDX-License-Identifier: Apache-2.0
#include "cli/commands/PlanesCommand.h"

#include "cli/RegistrySource.h"
#include "cli/TextTable.h"
#include "model/EntryOrder.h"

CommandDescription PlanesCommand::description() const
{
    return {.name = QStringLiteral("planes"),
            .summary = tr("List the planes and the number of entries in each"),
            .details =
                tr("A plane arranges the entries of the registry in its own way: DxService by "
                   "where devices are connected, DxBus and DxClass by what they are, "
                   "DxDriver and DxModule by what drives them."),
            .examples = {
                {QStringLiteral("planes"), tr("The planes of this machine")},
                {QStringLiteral("planes --file server.vandrel"), tr("The planes of a snapshot")}}};
}

ExitCode PlanesCommand::run(const CommandInput &, RegistrySource &source, CommandOutput &output)
{
    TavDataStore &store = source.store(RegistrySource::Need::Structure);
    output.describe(store);
    TextTable table;
    for (const QString &plane : store.registryPlanes()) {
        const auto count = static_cast<quint64>(EntryOrder(*store.registryRoot(), plane).size());
        table.add({{plane, TextRole::Name}, {QString::number(count), TextRole::Plain, true}});
        if (output.isText())
            continue;
        output.addResult([&](JsonWriter &json) {
            json.member(QLatin1String("plane"), plane);
            json.numberMember(QLatin1String("entries"), count);
        });
    }
    if (output.isText())
        table.write(output);
    return ExitCode::Found;
}
