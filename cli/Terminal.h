// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

// What standard output can show.
struct Terminal
{
    bool isTerminal = false;
    bool hasColors = false;
    bool isUtf8 = false;
    int columns = 0; // 0: as long as it gets

    // Colours: "auto", "always" or "never".
    static Terminal ofStandardOutput(const QString &colors);
};
