// SPDX-License-Identifier: Apache-2.0
#include "app/CommandLine.h"

#include "cli/ManualPage.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace {
CommandLine failure(const QString &text)
{
    CommandLine line;
    line.action = CommandLine::Action::Fail;
    line.text =
        QCoreApplication::translate("CommandLine", "%1\nSee vandrel --help for the options.")
            .arg(text);
    return line;
}

CommandLine message(const QString &text)
{
    CommandLine line;
    line.action = CommandLine::Action::ShowText;
    line.text = text;
    return line;
}

// The parser takes the program's name from an application object.
QString helpText(const QCommandLineParser &parser, const QString &program)
{
    QByteArray name = program.toLocal8Bit();
    int count = 1;
    char *arguments[] = {name.data(), nullptr};
    std::optional<QCoreApplication> application;
    if (!QCoreApplication::instance())
        application.emplace(count, arguments);
    return parser.helpText().trimmed();
}
class Parser
{
    Q_DECLARE_TR_FUNCTIONS(CommandLine)

public:
    Parser()
    {
        parser_.setApplicationDescription(
            tr("Shows the devices and drivers that the Linux kernel knows of."));
        parser_.addOptions(options());
        parser_.addPositionalArgument(QStringLiteral("FILE"), fileHelp(), tr("[FILE…]"));
    }

    CommandLine parse(const QStringList &arguments);

private:
    QList<QCommandLineOption> options() const
    {
        return {sysfs_,     theme_,   plane_,       select_, screenshot_, capture_,
                newWindow_, compare_, newInstance_, help_,   version_};
    }
    static QString fileHelp()
    {
        return tr("Documents to open instead of this machine's registry. Without options, the "
                  "program that runs already opens them.");
    }
    QString manualPage() const; // of the same texts
    QString valueOrNull(const QCommandLineOption &option) const
    {
        return parser_.isSet(option) ? parser_.value(option) : QString();
    }
    std::optional<Theme> theme() const { return themeNamed(parser_.value(theme_)); }
    bool isForRunningCopy() const;
    QString objectionToCapture() const;

    const QCommandLineOption sysfs_{QStringLiteral("sysfs"),
                                    tr("Read the registry from this sysfs tree."), tr("DIR"),
                                    QStringLiteral("/sys")};
    const QCommandLineOption theme_{QStringLiteral("theme"),
                                    tr("Theme: light, dark or system; overrides the preferences."),
                                    tr("NAME")};
    const QCommandLineOption plane_{QStringLiteral("plane"), tr("Show this plane first."),
                                    tr("NAME")};
    const QCommandLineOption select_{
        QStringLiteral("select"),
        tr("Select the entry at this path, such as \"DxService:/virtual/net/lo\"."), tr("PATH")};
    const QCommandLineOption screenshot_{QStringLiteral("screenshot"),
                                         tr("Save a picture of the window and exit."), tr("FILE")};
    const QCommandLineOption capture_{
        QStringLiteral("capture"),
        tr("Write a snapshot to this file, or to standard output for \"-\", without opening a "
           "window, and exit: with 0 when it is written, 1 when there is no registry to read, 2 "
           "when it cannot be written, 3 when it is written but some devices did not answer, 64 "
           "when the command line is wrong."),
        tr("FILE")};
    const QCommandLineOption newWindow_{
        QStringLiteral("new-window"),
        tr("Open a window on this machine's registry; the program that runs already does so.")};
    const QCommandLineOption compare_{
        QStringLiteral("compare"),
        tr("Compare two snapshots, the FILEs or those chosen in a dialog.")};
    const QCommandLineOption newInstance_{
        QStringLiteral("new-instance"),
        tr("Open the documents here, even if the program runs already.")};
    const QCommandLineOption help_{{QStringLiteral("h"), QStringLiteral("help")},
                                   tr("Show this help.")};
    const QCommandLineOption version_{{QStringLiteral("v"), QStringLiteral("version")},
                                      tr("Show the version.")};
    QCommandLineParser parser_;
};

QString Parser::manualPage() const
{
    ManualPage page(QStringLiteral("vandrel"), tr("explore the kernel's device registry"));
    page.addSection(tr("SYNOPSIS"));
    page.addCommandLine(tr("vandrel [OPTION…] [FILE…]"));
    page.addSection(tr("DESCRIPTION"));
    page.addText(parser_.applicationDescription());
    page.addSection(tr("OPTIONS"));
    page.addItem(QStringLiteral("FILE"), fileHelp());
    for (const QCommandLineOption &option : options()) {
        QStringList names;
        for (const QString &name : option.names())
            names.append((name.size() == 1 ? QStringLiteral("-") : QStringLiteral("--")) + name);
        QString term = names.join(QStringLiteral(", "));
        if (!option.valueName().isEmpty())
            term += u' ' + option.valueName();
        page.addItem(term, option.description());
    }
    page.addSection(tr("SEE ALSO"));
    page.addText(QStringLiteral("vandrel-cli(1)"));
    return page.source();
}

CommandLine Parser::parse(const QStringList &arguments)
{
    if (arguments.mid(1) == QStringList{QStringLiteral("--manual")}) // for the build
        return message(manualPage());
    if (!parser_.parse(arguments))
        return failure(parser_.errorText());
    if (parser_.isSet(help_))
        return message(helpText(parser_, arguments.value(0)));
    if (parser_.isSet(version_))
        return message(QStringLiteral("Vandrel %1").arg(QLatin1String(VANDREL_VERSION)));
    if (parser_.isSet(theme_) && !theme())
        return failure(tr("Unknown theme: %1").arg(parser_.value(theme_)));

    CommandLine line;
    if (parser_.isSet(capture_)) {
        if (const QString objection = objectionToCapture(); !objection.isNull())
            return failure(objection);
        line.action = CommandLine::Action::Capture;
        line.captureFile = parser_.value(capture_);
    }
    line.sysfsRoot = parser_.value(sysfs_);
    line.files = parser_.positionalArguments();
    line.compares = parser_.isSet(compare_);
    if (line.compares && !line.files.isEmpty() && line.files.size() != 2)
        return failure(tr("--compare needs two files, or none to choose them."));
    if (parser_.isSet(newWindow_) && !line.files.isEmpty())
        return failure(tr("--new-window takes no files."));
    line.isForRunningCopy = isForRunningCopy();
    line.theme = theme();
    line.plane = valueOrNull(plane_);
    line.selectedPath = valueOrNull(select_);
    line.screenshotFile = valueOrNull(screenshot_);
    return line;
}

// Only a plain request for files or for a window can go to the running copy.
bool Parser::isForRunningCopy() const
{
    const QStringList options = parser_.optionNames();
    return options == newWindow_.names() ||
           (options.isEmpty() && !parser_.positionalArguments().isEmpty());
}

// Null: no error.
QString Parser::objectionToCapture() const
{
    for (const QCommandLineOption *option :
         {&theme_, &plane_, &select_, &screenshot_, &newWindow_, &compare_, &newInstance_}) {
        if (parser_.isSet(*option))
            return tr("--%1 needs a window, and --capture opens none.")
                .arg(option->names().constFirst());
    }
    if (!parser_.positionalArguments().isEmpty())
        return tr("Unexpected argument: %1").arg(parser_.positionalArguments().constFirst());
    return parser_.value(capture_).isEmpty() ? tr("--capture needs a file.") : QString();
}
} // namespace

CommandLine CommandLine::parse(const QStringList &arguments)
{
    return Parser().parse(arguments);
}
