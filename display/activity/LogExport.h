// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "activity/EventLog.h"

#include <span>

class QIODevice;

// Writes rows of a log as lines of text, as CSV, or as one JSON object a line with the members that
// the command "watch" writes.
namespace LogExport {
enum class Format : quint8 { Text, Csv, Ndjson };

// The rows have these numbers; those that are no longer there are left out. False: not written.
bool write(const EventLog &log, std::span<const quint64> numbers, Format format, QIODevice &device);
QString text(const LogRow &row); // lines, without the last line's end
} // namespace LogExport
