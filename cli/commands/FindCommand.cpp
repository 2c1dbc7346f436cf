// SPDX-License-Identifier: Apache-2.0
#include "cli/commands/FindCommand.h"

#include "checks/CheckRun.h"
#include "cli/CommandInput.h"
#include "cli/EntryColumn.h"
#include "cli/EntrySummary.h"
#include "cli/RegistryNames.h"
#include "cli/TextTable.h"
#include "display/ShownValueSearch.h"
#include "display/export/ExportedEntries.h"

using namespace RegistryNames;

namespace {
struct Place
{
    QString name;
    FindOption option;
};

const std::vector<Place> &places()
{
    static const std::vector<Place> places{
        {QStringLiteral("name"), FindOption::Name},
        {QStringLiteral("class"), FindOption::Class},
        {QStringLiteral("inheritance"), FindOption::Inheritance},
        {QStringLiteral("bundle"), FindOption::BundleID},
        {QStringLiteral("keys"), FindOption::Keys},
        {QStringLiteral("values"), FindOption::Values},
        {QStringLiteral("states"), FindOption::Special},
        {QStringLiteral("shown"), FindOption::ShownValues},
    };
    return places;
}

OptionDescription placesOption()
{
    QStringList names;
    for (const Place &place : places())
        names.append(place.name);
    return {QStringLiteral("in"), QStringLiteral("PLACES"),
            FindCommand::tr("Look for TEXT in these, with commas between them: %1. Otherwise in "
                            "names and in the class and its superclasses.")
                .arg(names.join(QLatin1String(", "))),
            ArgumentKind::Choices, names};
}
} // namespace

CommandDescription FindCommand::description() const
{
    return {.name = QStringLiteral("find"),
            .arguments = tr("[TEXT]"),
            .maxArguments = 1,
            .summary = tr("Find entries by a text or a condition"),
            .details =
                tr("Prints a path of each entry that has the text, in upper or lower case, and "
                   "that satisfies the expression. The exit code is 1 when there is none."),
            .options = {placesOption(),
                        {QStringLiteral("where"), QStringLiteral("EXPRESSION"),
                         tr("Find entries that satisfy a filter expression, such as "
                            "\"vendor == 0x8086 and not driver\"."),
                         ArgumentKind::Expression},
                        {QStringLiteral("plane"), QStringLiteral("PLANE"),
                         tr("Print paths in this plane, in its order, where an entry is in it; "
                            "otherwise in DxService."),
                         ArgumentKind::Path},
                        {QStringLiteral("count"), {}, tr("Print only the number of entries.")},
                        {QStringLiteral("first"), {}, tr("Print only the first entry.")},
                        {QStringLiteral("print"), QStringLiteral("KEY,KEY"),
                         tr("Print these facts (name, class, inheritance, bundle, state, device, "
                            "node, kernelPath, id) and properties after the path. @class is the "
                            "property of that name."),
                         ArgumentKind::Key}},
            .examples = {{QStringLiteral("find ethernet"), tr("Network cards")},
                         {QStringLiteral("find 0x8086 --in values,shown"),
                          tr("Entries that have the number anywhere")},
                         {QStringLiteral("find --where 'subsystem == \"bus/pci\" and not driver' "
                                         "--print vendor,device"),
                          tr("PCI devices without a driver")}}};
}

FindOptions FindCommand::optionsOf(const QStringList &names)
{
    FindOptions options;
    for (const Place &place : places())
        options.setFlag(place.option, names.contains(place.name));
    return options;
}

FilterExpression FindCommand::parse(const QString &expression)
{
    auto parsed = FilterExpression::parse(expression);
    if (parsed)
        return *parsed;
    const FilterError &error = parsed.error();
    throw CommandError{error.length == 0
                           ? error.message
                           : tr("%1, at character %2: %3")
                                 .arg(error.message, QString::number(error.position + 1),
                                      expression.sliced(error.position, error.length)),
                       ExitCode::WrongUsage};
}

// The states "error" and "warning" are those of what checks find.
void FindCommand::markFindings(TavDataStore &store, const QString &question)
{
    if (!question.contains(QLatin1String("error")) && !question.contains(QLatin1String("warning")))
        return;
    CheckedRegistry registry;
    registry.setMachine(store);
    registry.add(store);
    for (const Finding &finding : CheckRun().over(registry).findings) {
        if (TavRegistryEntry *const entry = store.entryWithTag(finding.entryTag))
            entry->addFinding(finding.severity);
    }
}

EntrySet FindCommand::matches(TavDataStore &store, const FilterExpression &expression)
{
    markFindings(store, expression.text());
    EntrySet found;
    if (!store.runFilter(expression, &found, nullptr))
        throw CommandError{tr("The regular expression takes too long.")};
    return found;
}

ExitCode FindCommand::run(const CommandInput &input, RegistrySource &source, CommandOutput &output)
{
    const bool hasText = !input.arguments().isEmpty();
    if (!hasText && !input.isSet("where"))
        throw CommandError{tr("find needs TEXT or --where"), ExitCode::WrongUsage};
    options_ = input.isSet("in") ? optionsOf(input.choices(placesOption()))
                                 : FindOption::Name | FindOption::Inheritance;
    if (input.isSet("where"))
        filter_ = parse(input.value("where"));
    QStringList columns = input.value("print").split(u',', Qt::SkipEmptyParts);
    columns.removeDuplicates();
    constexpr FindOptions structure =
        FindOption::Name | FindOption::Class | FindOption::Inheritance | FindOption::BundleID;
    const bool needsProperties = filter_ || (options_ & ~structure);
    using Need = RegistrySource::Need;
    TavDataStore &store = source.store(needsProperties ? Need::Properties : Need::Structure);
    output.describe(store);
    plane_ = input.isSet("plane") ? input.value("plane") : servicePlane;
    if (!store.registryPlanes().contains(plane_))
        throw CommandError{tr("There is no plane %1. Planes are: %2")
                               .arg(plane_, store.registryPlanes().join(QLatin1String(", ")))};
    const Entries entries = find(store, input);
    if (input.isSet("count")) {
        output.addCount(entries.size());
    } else {
        if (!needsProperties && EntryColumn::needProperties(columns))
            source.readWhole(entries);
        if (columns.contains(QStringLiteral("device")))
            store.lookUpDeviceNamesNow(entries);
        write(entries, columns, output);
    }
    return entries.empty() ? ExitCode::Nothing : ExitCode::Found;
}

// In the order of the plane.
FindCommand::Entries FindCommand::find(TavDataStore &store, const CommandInput &input) const
{
    const ExportedEntries ordered =
        ExportedEntries::found(store, plane_, matches(store, input.arguments().value(0)));
    Entries entries;
    for (const auto &item : ordered.items()) {
        if (entries.empty() || !input.isSet("first"))
            entries.push_back(const_cast<TavRegistryEntry *>(item.entry));
    }
    return entries;
}

EntrySet FindCommand::matches(TavDataStore &store, const QString &text) const
{
    EntrySet found;
    if (filter_)
        found = matches(store, *filter_);
    if (text.isNull())
        return found;
    if (options_.testFlag(FindOption::Special))
        markFindings(store, text);
    EntrySet withText;
    store.runQuery(text, options_, &withText, nullptr,
                   options_.testFlag(FindOption::ShownValues)
                       ? ShownValueTest(ShownValueSearch(text))
                       : ShownValueTest());
    return filter_ ? found.intersect(withText) : withText;
}

void FindCommand::write(const Entries &entries, const QStringList &columns,
                        CommandOutput &output) const
{
    TextTable table;
    for (const TavRegistryEntry *const entry : entries) {
        if (!output.isText()) {
            writeJson(*entry, columns, output);
            continue;
        }
        TextTable::Row row{{EntrySummary::path(*entry, plane_)}};
        for (const QString &column : columns)
            row.push_back({EntryColumn(column).text(*entry, plane_)});
        table.add(std::move(row));
    }
    table.write(output);
}

void FindCommand::writeJson(const TavRegistryEntry &entry, const QStringList &columns,
                            CommandOutput &output) const
{
    output.addResult([&](JsonWriter &json) {
        EntrySummary::addMembers(json, entry, plane_);
        if (columns.isEmpty())
            return;
        json.key(QLatin1String("values"));
        json.beginObject();
        for (const QString &column : columns)
            EntryColumn(column).addMember(json, entry, plane_);
        json.endObject();
    });
}
