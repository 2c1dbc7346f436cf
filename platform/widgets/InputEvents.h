// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>

// Counts the user's clicks and key presses, so that all rows that one of them opens can be
// recognised. Process-wide: it watches the application's events. Main thread only.
class InputEvents : public QObject
{
public:
    // Watches the application from the first call.
    static InputEvents &instance();

    quint64 current() const { return current_; }  // incremented by every click and key press
    bool isAltHeld() const { return isAltHeld_; } // in the current event

protected:
    bool eventFilter(QObject *receiver, QEvent *event) override;

private:
    explicit InputEvents(QObject *parent);

    quint64 current_ = 0;
    bool isAltHeld_ = false;
};
