// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QStringList>

// Finds what the user may have meant by a name that does not exist.
namespace NearestText {
// The candidate with the fewest differences. Null if all are too different.
QString among(const QStringList &candidates, const QString &text);
} // namespace NearestText
