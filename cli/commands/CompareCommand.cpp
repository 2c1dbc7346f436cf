// SPDX-License-Identifier: Apache-2.0
#include "cli/commands/CompareCommand.h"

#include "cli/CommandInput.h"
#include "cli/CommandOutput.h"
#include "cli/commands/FindCommand.h"
#include "display/comparison/ComparisonHtml.h"
#include "display/comparison/ComparisonJson.h"
#include "display/comparison/ComparisonText.h"
#include "display/comparison/DifferenceWords.h"

#include <QFileInfo>
#include <QIODevice>

namespace {
const auto noReport = [](double) {};
const QString standardInput = QStringLiteral("-");

OptionDescription kindsOption()
{
    QStringList kinds;
    for (const DifferenceKind kind : DifferenceWords::kinds())
        kinds.append(DifferenceWords::identifier(kind));
    return {QStringLiteral("only"), QStringLiteral("KINDS"),
            CompareCommand::tr("Print these differences, with commas between them: %1.")
                .arg(kinds.join(QLatin1String(", "))),
            ArgumentKind::Choices, kinds};
}

TextRole roleOf(ComparisonText::Role role)
{
    switch (role) {
    case ComparisonText::Role::Detail:
        return TextRole::Detail;
    case ComparisonText::Role::Added:
        return TextRole::New;
    case ComparisonText::Role::Removed:
        return TextRole::Gone;
    case ComparisonText::Role::Changed:
        return TextRole::Changed;
    case ComparisonText::Role::Plain:
        break;
    }
    return TextRole::Plain;
}
} // namespace

CommandDescription CompareCommand::description() const
{
    return {
        .name = QStringLiteral("compare"),
        .arguments = tr("BEFORE [AFTER]"),
        .argumentKind = ArgumentKind::File,
        .minArguments = 1,
        .maxArguments = 2,
        .summary = tr("Print what differs between two registries"),
        .details =
            tr("BEFORE and AFTER are snapshots, folders with a sysfs tree, or \"-\" for a snapshot "
               "from standard input; without AFTER it is the registry as it is now. Entries are "
               "marked as added (+), removed (-), moved (>), renamed (~) or changed (*). What "
               "always changes, such as counters and temperatures, does not count. The exit code "
               "is 0 when nothing differs, 1 when something does and 2 when something failed."),
        .options =
            {{QStringLiteral("format"),
              QStringLiteral("FORMAT"),
              tr("Write text, one JSON document (json), a JSON object on each line (ndjson) or a "
                 "page for a browser (html)."),
              ArgumentKind::Choice,
              {QStringLiteral("text"), QStringLiteral("json"), QStringLiteral("ndjson"),
               QStringLiteral("html")}},
             {QStringLiteral("stat"), {}, tr("Print only the numbers of differences.")},
             {QStringLiteral("full"),
              {},
              tr("Print all properties of what was added or removed, and long values whole.")},
             kindsOption(),
             {QStringLiteral("where"), QStringLiteral("EXPRESSION"),
              tr("Print entries that satisfy a filter expression, before or after."),
              ArgumentKind::Expression},
             {QStringLiteral("volatile"), {}, tr("Count what always changes, too.")},
             {QStringLiteral("ignore"), QStringLiteral("KEY,KEY"),
              tr("Leave out properties with these keys. May be repeated."), ArgumentKind::Key},
             {QStringLiteral("redact"),
              {},
              tr("Replace serial numbers, addresses and the hosts' names.")}},
        .examples = {
            {QStringLiteral("compare before-upgrade.vandrel"), tr("What is different since then")},
            {QStringLiteral("compare one.vandrel two.vandrel --stat"),
             tr("Whether two machines are the same")},
            {QStringLiteral("compare before.vandrel --format html --redact > report.html"),
             tr("A page for a bug report")}}};
}

void CompareCommand::check(const CommandInput &input)
{
    const QStringList arguments = input.arguments();
    const bool hasSource = input.isSet("file") || input.isSet("sysfs");
    if (arguments.size() > 1 && hasSource)
        throw CommandError{tr("AFTER excludes --file and --sysfs"), ExitCode::WrongUsage};
    const qsizetype inputs =
        arguments.count(standardInput) + (input.value("file") == standardInput ? 1 : 0);
    if (inputs > 1)
        throw CommandError{tr("Only one of the two can be standard input"), ExitCode::WrongUsage};
    if (input.isSet("stat") && input.isSet("full"))
        throw CommandError{tr("--stat and --full exclude each other"), ExitCode::WrongUsage};
}

ExitCode CompareCommand::run(const CommandInput &input, RegistrySource &source,
                             CommandOutput &output)
{
    check(input);
    if (input.isSet("where"))
        where_ = FindCommand::parse(input.value("where"));
    const QStringList arguments = input.arguments();
    const auto older = RegistrySource::named(arguments[0]);
    const auto other = arguments.size() > 1 ? RegistrySource::named(arguments[1]) : nullptr;
    RegistrySource &newer = other ? *other : source;
    TavDataStore &before = older->store(RegistrySource::Need::Properties);
    TavDataStore &after = newer.store(RegistrySource::Need::Properties);
    if (input.isSet("redact"))
        copies_ = RedactedStore::copiesOf(before, after, noReport);

    SnapshotComparison::Options options;
    options.showsVolatile = input.isSet("volatile");
    for (const QString &keys : input.values("ignore"))
        options.ignoredKeys += keys.split(u',', Qt::SkipEmptyParts);
    const SnapshotComparison comparison(shown(before, copies_.before), shown(after, copies_.after),
                                        options, noReport);
    const ExportedDifferences differences(comparison, nameOf(*older), nameOf(newer),
                                          filterOf(input, before, after), detailOf(input));
    output.describe(comparison.after());
    write(differences, input, output);
    return differences.counts().differences() == 0 ? ExitCode::Same : ExitCode::Different;
}

// A file's name may hold that of the host, and its folder that of the user.
QString CompareCommand::nameOf(const RegistrySource &source) const
{
    if (source.isRunningKernel())
        return tr("live registry");
    const QString name = source.isSnapshot() ? source.file() : source.sysfs();
    if (name == standardInput)
        return tr("standard input");
    return copies_.after ? copies_.after->text(QFileInfo(name).fileName()) : name;
}

const TavDataStore &CompareCommand::shown(const TavDataStore &store,
                                          const std::unique_ptr<RedactedStore> &copy) const
{
    return copy ? copy->store() : store;
}

CompareCommand::Filter CompareCommand::filterOf(const CommandInput &input, TavDataStore &before,
                                                TavDataStore &after) const
{
    Filter filter;
    const QStringList words = input.choices(kindsOption());
    for (const DifferenceKind kind : DifferenceWords::kinds()) {
        if (words.contains(DifferenceWords::identifier(kind)))
            filter.kinds.insert(kind);
    }
    if (!where_)
        return filter;
    Matches matches;
    addMatches(before, *where_, copies_.before.get(), matches);
    addMatches(after, *where_, copies_.after.get(), matches);
    filter.accept = [matches = std::move(matches)](const EntryDifference &difference) {
        return matches.contains(difference.before) || matches.contains(difference.after);
    };
    return filter;
}

// Of the originals: the user knows the values that are replaced.
void CompareCommand::addMatches(TavDataStore &store, const FilterExpression &filter,
                                const RedactedStore *copy, Matches &matches)
{
    for (const TavRegistryEntry *const entry : FindCommand::matches(store, filter))
        matches.insert(copy ? copy->counterpart(*entry) : entry);
}

ExportedDifferences::Detail CompareCommand::detailOf(const CommandInput &input)
{
    using enum ExportedDifferences::Detail;
    if (input.isSet("stat"))
        return Counts;
    return input.isSet("full") ? Whole : Differences;
}

void CompareCommand::write(const ExportedDifferences &differences, const CommandInput &input,
                           CommandOutput &output)
{
    if (!output.isText())
        return writeJson(differences, output);
    if (input.value("format") != QLatin1String("html"))
        return writeText(differences, output);
    if (!ComparisonHtml::write(differences, output.device(), noReport))
        throw CommandError{tr("The output failed: %1").arg(output.device().errorString())};
}

void CompareCommand::writeText(const ExportedDifferences &differences, CommandOutput &output)
{
    ComparisonText::forEachLine(differences, noReport, [&](const ComparisonText::Line &line) {
        for (const auto &part : line)
            output.add(part.text, roleOf(part.role));
        output.endLine();
    });
}

void CompareCommand::writeJson(const ExportedDifferences &differences, CommandOutput &output)
{
    output.addResult([&](JsonWriter &json) {
        json.member(QLatin1String("kind"), QStringLiteral("summary"));
        ComparisonJson::addSummary(json, differences);
    });
    differences.forEach(noReport, [&](const EntryDifference &difference) {
        output.addResult([&](JsonWriter &json) {
            ComparisonJson::addDifference(json, differences, difference);
        });
    });
}
