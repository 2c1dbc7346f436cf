// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

// On one line and harmless on a terminal: characters that control it or turn its direction become
// \n, \t, \x1b or \u202e.
QString escapedText(const QString &text);
