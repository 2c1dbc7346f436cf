// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDateTime>

// Dates as the user's locale writes them, in local time.
namespace DateText {
QString shortDate(const QDateTime &date);
QString mediumTime(const QDateTime &date); // with seconds, without the time zone
} // namespace DateText
