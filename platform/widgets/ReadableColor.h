// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QPalette>

// The contrast ratio of two colours, from 1 to 21, as defined by accessibility guidelines.
double contrast(const QColor &a, const QColor &b);

// A paler variant of a text's colour for what is less important, or the same colour where a paler
// one could not be read on the background.
QColor paleColor(const QColor &color, const QColor &background);

// Makes the colour just dark or light enough for text on the palette's plain and alternate rows.
// Selected rows have their own text colour.
QColor readableColor(const QColor &color, const QPalette &palette);
