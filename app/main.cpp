// SPDX-License-Identifier: Apache-2.0
#include "app/CaptureCommand.h"
#include "app/CommandLine.h"
#include "app/RunningInstance.h"
#include "app/Startup.h"
#include "app/TavApplicationDelegate.h"
#include "app/ThemeController.h"
#include "model/RegistryService.h"
#include "platform/desktop/DesktopRunLoop.h"

#include <QApplication>
#include <QFileInfo>
#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {
constexpr int wrongCommandLine = 64; // conventional; other codes report how a capture failed

int fail(const QString &message, int code = EXIT_FAILURE)
{
    std::fprintf(stderr, "vandrel: %s\n", qUtf8Printable(message));
    return code;
}

QStringList argumentsOf(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

// Qt would abort without a display.
bool hasDisplay()
{
    const auto names = {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"};
    return std::any_of(names.begin(), names.end(),
                       [](const char *name) { return !qEnvironmentVariableIsEmpty(name); });
}

bool isHandedOver(int &argc, char **argv, const CommandLine &line)
{
    if (!line.isForRunningCopy || !hasDisplay())
        return false;
    const QCoreApplication application(argc, argv); // needed for the socket
    QStringList files;
    for (const QString &file : line.files)
        files.append(QFileInfo(file).absoluteFilePath());
    return RunningInstance::handOver(files);
}

int run(QApplication &application, const CommandLine &line,
        std::unique_ptr<RegistryService> service)
{
    const ThemeController theme(line.theme);
    Startup::setUpApplication();
    const DesktopRunLoop runLoop;
    TavApplicationDelegate delegate(std::move(service));
    QObject::connect(&delegate, &TavApplicationDelegate::pictureSaved, &application,
                     [] { QApplication::exit(); });
    QObject::connect(&delegate, &TavApplicationDelegate::pictureFailed, &application,
                     [](const QString &message) { QApplication::exit(fail(message)); });
    if (const StartResult result = delegate.start(line); !result.isRunning())
        return result.status == StartResult::Status::Cancelled ? EXIT_SUCCESS
                                                               : fail(result.message);
    RunningInstance instance;
    QObject::connect(&instance, &RunningInstance::filesReceived, &delegate,
                     &TavApplicationDelegate::openFilesOfOtherCopy);
    if (line.screenshotFile.isNull()) // else the program quits soon
        instance.listen();
    return QApplication::exec();
}
} // namespace

int main(int argc, char **argv)
{
    const CommandLine line = CommandLine::parse(argumentsOf(argc, argv));
    if (line.action == CommandLine::Action::ShowText) {
        std::printf("%s\n", qUtf8Printable(line.text));
        return 0;
    }
    if (line.action == CommandLine::Action::Fail)
        return fail(line.text, wrongCommandLine);

    // Qt must not interpret the options.
    int count = 1;
    if (line.action == CommandLine::Action::Capture) {
        const QCoreApplication application(count, argv);
        return CaptureCommand::run(line);
    }
    if (isHandedOver(count, argv, line))
        return 0;
    // Before connecting to the display, so that a wrong folder is reported without one.
    QString error;
    auto service = TavApplicationDelegate::openRegistry(line, &error);
    if (!service)
        return fail(error);
    if (!hasDisplay())
        return fail(QStringLiteral("There is no display to open a window on. "
                                   "vandrel --capture writes a snapshot without one."));
    QApplication application(count, argv);
    return run(application, line, std::move(service));
}
