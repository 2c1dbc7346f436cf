// SPDX-License-Identifier: Apache-2.0
#include "cli/commands/CheckCommand.h"

#include "checks/CheckList.h"
#include "checks/Measurement.h"
#include "cli/CommandInput.h"
#include "cli/CommandOutput.h"
#include "cli/EntrySummary.h"
#include "cli/RegistryNames.h"
#include "cli/RegistrySource.h"
#include "model/linux/KernelModules.h"

#include <QEventLoop>

using namespace RegistryNames;

namespace {
const QStringList &severityWords()
{
    static const QStringList words{QStringLiteral("note"), QStringLiteral("warning"),
                                   QStringLiteral("error")};
    return words;
}

QString wordOf(Severity severity)
{
    return severityWords().at(static_cast<int>(severity));
}

TextRole roleOf(Severity severity)
{
    switch (severity) {
    case Severity::Error:
        return TextRole::Gone;
    case Severity::Warning:
        return TextRole::Changed;
    default:
        return TextRole::Detail;
    }
}

QStringList allIds()
{
    QStringList ids;
    for (const auto &check : CheckList::all())
        ids.append(check->description().id);
    return ids;
}
} // namespace

CommandDescription CheckCommand::description() const
{
    return {
        .name = QStringLiteral("check"),
        .arguments = tr("[SOURCE]"),
        .argumentKind = ArgumentKind::File,
        .maxArguments = 1,
        .summary = tr("Say what looks wrong"),
        .details =
            tr("SOURCE is a snapshot or a sysfs tree; without it, this machine is looked at. Notes "
               "are facts worth knowing, warnings need a look, errors need something done. The "
               "exit code is 0 without warnings and errors, 1 with warnings, 2 with errors, 3 when "
               "nothing could be looked at."),
        .options =
            {{QStringLiteral("severity"), QStringLiteral("LEAST"),
              tr("Print findings of this severity or worse: note, warning or error."),
              ArgumentKind::Choice, severityWords()},
             {QStringLiteral("only"), QStringLiteral("ID,…"), tr("Make these checks alone."),
              ArgumentKind::Choices, allIds()},
             {QStringLiteral("skip"), QStringLiteral("ID,…"), tr("Leave these checks out."),
              ArgumentKind::Choices, allIds()},
             {QStringLiteral("measure"),
              {},
              tr("Also read the values of sensors, fans and batteries, and the counters of network "
                 "interfaces twice, which can take seconds.")},
             {QStringLiteral("modules"), QStringLiteral("DIR"),
              tr("Look for modules of devices without a driver in this folder, such as "
                 "/lib/modules/6.1.0. Otherwise those of the running kernel are known, for this "
                 "machine alone."),
              ArgumentKind::File},
             {QStringLiteral("nagios"),
              {},
              tr("Print one line with performance data, as plug-ins of monitoring programs "
                 "do.")},
             {QStringLiteral("list"), {}, tr("Explain every check, and look at nothing.")}},
        .examples = {{QStringLiteral("check"), tr("What is wrong with this machine")},
                     {QStringLiteral("check server.vandrel --severity warning"),
                      tr("What was wrong with another, without the notes")},
                     {QStringLiteral("check --nagios"), tr("For a monitoring program")}}};
}

ExitCode CheckCommand::run(const CommandInput &input, RegistrySource &source, CommandOutput &output)
{
    if (input.isSet("list")) {
        if (!output.isText())
            output.describe(source.store(RegistrySource::Need::Structure));
        list(output);
        return ExitCode::Good;
    }
    const Severity least = leastSeverity(input);
    const QString argument = input.arguments().value(0);
    const auto named = argument.isNull() ? nullptr : RegistrySource::named(argument);
    const CheckRun::Result result = look(input, named ? *named : source);
    if (input.isSet("nagios"))
        writeStatusLine(result, output);
    else if (output.isText())
        writeText(result, least, output);
    else
        writeJson(result, least, output);
    return result.count(Severity::Error) > 0     ? ExitCode::Errors
           : result.count(Severity::Warning) > 0 ? ExitCode::Warnings
                                                 : ExitCode::Good;
}

CheckRun::Result CheckCommand::look(const CommandInput &input, RegistrySource &source)
{
    const CheckRun checks(checkIds(input, "only"), checkIds(input, "skip"));
    try {
        store_ = &source.store(RegistrySource::Need::Properties);
    } catch (const CommandError &error) {
        throw CommandError{error.message, ExitCode::CouldNotLook};
    }
    const bool measures = input.isSet("measure");
    if (measures && source.isSnapshot())
        throw CommandError{tr("Nothing can be measured in a snapshot."), ExitCode::CouldNotLook};
    CheckedRegistry registry;
    registry.setMachine(*store_);
    if (input.isSet("modules"))
        registry.setModules(modulesIn(input.value("modules")));
    if (!measures) {
        registry.add(*store_);
        return checks.over(registry);
    }
    Measurement measurement(source.service(), store_->registryEntries());
    QEventLoop loop;
    QObject::connect(&measurement, &Measurement::finished, &loop, &QEventLoop::quit);
    measurement.start();
    loop.exec();
    for (const EntryRef &entry : store_->registryEntries())
        registry.add(*entry, measurement.tables().value(entry->entryTag()));
    registry.finish();
    return checks.over(registry);
}

std::shared_ptr<const ModuleCatalog> CheckCommand::modulesIn(const QString &folder)
{
    auto modules = std::make_shared<KernelModules>(folder);
    if (!modules->hasIndexes())
        throw CommandError{tr("“%1” has no modules.alias.bin, which depmod makes.").arg(folder),
                           ExitCode::CouldNotLook};
    return modules;
}

QStringList CheckCommand::checkIds(const CommandInput &input, const char *option)
{
    return input.value(option).split(u',', Qt::SkipEmptyParts);
}

Severity CheckCommand::leastSeverity(const CommandInput &input)
{
    return input.isSet("severity")
               ? static_cast<Severity>(severityWords().indexOf(input.value("severity")))
               : Severity::Note;
}

void CheckCommand::list(CommandOutput &output)
{
    for (const auto &check : CheckList::all()) {
        const CheckDescription its = check->description();
        if (!output.isText()) {
            output.addResult([&](JsonWriter &json) {
                json.member(QLatin1String("check"), its.id);
                json.member(QLatin1String("severity"), wordOf(its.severity));
                json.member(QLatin1String("title"), its.title);
                json.member(QLatin1String("explanation"), its.explanation);
                json.member(QLatin1String("nextStep"), its.nextStep);
                json.member(QLatin1String("reading"), its.reading);
            });
            continue;
        }
        output.add(its.id, TextRole::Name);
        output.add(QStringLiteral("  ") + wordOf(its.severity), roleOf(its.severity));
        output.endLine();
        for (const QString &line : {its.title, its.explanation, its.nextStep}) {
            output.addSpaces(4);
            output.add(line);
            output.endLine();
        }
        for (const QString &document : its.reading) {
            output.addSpaces(4);
            output.add(document, TextRole::Detail);
            output.endLine();
        }
    }
}

QString CheckCommand::pathOf(quint64 tag) const
{
    const TavRegistryEntry *const entry = store_->entryWithTag(tag);
    if (!entry)
        return {};
    const QString path = EntrySummary::path(*entry, servicePlane);
    return path.isNull() ? entry->kernelPath() : path;
}

void CheckCommand::writeText(const CheckRun::Result &result, Severity least,
                             CommandOutput &output) const
{
    constexpr int wordWidth = 9;
    for (const Finding &finding : result.findings) {
        if (finding.severity < least)
            continue;
        const CheckDescription &check = CheckList::describe(finding.check);
        output.add(wordOf(finding.severity).leftJustified(wordWidth), roleOf(finding.severity));
        output.add(pathOf(finding.entryTag), TextRole::Name);
        output.endLine();
        output.addSpaces(wordWidth);
        output.add(finding.detail.isEmpty() ? check.title
                                            : check.title + QStringLiteral(": ") + finding.detail);
        output.add(QStringLiteral("  ") + finding.check, TextRole::Detail);
        output.endLine();
    }
    for (const QString &id : result.failed) {
        output.add(tr("The check %1 gave up.").arg(id));
        output.endLine();
    }
}

void CheckCommand::writeJson(const CheckRun::Result &result, Severity least,
                             CommandOutput &output) const
{
    output.describe(*store_);
    for (const Finding &finding : result.findings) {
        if (finding.severity < least)
            continue;
        const CheckDescription &check = CheckList::describe(finding.check);
        output.addResult([&](JsonWriter &json) {
            json.member(QLatin1String("check"), finding.check);
            json.member(QLatin1String("severity"), wordOf(finding.severity));
            if (const TavRegistryEntry *const entry = store_->entryWithTag(finding.entryTag))
                EntrySummary::addMembers(json, *entry, servicePlane);
            json.member(QLatin1String("properties"), finding.properties);
            json.member(QLatin1String("title"), check.title);
            json.member(QLatin1String("detail"),
                        finding.detail.isEmpty() ? QString() : finding.detail);
            json.member(QLatin1String("explanation"), check.explanation);
            json.member(QLatin1String("nextStep"), finding.nextStep);
        });
    }
}

void CheckCommand::writeStatusLine(const CheckRun::Result &result, CommandOutput &output)
{
    const std::size_t errors = result.count(Severity::Error);
    const std::size_t warnings = result.count(Severity::Warning);
    const std::size_t notes = result.count(Severity::Note);
    const QString word = errors > 0     ? QStringLiteral("CRITICAL")
                         : warnings > 0 ? QStringLiteral("WARNING")
                                        : QStringLiteral("OK");
    QStringList titles;
    for (const Finding &finding : result.findings) {
        const QString title = CheckList::describe(finding.check).title;
        if (finding.severity != Severity::Note && !titles.contains(title))
            titles.append(title);
    }
    // Scripts read it, so it is not translated; "|" begins the performance data.
    output.add(QStringLiteral("VANDREL %1 - %2 errors, %3 warnings, %4 notes%5")
                   .arg(word)
                   .arg(errors)
                   .arg(warnings)
                   .arg(notes)
                   .arg(titles.isEmpty() ? QString() : QStringLiteral(": ") + titles.join(u';'))
                   .replace(u'|', u'/'));
    output.addTrusted(QStringLiteral(" | errors=%1;;1;0 warnings=%2;1;;0 notes=%3;;;0")
                          .arg(errors)
                          .arg(warnings)
                          .arg(notes));
    output.endLine();
}
