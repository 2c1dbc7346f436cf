// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "explorer/sheets/Sheet.h"

// Asks for the interval of timed updates.
class TimedUpdateSheet : public Sheet
{
    Q_OBJECT
public:
    explicit TimedUpdateSheet(QWidget &window);

    void open(double pollInterval); // seconds

Q_SIGNALS:
    void pollIntervalEntered(double seconds);

private:
    void report() override;

    QLineEdit *timedUpdateField_;
};
