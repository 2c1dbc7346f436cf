// SPDX-License-Identifier: Apache-2.0
#include "cli/HelpText.h"

#include "cli/CommandInput.h"
#include "cli/CommandList.h"
#include "cli/ExitCode.h"

namespace {
constexpr qsizetype width = 79;
constexpr qsizetype indentation = 2;

// Lines of words, without cutting any.
QString wrapped(const QString &text, qsizetype indent)
{
    const QString margin(indent, u' ');
    QString lines;
    QString line = margin;
    for (const QString &word : text.split(u' ', Qt::SkipEmptyParts)) {
        if (line.size() > indent && line.size() + 1 + word.size() > width) {
            lines += line + u'\n';
            line = margin;
        }
        line += (line.size() > indent ? QStringLiteral(" ") : QString()) + word;
    }
    return lines + line + u'\n';
}

// A term, and its explanation beside it or below.
QString item(const QString &term, const QString &text, qsizetype column)
{
    QString lines = QString(indentation, u' ') + term;
    if (lines.size() + indentation > column)
        return lines + u'\n' + wrapped(text, column);
    const QString explanation = wrapped(text, column);
    return lines.leftJustified(column) + explanation.sliced(column);
}

QString heading(const QString &title)
{
    return u'\n' + title + QStringLiteral(":\n");
}

QString options(const std::vector<OptionDescription> &options)
{
    constexpr qsizetype column = 26;
    QString text;
    for (const OptionDescription &option : options)
        text += item(HelpText::optionText(option), option.help, column);
    return text;
}
} // namespace

QString HelpText::summary()
{
    return tr("show the kernel's device registry on a terminal");
}

QString HelpText::details()
{
    return tr(
        "Every command works on the registry of this machine, on a recorded sysfs tree and on "
        "a snapshot. A PATH is a path in a plane (DxService:/virtual/net/lo), a path in the "
        "kernel's tree (/sys/class/net/lo), a device node (/dev/sda), a kernel name (sda, "
        "0000:02:00.0), a modalias or a registry ID. Nothing is ever changed.");
}

QString HelpText::usage()
{
    return tr("vandrel-cli COMMAND [OPTION…] [ARGUMENT…]");
}

QString HelpText::usage(const CommandDescription &description)
{
    QString usage = QStringLiteral("vandrel-cli %1 [%2]").arg(description.name, tr("OPTION…"));
    if (!description.arguments.isNull())
        usage += u' ' + description.arguments;
    return usage;
}

QString HelpText::optionText(const OptionDescription &option)
{
    QString text = QStringLiteral("--") + option.name;
    if (!option.value.isNull())
        text += u' ' + option.value;
    return text;
}

std::vector<OptionDescription> HelpText::commonOptions(const CommandDescription &description)
{
    std::vector<OptionDescription> options = CommandInput::commonOptions();
    std::erase_if(options, [&](const OptionDescription &option) {
        return std::any_of(description.options.begin(), description.options.end(),
                           [&](const auto &own) { return own.name == option.name; });
    });
    return options;
}

std::vector<OptionDescription> HelpText::programOptions()
{
    return {{QStringLiteral("help"), {}, tr("Show this help.")},
            {QStringLiteral("version"), {}, tr("Show the version.")}};
}

std::vector<HelpText::Exit> HelpText::exitCodes()
{
    return {{static_cast<int>(ExitCode::Found),
             tr("something was found or done; compared registries are the same")},
            {static_cast<int>(ExitCode::Nothing),
             tr("there was nothing to find; compared registries differ")},
            {static_cast<int>(ExitCode::Failed),
             tr("something failed; a line on standard error says what")},
            {static_cast<int>(ExitCode::WrongUsage), tr("the command line is wrong")}};
}

QString HelpText::ofProgram()
{
    constexpr qsizetype column = 12;
    QString text = tr("Usage: %1").arg(usage()) + u'\n';
    text += wrapped(summary().left(1).toUpper() + summary().mid(1) + u'.', 0);
    text += heading(tr("Commands"));
    for (const CommandDescription &description : CommandList::descriptions())
        text += item(description.name, description.summary, column);
    text += u'\n' + wrapped(details(), 0);
    text += heading(tr("Options"));
    text += options(programOptions());
    text += u'\n' + wrapped(tr("\"vandrel-cli COMMAND --help\" explains a command."), 0);
    return text;
}

QString HelpText::ofCommand(const CommandDescription &description)
{
    QString text = tr("Usage: %1").arg(usage(description)) + u'\n';
    text += wrapped(description.summary + u'.', 0);
    if (!description.details.isEmpty())
        text += u'\n' + wrapped(description.details, 0);
    if (!description.options.empty())
        text += heading(tr("Options")) + options(description.options);
    text += heading(tr("Options of every command")) + options(commonOptions(description));
    text += heading(tr("Examples"));
    for (const CommandExample &example : description.examples) {
        text += wrapped(example.purpose + u':', indentation);
        text += QStringLiteral("    vandrel-cli ") + example.arguments + u'\n';
    }
    return text;
}
