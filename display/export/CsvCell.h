// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

class Utf8Output;

// A text as a cell of a line of comma-separated values. A text that a spreadsheet would take for a
// formula gets an apostrophe; characters that control a terminal are escaped.
QString csvCell(const QString &text);
void addCsvLine(const QStringList &texts, Utf8Output &output);
