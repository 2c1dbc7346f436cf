// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/runloop/LongWork.h"

struct Alert;

// What code without a display needs from the desktop. Process-wide: a process has one desktop, and
// documents, stores and windows all reach it. The program fills it at start-up; a null service
// does nothing, as in a capture without a window and in most tests.
struct DesktopServices
{
    using AlertAnswer = std::function<void(int button)>;

    std::function<void(const Alert &alert, AlertAnswer answer)> presentAlert;
    std::function<void()> beep;
    std::function<void(const QString &file)> revealFile; // in its folder, selected
    std::function<void(const QString &file, const QString &mimeType)> noteRecentFile;
    std::function<std::unique_ptr<WorkDisplay>(const QString &title, LongWork::Kind kind)>
        makeWorkDisplay;

    static DesktopServices &instance();
};
