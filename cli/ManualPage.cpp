// SPDX-License-Identifier: Apache-2.0
#include "cli/ManualPage.h"

#include "cli/CommandInput.h"
#include "cli/CommandList.h"
#include "cli/HelpText.h"

ManualPage::ManualPage(const QString &program, const QString &summary)
{
    source_ =
        QStringLiteral(".TH %1 1 \"\" \"Vandrel %2\" \"%3\"\n")
            .arg(escaped(program.toUpper()), QLatin1String(VANDREL_VERSION), tr("User Commands"));
    addSection(tr("NAME"));
    source_ += escaped(program) + QStringLiteral(" \\- ") + escaped(summary) + u'\n';
}

QString ManualPage::escaped(const QString &text)
{
    QString escaped = text;
    escaped.replace(u'\\', QStringLiteral("\\e"));
    escaped.replace(u'-', QStringLiteral("\\-"));
    escaped.replace(u'\'', QStringLiteral("\\(aq"));
    escaped.replace(u'"', QStringLiteral("\\(dq"));
    escaped.replace(u'…', QStringLiteral("..."));
    return escaped.startsWith(u'.') ? QStringLiteral("\\&") + escaped : escaped;
}

void ManualPage::addSection(const QString &title)
{
    source_ += QStringLiteral(".SH %1\n").arg(escaped(title));
}

void ManualPage::addSubsection(const QString &title)
{
    source_ += QStringLiteral(".SS %1\n").arg(escaped(title));
}

void ManualPage::addText(const QString &text)
{
    source_ += QStringLiteral(".PP\n%1\n").arg(escaped(text));
}

void ManualPage::addItem(const QString &term, const QString &text)
{
    source_ += QStringLiteral(".TP\n\\fB%1\\fR\n%2\n").arg(escaped(term), escaped(text));
}

void ManualPage::addCommandLine(const QString &line)
{
    source_ += QStringLiteral(".PP\n.nf\n.RS\n%1\n.RE\n.fi\n").arg(escaped(line));
}

void ManualPage::addOptions(const std::vector<OptionDescription> &options)
{
    for (const OptionDescription &option : options)
        addItem(HelpText::optionText(option), option.help);
}

void ManualPage::addCommand(const CommandDescription &command)
{
    addSubsection(HelpText::usage(command));
    addText(command.summary + u'.');
    if (!command.details.isEmpty())
        addText(command.details);
    addOptions(command.options);
    for (const CommandExample &example : command.examples) {
        addText(example.purpose + u':');
        addCommandLine(QStringLiteral("vandrel-cli ") + example.arguments);
    }
}

QString ManualPage::ofThisProgram()
{
    ManualPage page(QStringLiteral("vandrel-cli"), HelpText::summary());
    page.addSection(tr("SYNOPSIS"));
    page.addCommandLine(HelpText::usage());
    page.addSection(tr("DESCRIPTION"));
    page.addText(HelpText::details());
    page.addOptions(HelpText::programOptions());
    page.addSection(tr("COMMANDS"));
    for (const CommandDescription &command : CommandList::descriptions())
        page.addCommand(command);
    page.addSection(tr("OPTIONS OF EVERY COMMAND"));
    page.addOptions(CommandInput::commonOptions());
    page.addSection(tr("EXIT STATUS"));
    for (const HelpText::Exit &exit : HelpText::exitCodes())
        page.addItem(QString::number(exit.code), exit.meaning);
    page.addSection(tr("ENVIRONMENT"));
    page.addItem(QStringLiteral("VANDREL_PAGER, PAGER"),
                 tr("Shows long output on a terminal; less without them. cat: none."));
    page.addItem(QStringLiteral("NO_COLOR"), tr("No colours, unless --color asks for them."));
    page.addItem(QStringLiteral("COLUMNS"), tr("The width of the terminal."));
    page.addSection(tr("SEE ALSO"));
    page.addText(QStringLiteral("vandrel(1), udevadm(8)"));
    return page.source();
}
