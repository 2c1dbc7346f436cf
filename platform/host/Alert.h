// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/host/DesktopServices.h"

#include <QStringList>

class QWidget;

// A question or a message that the user answers with one of its buttons.
struct Alert
{
    enum class Kind : quint8 {
        Warning,
        Information,
        About, // shows the program's icon; the message is rich text
    };

    QString title;
    QString message;
    QStringList buttons = {};  // the first is the default, the last is Escape's; none: OK
    QString details = {};      // below the message; may be null
    QString moreDetails = {};  // behind a button; may be null
    QWidget *window = nullptr; // the window it is about; null for the whole program
    Kind kind = Kind::Warning;
    bool isModal = true; // blocks input to its window, or to the whole program
};

// Shows alerts on the desktop. Without one they are answered by their last button.
namespace AlertPanel {
// Returns immediately. The answer comes later, or never when the window closes first.
void show(const Alert &alert, DesktopServices::AlertAnswer answer = {});
} // namespace AlertPanel
