// SPDX-License-Identifier: Apache-2.0
#include "cli/CommandInput.h"

#include "cli/CommandError.h"
#include "cli/HelpText.h"
#include "cli/NearestText.h"

namespace {
CommandError usageError(const QString &message)
{
    return {message, ExitCode::WrongUsage};
}

CommandError unknownChoice(const QString &option, const QString &word, const QStringList &choices)
{
    return usageError(CommandInput::tr("--%1 is one of %2, not \"%3\"")
                          .arg(option, choices.join(QLatin1String(", ")), word));
}

CommandError notANumber(const char *option, const QString &value)
{
    return usageError(CommandInput::tr("--%1 needs a number of 0 or more, not \"%2\"")
                          .arg(QString::fromLatin1(option), value));
}
} // namespace

const std::vector<OptionDescription> &CommandInput::commonOptions()
{
    static const std::vector<OptionDescription> options{
        {QStringLiteral("file"), QStringLiteral("FILE"),
         tr("Read this snapshot, or one from standard input for \"-\", instead of the registry."),
         ArgumentKind::File},
        {QStringLiteral("sysfs"), QStringLiteral("DIR"),
         tr("Read the registry from this sysfs tree instead of /sys."), ArgumentKind::Folder},
        {QStringLiteral("format"),
         QStringLiteral("FORMAT"),
         tr("Write text, one JSON document (json) or a JSON object on each line (ndjson)."),
         ArgumentKind::Choice,
         {QStringLiteral("text"), QStringLiteral("json"), QStringLiteral("ndjson")}},
        {QStringLiteral("color"),
         QStringLiteral("WHEN"),
         tr("Use colours: auto (on a terminal, unless NO_COLOR is set), always or never."),
         ArgumentKind::Choice,
         {QStringLiteral("auto"), QStringLiteral("always"), QStringLiteral("never")}},
        {QStringLiteral("no-pager"), {}, tr("Do not show long output in a pager.")},
        {QStringLiteral("help"), {}, tr("Show the help of the command.")},
    };
    return options;
}

CommandInput::CommandInput(const CommandDescription &description, const QStringList &arguments)
{
    for (const OptionDescription &option : description.options)
        add(option);
    for (const OptionDescription &option : HelpText::commonOptions(description))
        add(option);
    const bool isUnderstood = parser_.parse(QStringList{description.name} + arguments);
    if (isSet("help"))
        return;
    if (!isUnderstood) {
        const QStringList unknown = parser_.unknownOptionNames();
        QStringList names;
        for (const OptionDescription &option : description.options)
            names.append(option.name);
        for (const OptionDescription &option : commonOptions())
            names.append(option.name);
        const QString nearest =
            unknown.isEmpty() ? QString() : NearestText::among(names, unknown.constFirst());
        const QString problem = parser_.errorText().section(u'\n', 0, 0);
        throw usageError(nearest.isNull() ? problem
                                          : tr("%1 Did you mean --%2?").arg(problem, nearest));
    }
    check(description);
}

void CommandInput::add(const OptionDescription &option)
{
    parser_.addOption({option.name, option.help, option.value});
}

void CommandInput::check(const CommandDescription &description) const
{
    const qsizetype count = arguments().size();
    if (count < description.minArguments)
        throw usageError(tr("%1 needs %2").arg(description.name, description.arguments));
    if (description.maxArguments >= 0 && count > description.maxArguments)
        throw usageError(tr("Unexpected argument: %1").arg(arguments()[description.maxArguments]));
    const auto common = HelpText::commonOptions(description);
    for (const auto *options : {&description.options, &common}) {
        for (const OptionDescription &option : *options) {
            if (!parser_.isSet(option.name))
                continue;
            if (option.kind == ArgumentKind::Choice &&
                !option.choices.contains(parser_.value(option.name)))
                throw unknownChoice(option.name, parser_.value(option.name), option.choices);
            choices(option); // checks them
        }
    }
    if (isSet("file") && isSet("sysfs"))
        throw usageError(tr("--file and --sysfs exclude each other"));
}

QStringList CommandInput::choices(const OptionDescription &option) const
{
    if (option.kind != ArgumentKind::Choices || !parser_.isSet(option.name))
        return option.choices;
    const QStringList words = parser_.value(option.name).split(u',', Qt::SkipEmptyParts);
    for (const QString &word : words) {
        if (!option.choices.contains(word))
            throw unknownChoice(option.name, word, option.choices);
    }
    if (words.isEmpty())
        throw unknownChoice(option.name, {}, option.choices);
    return words;
}

std::optional<double> CommandInput::number(const char *option, double most) const
{
    if (!isSet(option))
        return std::nullopt;
    bool isNumber = false;
    const double number = value(option).toDouble(&isNumber);
    if (!isNumber || !(number >= 0 && number <= most))
        throw notANumber(option, value(option));
    return number;
}

std::optional<quint32> CommandInput::wholeNumber(const char *option) const
{
    if (!isSet(option))
        return std::nullopt;
    bool isNumber = false;
    const quint32 number = value(option).toUInt(&isNumber);
    if (!isNumber)
        throw notANumber(option, value(option));
    return number;
}
