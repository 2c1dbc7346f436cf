#pragma once

#include "platform/desktop/Theme.h"

#include <QStringList>

// What the program is asked to do on its command line.
struct CommandLine
{
    enum class Action { Run, Capture, ShowText, Fail };

    // Arguments begin with the program's name. Needs no application object.
    static CommandLine parse(const QStringList &arguments);

    Action action = Action::Run;
    QString text; // to be shown: help and version on standard output, a failure on standard error
    QString sysfsRoot;
    QStringList files;             // documents to open; none: a new one
    bool isForRunningCopy = false; // whether a copy that runs may open them instead
    std::optional<Theme> theme;    // none: the preferred one
    QString plane;                 // null: the preferred one
    QString selectedPath;          // null: the registry's root
    QString screenshotFile;        // null: none
    QString captureFile;           // "-": standard output
};
