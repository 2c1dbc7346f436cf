// SPDX-License-Identifier: Apache-2.0
#include "cli/ReadingInterval.h"

#include "cli/CommandError.h"
#include "cli/CommandInput.h"

#include <QCoreApplication>
#include <cmath>

std::chrono::milliseconds readingInterval(const CommandInput &input)
{
    constexpr double shortest = 0.2;
    constexpr double longest = 60;
    const double seconds = input.number("interval", longest).value_or(1);
    if (seconds < shortest)
        throw CommandError{
            QCoreApplication::translate("ReadingInterval", "--interval must be from 0.2 to 60."),
            ExitCode::WrongUsage};
    return std::chrono::milliseconds(std::llround(seconds * 1000));
}
