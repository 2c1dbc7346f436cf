// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>

class QWidget;

// Tool tips that explain the facts of an entry and the planes.
namespace Explanations {
QString ofPlane(const QString &plane); // null for a plane that the program does not know
// Gives the labels, fields and boxes of a window's facts their tool tips.
void addTo(const QWidget &window);
} // namespace Explanations
