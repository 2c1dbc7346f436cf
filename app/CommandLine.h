// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/desktop/Theme.h"

#include <QStringList>

// The parsed command line.
struct CommandLine
{
    enum class Action { Run, Capture, ShowText, Fail };

    // The arguments include the program's name. Needs no application object.
    static CommandLine parse(const QStringList &arguments);

    Action action = Action::Run;
    QString text; // for standard output (help, version) or standard error (failure)
    QString sysfsRoot;
    QStringList files;             // documents to open; none: a new one
    bool compares = false;         // the files, or others that the user chooses
    bool isForRunningCopy = false; // whether a running copy may open the files or a window
    std::optional<Theme> theme;    // none: the preferred one
    QString plane;                 // null: the preferred one
    QString selectedPath;          // null: the registry's root
    QString screenshotFile;        // null: none
    QString captureFile;           // "-": standard output
};
