// SPDX-License-Identifier: Apache-2.0
#include "cli/Program.h"

#include "cli/CommandInput.h"
#include "cli/CommandList.h"
#include "cli/CommandOutput.h"
#include "cli/Completion.h"
#include "cli/HelpText.h"
#include "cli/ManualPage.h"
#include "cli/NearestText.h"
#include "cli/Pager.h"
#include "cli/RegistrySource.h"
#include "display/TavPropertyOutlineItem.h"
#include "display/export/EscapedText.h"
#include "platform/preferences/PreferenceKeys.h"
#include "platform/preferences/PreferencesStore.h"

#include <QFile>
#include <QLoggingCategory>
#include <cstdio>
#include <optional>
#include <unistd.h>

namespace {
ExitCode print(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
    if (std::fflush(stdout) != 0)
        throw CommandError{Program::tr("The output failed.")};
    return ExitCode::Found;
}

CommandOutput::Format formatOf(const CommandInput &input)
{
    const QString format = input.value("format");
    if (format == QLatin1String("json"))
        return CommandOutput::Format::Json;
    return format == QLatin1String("ndjson") ? CommandOutput::Format::JsonLines
                                             : CommandOutput::Format::Text;
}

// The formats of values are the user's, as in the window.
void setUpDisplay()
{
    PreferencesStore::watchNoFiles(); // ending a watch takes the kernel 15 ms
    PreferencesStore::standard().registerDefaults(PreferenceKeys::defaults());
    TavRegistryEntry::setPropertyClass(TavPropertyOutlineItem::staticPropertyClass());
}
} // namespace

ExitCode Program::run(const QStringList &arguments)
{
    // Commands report in one line why a snapshot cannot be read.
    QLoggingCategory::setFilterRules(QStringLiteral("vandrel.store=false"));
    try {
        return runCommand(arguments);
    } catch (const CommandError &error) {
        std::fprintf(stderr, "vandrel-cli: %s\n", qUtf8Printable(escapedText(error.message)));
        return error.code;
    }
}

ExitCode Program::runCommand(const QStringList &arguments)
{
    const QString name = arguments.value(0);
    if (name.isNull())
        throw CommandError{tr("There is no command. \"vandrel-cli --help\" lists them."),
                           ExitCode::WrongUsage};
    if (name == QLatin1String("--version"))
        return print(QStringLiteral("vandrel-cli %1\n").arg(QLatin1String(VANDREL_VERSION)));
    if (name == QLatin1String("--help") || name == QLatin1String("-h") ||
        name == QLatin1String("help"))
        return printHelp(arguments.mid(1));
    if (name == QLatin1String("--manual"))
        return print(ManualPage::ofThisProgram());
    if (name == QLatin1String("--complete")) // called by the completions of shells
        return print(Completion::candidates(arguments.mid(1)).join(u'\n') + u'\n');
    const auto command = CommandList::make(name);
    if (!command)
        throw unknownCommand(name);
    return perform(*command, arguments.mid(1));
}

CommandError Program::unknownCommand(const QString &name)
{
    QStringList names = CommandList::names();
    for (const OptionDescription &option : HelpText::programOptions())
        names.append(QStringLiteral("--") + option.name);
    const QString nearest = NearestText::among(names, name);
    const QString problem = tr("There is no command %1").arg(name);
    return {nearest.isNull() ? problem : tr("%1. The nearest is %2").arg(problem, nearest),
            ExitCode::WrongUsage};
}

ExitCode Program::printHelp(const QStringList &arguments)
{
    if (arguments.isEmpty())
        return print(HelpText::ofProgram());
    const auto command = CommandList::make(arguments.constFirst());
    if (!command)
        throw unknownCommand(arguments.constFirst());
    return print(HelpText::ofCommand(command->description()));
}

ExitCode Program::perform(Command &command, const QStringList &arguments)
{
    const CommandDescription description = command.description();
    const CommandInput input(description, arguments);
    if (input.isSet("help"))
        return print(HelpText::ofCommand(description));
    const Terminal terminal = Terminal::ofStandardOutput(input.value("color"));
    const auto format = formatOf(input);
    Pager pager; // left last
    if (terminal.isTerminal && description.isPaged && format == CommandOutput::Format::Text &&
        !input.isSet("no-pager"))
        pager.start();
    setUpDisplay();
    QFile device;
    if (!device.open(STDOUT_FILENO, QIODevice::WriteOnly | QIODevice::Unbuffered))
        throw CommandError{device.errorString()};
    CommandOutput output(device, terminal, format, description.name);
    // Static: main() ends the process without freeing the registry, which takes a while.
    static std::optional<RegistrySource> source;
    const ExitCode code = command.run(input, source.emplace(input), output);
    if (description.writesResults)
        output.finish();
    return code;
}
