#pragma once

#include <QObject>

// Tells one click or key press of the user from the next, since a view may open many rows in
// answer to a single one. Main thread only.
class InputEvents : public QObject
{
public:
    // Watches the application from the first call on.
    static InputEvents &instance();

    quint64 current() const { return current_; }  // grows with every click and key press
    bool isAltHeld() const { return isAltHeld_; } // in the current one

protected:
    bool eventFilter(QObject *receiver, QEvent *event) override;

private:
    explicit InputEvents(QObject *parent);

    quint64 current_ = 0;
    bool isAltHeld_ = false;
};
