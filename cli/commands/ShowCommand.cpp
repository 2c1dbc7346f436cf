// SPDX-License-Identifier: Apache-2.0
#include "cli/commands/ShowCommand.h"

#include "activity/RawText.h"
#include "cli/CommandInput.h"
#include "cli/CommandOutput.h"
#include "cli/EntryArgument.h"
#include "cli/EntrySummary.h"
#include "cli/RegistryNames.h"
#include "cli/RegistrySource.h"
#include "cli/ValueText.h"
#include "display/TavPropertyOutlineItem.h"
#include "display/export/EntryFactTexts.h"
#include "display/export/JsonExport.h"
#include "display/export/PropertyLines.h"
#include "store/filter/PropertyLookup.h"

#include <QIODevice>

namespace {
constexpr qsizetype indent = 2;

void writeFact(const QString &title, const QString &text, CommandOutput &output)
{
    if (text.isEmpty())
        return;
    output.addSpaces(indent);
    output.add(title + u':', TextRole::Key);
    output.add(QLatin1Char(' ') + text);
    output.endLine();
}
} // namespace

CommandDescription ShowCommand::description() const
{
    return {
        .name = QStringLiteral("show"),
        .arguments = QStringLiteral("PATH…"),
        .argumentKind = ArgumentKind::Path,
        .minArguments = 1,
        .maxArguments = -1,
        .summary = tr("Show the facts and properties of entries"),
        .details =
            tr("Values are shown as in the window, in the formats that you chose there. With "
               "--property the exit code is 1 when no entry has the property; a list is "
               "printed with a line for each of its elements."),
        .options =
            {{QStringLiteral("property"), QStringLiteral("KEY[/KEY]"),
              tr("Print the value of this property alone, such as vendor or "
                 "power/runtime_status."),
              ArgumentKind::Key},
             {QStringLiteral("raw"),
              {},
              tr("Show values as the host wrote them: no formats, units or names of encodings. "
                 "Data is hexadecimal; with --property it is written as it is, unless the "
                 "output is a terminal.")}},
        .examples = {{QStringLiteral("show eth0"), tr("All that is known of a network interface")},
                     {QStringLiteral("show /sys/class/net/eth0 --property mtu"), tr("One value")},
                     {QStringLiteral("show card0-HDMI-A-1 --property edid --raw > edid.bin"),
                      tr("The data of a monitor, in a file")}}};
}

ExitCode ShowCommand::run(const CommandInput &input, RegistrySource &source, CommandOutput &output)
{
    isRaw_ = input.isSet("raw");
    TavDataStore &store = source.store(RegistrySource::Need::Structure);
    output.describe(store);
    planes_ = store.registryPlanes();
    std::vector<TavRegistryEntry *> entries;
    for (const QString &argument : input.arguments()) {
        const EntryArgument chosen(store, argument);
        entries.insert(entries.end(), chosen.entries().begin(), chosen.entries().end());
    }
    source.readWhole(entries);
    const bool isOneValue = input.isSet("property");
    if (!isOneValue)
        store.lookUpDeviceNamesNow(entries);
    bool isFirst = true;
    bool isFound = false;
    for (TavRegistryEntry *const entry : entries) {
        if (isOneValue) {
            isFound = writeValues(*entry, input.value("property"), output) || isFound;
            continue;
        }
        isFound = true;
        if (!output.isText()) {
            writeJson(*entry, output);
            continue;
        }
        if (!std::exchange(isFirst, false))
            output.endLine();
        writeText(*entry, output);
    }
    return isFound ? ExitCode::Found : ExitCode::Nothing;
}

void ShowCommand::writeText(TavRegistryEntry &entry, CommandOutput &output) const
{
    output.add(entry.nameAtLocationInPlane(RegistryNames::servicePlane), TextRole::Name);
    output.endLine();
    for (const QString &plane : planes_) {
        for (const QString &path : EntrySummary::paths(entry, plane))
            writeFact(EntryFactTexts::title(EntryFactTexts::Fact::Path), path, output);
    }
    writeFacts(entry, output);
    writeProperties(entry, output);
}

void ShowCommand::writeFacts(TavRegistryEntry &entry, CommandOutput &output)
{
    using enum EntryFactTexts::Fact;
    for (const auto fact : {KernelPath, DeviceNode, Device, Inheritance, Bundle, Service, State,
                            BusyCount, RetainCount, Identifier, Terminated})
        writeFact(EntryFactTexts::title(fact), EntryFactTexts::text(fact, entry, {}), output);
}

void ShowCommand::writeProperties(const TavRegistryEntry &entry, CommandOutput &output) const
{
    const PropertyRef tree = entry.copyOfProperties(TavPropertyOutlineItem::staticPropertyClass());
    if (!tree || tree->numberOfChildren() == 0)
        return;
    output.addSpaces(indent);
    output.add(tr("Properties:"), TextRole::Key);
    output.endLine();
    PropertyLines::forEach(*tree, [&](const PropertyLines::Line &line) {
        output.addSpaces(indent * std::min(line.level + 2, CommandOutput::maxLevel));
        output.add(line.name, TextRole::Key);
        if (line.property.isCollection())
            output.add(tr(" (%1)").arg(line.property.displayValue().text()), TextRole::Detail);
        else
            output.add(QStringLiteral(" = ") + (isRaw_ ? RawText::of(line.property.value())
                                                       : line.property.displayValue().text()));
        output.endLine();
    });
}

void ShowCommand::writeJson(TavRegistryEntry &entry, CommandOutput &output)
{
    output.addResult([&](JsonWriter &json) { JsonExport::addEntry(json, entry); });
}

bool ShowCommand::writeValues(const TavRegistryEntry &entry, const QString &key,
                              CommandOutput &output) const
{
    const QStringList keys = key.split(u'/', Qt::SkipEmptyParts);
    RegistryValue made;
    const auto found = keys.isEmpty()
                           ? PropertyLookup::Values()
                           : PropertyLookup::find(PropertyLookup::tableOf(entry, made), keys);
    QStringList lines;
    for (const RegistryValue *const value : found) {
        if (!output.isText()) {
            output.addResult([&](JsonWriter &json) {
                json.member(QLatin1String("id"), QString::number(entry.entryTag()));
                json.member(QLatin1String("path"), EntrySummary::path(entry, planes_.value(0)));
                json.key(QLatin1String("value"));
                json.value(*value);
            });
        } else if (isRaw_ && value->type() == RegistryValue::Type::Data &&
                   !output.terminal().isTerminal) {
            output.flush();
            output.device().write(value->toData());
        } else if (isRaw_) {
            lines += RawText::linesOf(*value);
        }
    }
    if (output.isText() && !isRaw_ && !found.isEmpty())
        lines = ValueText::shownLines(entry, keys);
    for (const QString &line : lines) {
        output.add(line);
        output.endLine();
    }
    return !found.isEmpty();
}
