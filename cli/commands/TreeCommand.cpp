// SPDX-License-Identifier: Apache-2.0
#include "cli/commands/TreeCommand.h"

#include "cli/CommandInput.h"
#include "cli/CommandOutput.h"
#include "cli/EntryArgument.h"
#include "cli/EntrySummary.h"
#include "cli/RegistryNames.h"
#include "cli/RegistrySource.h"
#include "display/export/ExportedEntries.h"

#include <limits>

using namespace RegistryNames;

struct TreeCommand::Row
{
    const TavRegistryEntry *entry;
    quint32 depth;
    bool isRepeated;     // it was listed above, with all below it
    bool isLast = false; // among its siblings
};

CommandDescription TreeCommand::description() const
{
    return {
        .name = QStringLiteral("tree"),
        .arguments = tr("[PLANE | PATH]"),
        .argumentKind = ArgumentKind::Path,
        .maxArguments = 1,
        .summary = tr("Show a plane, or what is below an entry, as a tree"),
        .details = tr("Without an argument: the plane DxService. An entry that is on several "
                      "paths is shown with all below it once; elsewhere \"(see above)\" follows "
                      "its name."),
        .options = {{QStringLiteral("depth"), QStringLiteral("N"),
                     tr("Show no more than N levels below the top.")},
                    {QStringLiteral("classes"), {}, tr("Show the class of each entry.")},
                    {QStringLiteral("ids"), {}, tr("Show the registry ID of each entry.")},
                    {QStringLiteral("names"),
                     {},
                     tr("Show the vendor and model of each device, where a hardware database "
                        "knows them.")}},
        .examples = {{QStringLiteral("tree --names"), tr("All devices, with their names")},
                     {QStringLiteral("tree DxBus --depth 2"), tr("The buses and their devices")},
                     {QStringLiteral("tree /dev/sda"), tr("A disk and its partitions")}}};
}

ExitCode TreeCommand::run(const CommandInput &input, RegistrySource &source, CommandOutput &output)
{
    showsClasses_ = input.isSet("classes");
    showsIDs_ = input.isSet("ids");
    showsNames_ = input.isSet("names");
    constexpr quint32 most = std::numeric_limits<quint32>::max();
    const quint32 depth = input.wholeNumber("depth").value_or(most);
    TavDataStore &store = source.store(RegistrySource::Need::Structure);
    if (showsNames_)
        store.lookUpDeviceNamesNow();
    output.describe(store);
    const QString argument = input.arguments().value(0);
    const EntryArgument top(store, argument.isNull() ? servicePlane : argument);
    const QString plane = top.plane().isNull() ? servicePlane : top.plane();
    for (const TavRegistryEntry *const entry : top.entries()) {
        const std::vector<Row> rows = rowsOf(*entry, plane, store, depth);
        if (output.isText())
            writeText(rows, plane, output);
        else
            writeJson(rows, plane, output);
    }
    return ExitCode::Found;
}

std::vector<TreeCommand::Row> TreeCommand::rowsOf(const TavRegistryEntry &top, const QString &plane,
                                                  const TavDataStore &store, quint32 depth)
{
    std::vector<Row> rows;
    const ExportedEntries subtree = ExportedEntries::subtree(store, plane, top);
    for (const auto &item : subtree.items()) {
        if (item.depth <= depth)
            rows.push_back({item.entry, item.depth, item.isRepeated});
    }
    std::vector<bool> hasLater; // by depth: another row before the next one that is less deep
    for (auto row = rows.rbegin(); row != rows.rend(); ++row) {
        hasLater.resize(row->depth + 1);
        row->isLast = !hasLater[row->depth];
        hasLater[row->depth] = true;
    }
    return rows;
}

void TreeCommand::writeText(const std::vector<Row> &rows, const QString &plane,
                            CommandOutput &output) const
{
    const bool isUtf8 = output.terminal().isUtf8;
    const QString line = isUtf8 ? QStringLiteral("│   ") : QStringLiteral("|   ");
    const QString middle = isUtf8 ? QStringLiteral("├── ") : QStringLiteral("|-- ");
    const QString last = isUtf8 ? QStringLiteral("└── ") : QStringLiteral("`-- ");
    std::vector<bool> isLast;
    for (const Row &row : rows) {
        isLast.resize(row.depth + 1);
        isLast[row.depth] = row.isLast;
        for (quint32 level = 1; level < std::min(row.depth, CommandOutput::maxLevel); ++level)
            output.addTrusted(isLast[level] ? u"    " : QStringView(line));
        if (row.depth > 0)
            output.addTrusted(row.isLast ? last : middle);
        output.add(row.entry->nameAtLocationInPlane(plane), TextRole::Name);
        if (row.isRepeated)
            output.add(QLatin1Char(' ') + tr("(see above)"), TextRole::Detail);
        else
            writeFacts(*row.entry, output);
        output.endLine();
    }
}

void TreeCommand::writeFacts(const TavRegistryEntry &entry, CommandOutput &output) const
{
    if (showsClasses_)
        output.add(QStringLiteral("  ") + entry.DxcoreClass(), TextRole::Key);
    if (showsIDs_)
        output.add(QStringLiteral("  #%1").arg(entry.entryTag()), TextRole::Detail);
    if (showsNames_ && entry.deviceName())
        output.add(QStringLiteral("  ") + entry.deviceName()->description());
}

void TreeCommand::writeJson(const std::vector<Row> &rows, const QString &plane,
                            CommandOutput &output)
{
    QStringList paths; // of the rows above, by depth
    for (const Row &row : rows) {
        paths.resize(row.depth);
        const QString above = paths.value(row.depth - 1);
        // Root and host are "Plane:" and "Plane:/".
        const bool isNamed = row.depth > 0 && above.contains(u'/');
        const QString path =
            isNamed ? above + (above.endsWith(u'/') ? QString() : QStringLiteral("/")) +
                          row.entry->nameAtLocationInPlane(plane)
                    : EntrySummary::path(*row.entry, plane);
        paths.append(path);
        output.addResult([&](JsonWriter &json) {
            json.numberMember(QLatin1String("depth"), row.depth);
            EntrySummary::addMembers(json, *row.entry, plane, path);
            if (row.isRepeated)
                json.flagMember(QLatin1String("isRepeated"), true);
        });
    }
}
