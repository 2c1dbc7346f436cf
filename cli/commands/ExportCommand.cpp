// SPDX-License-Identifier: Apache-2.0
#include "cli/commands/ExportCommand.h"

#include "cli/CommandInput.h"
#include "cli/CommandOutput.h"
#include "cli/EntryArgument.h"
#include "cli/RegistryNames.h"
#include "cli/RegistrySource.h"
#include "cli/commands/FindCommand.h"
#include "display/export/CsvExport.h"
#include "display/export/JsonExport.h"
#include "display/export/PlainTextExport.h"
#include "platform/documents/ReplacementFile.h"
#include "store/redaction/RedactedStore.h"

#include <QIODevice>

using namespace RegistryNames;

namespace {
const auto noExportReport = [](double) {};
} // namespace

CommandDescription ExportCommand::description() const
{
    return {.name = QStringLiteral("export"),
            .arguments = tr("[PLANE | PATH]"),
            .argumentKind = ArgumentKind::Path,
            .maxArguments = 1,
            .summary = tr("Write entries with all their facts and properties"),
            .details =
                tr("Without an argument: the plane DxService. A path stands for the entry and "
                   "all below it. The formats are those of the window's File > Export."),
            .options = {{QStringLiteral("format"),
                         QStringLiteral("FORMAT"),
                         tr("Write an outline to read (text), JSON for programs (json) or a table "
                            "(csv)."),
                         ArgumentKind::Choice,
                         {QStringLiteral("text"), QStringLiteral("json"), QStringLiteral("csv")}},
                        {QStringLiteral("output"), QStringLiteral("FILE"),
                         tr("Write to this file, which is replaced completely or not at all."),
                         ArgumentKind::File},
                        {QStringLiteral("single"), {}, tr("Leave out what is below the entry.")},
                        {QStringLiteral("where"), QStringLiteral("EXPRESSION"),
                         tr("Write the entries that satisfy a filter expression instead."),
                         ArgumentKind::Expression},
                        {QStringLiteral("columns"), QStringLiteral("KEY,KEY"),
                         tr("The properties in a table; otherwise all."), ArgumentKind::Key},
                        {QStringLiteral("redact"),
                         {},
                         tr("Replace serial numbers, addresses and the host's name.")}},
            .examples = {{QStringLiteral("export --format json --output machine.json"),
                          tr("Everything, for a program")},
                         {QStringLiteral("export --where 'class ~ DxPci' --format csv "
                                         "--columns vendor,device,driver"),
                          tr("A table of the PCI devices")}},
            .writesResults = false};
}

ExportedEntries ExportCommand::entriesOf(const CommandInput &input, TavDataStore &store)
{
    const QString argument = input.arguments().value(0, servicePlane);
    const EntryArgument chosen(store, argument);
    const QString plane = chosen.plane().isNull() ? servicePlane : chosen.plane();
    if (input.isSet("where"))
        return ExportedEntries::found(
            store, plane, FindCommand::matches(store, FindCommand::parse(input.value("where"))));
    const TavRegistryEntry &entry = *chosen.entries().front();
    return input.isSet("single") ? ExportedEntries::single(store, plane, entry)
                                 : ExportedEntries::subtree(store, plane, entry);
}

ExitCode ExportCommand::run(const CommandInput &input, RegistrySource &source,
                            CommandOutput &output)
{
    TavDataStore &store = source.store(RegistrySource::Need::Properties);
    store.lookUpDeviceNamesNow();
    ExportedEntries entries = entriesOf(input, store);
    std::optional<RedactedStore> copy;
    if (input.isSet("redact")) {
        copy.emplace(store, noExportReport);
        entries = entries.in(*copy);
    }
    if (input.isSet("output")) {
        writeFile(entries, input);
    } else {
        if (!write(entries, input, output.device()))
            throw CommandError{tr("The output failed: %1").arg(output.device().errorString())};
    }
    return entries.items().empty() ? ExitCode::Nothing : ExitCode::Found;
}

bool ExportCommand::write(const ExportedEntries &entries, const CommandInput &input,
                          QIODevice &device)
{
    const QString format = input.value("format");
    if (format == QLatin1String("json"))
        return JsonExport::write(entries, device, noExportReport);
    if (format != QLatin1String("csv"))
        return PlainTextExport::write(entries, device, PlainTextExport::Head::Machine,
                                      noExportReport);
    CsvExport::Columns columns;
    const auto facts = EntryFactTexts::all();
    columns.facts.assign(facts.begin(), facts.end());
    columns.keys = input.isSet("columns") ? input.value("columns").split(u',', Qt::SkipEmptyParts)
                                          : CsvExport::keysOf(entries, noExportReport);
    return CsvExport::write(entries, columns, device, noExportReport);
}

void ExportCommand::writeFile(const ExportedEntries &entries, const CommandInput &input)
{
    const QString file = input.value("output");
    ReplacementFile replacement(file);
    if (!replacement.open() || !write(entries, input, replacement.content()) ||
        !replacement.commit())
        throw CommandError{QStringLiteral("%1: %2").arg(file, replacement.errorString())};
}
