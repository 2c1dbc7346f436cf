// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QPalette>

// The contrast ratio of two colours, from 1 to 21, as defined by accessibility guidelines.
double contrast(const QColor &a, const QColor &b);

// Makes the colour just dark or light enough for text on the palette's plain and alternate rows.
// Selected rows have their own text colour.
QColor readableColor(const QColor &color, const QPalette &palette);
