#include "app/CommandLine.h"

#include <QCommandLineParser>
#include <QCoreApplication>

namespace {
QString tr(const char *text)
{
    return QCoreApplication::translate("CommandLine", text);
}

CommandLine failure(const QString &text)
{
    CommandLine line;
    line.action = CommandLine::Action::Fail;
    line.text = tr("%1\nvandrel --help tells the options.").arg(text);
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
} // namespace

CommandLine CommandLine::parse(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        tr("Shows the devices and drivers that the Linux kernel knows of."));
    const QCommandLineOption sysfs(QStringLiteral("sysfs"),
                                   tr("Read the registry from this sysfs tree."), tr("DIR"),
                                   QStringLiteral("/sys"));
    const QCommandLineOption theme(QStringLiteral("theme"),
                                   tr("Look: light, dark or system, which is the default."),
                                   tr("NAME"), QStringLiteral("system"));
    const QCommandLineOption plane(QStringLiteral("plane"), tr("Show this plane first."),
                                   tr("NAME"));
    const QCommandLineOption select(
        QStringLiteral("select"),
        tr("Select the entry at this path, such as \"DxService:/virtual/net/lo\"."), tr("PATH"));
    const QCommandLineOption screenshot(QStringLiteral("screenshot"),
                                        tr("Save a picture of the window and exit."), tr("FILE"));
    const QCommandLineOption capture(
        QStringLiteral("capture"),
        tr("Write a snapshot to this file, or to standard output for \"-\", without opening a "
           "window, and exit: with 0 when it is written, 1 when there is no registry to read, 2 "
           "when it cannot be written, 64 when the command line is wrong."),
        tr("FILE"));
    const QCommandLineOption help({QStringLiteral("h"), QStringLiteral("help")},
                                  tr("Show this help."));
    const QCommandLineOption version({QStringLiteral("v"), QStringLiteral("version")},
                                     tr("Show the version."));
    parser.addOptions({sysfs, theme, plane, select, screenshot, capture, help, version});

    parser.addPositionalArgument(QStringLiteral("file"),
                                 tr("Documents to open instead of this machine's registry."),
                                 tr("[FILE…]"));

    if (!parser.parse(arguments))
        return failure(parser.errorText());
    if (parser.isSet(help))
        return message(helpText(parser, arguments.value(0)));
    if (parser.isSet(version))
        return message(QStringLiteral("Vandrel %1").arg(QLatin1String(VANDREL_VERSION)));
    const std::optional<Theme> chosen = themeNamed(parser.value(theme));
    if (!chosen)
        return failure(tr("Unknown theme: %1").arg(parser.value(theme)));

    const auto valueOrNull = [&](const QCommandLineOption &option) {
        return parser.isSet(option) ? parser.value(option) : QString();
    };
    CommandLine line;
    if (parser.isSet(capture)) {
        for (const auto &option : {theme, plane, select, screenshot}) {
            if (parser.isSet(option))
                return failure(tr("--%1 needs a window, and --capture opens none.")
                                   .arg(option.names().constFirst()));
        }
        if (!parser.positionalArguments().isEmpty())
            return failure(
                tr("Unexpected argument: %1").arg(parser.positionalArguments().constFirst()));
        if (parser.value(capture).isEmpty())
            return failure(tr("--capture needs a file."));
        line.action = Action::Capture;
        line.captureFile = parser.value(capture);
    }
    line.sysfsRoot = parser.value(sysfs);
    line.files = parser.positionalArguments();
    line.theme = *chosen;
    line.plane = valueOrNull(plane);
    line.selectedPath = valueOrNull(select);
    line.screenshotFile = valueOrNull(screenshot);
    return line;
}
