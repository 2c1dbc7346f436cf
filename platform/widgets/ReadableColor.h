#pragma once

#include <QPalette>

// How far two colours stand apart, from 1 to 21, as accessibility guidelines count it.
double contrast(const QColor &a, const QColor &b);

// The colour, made only as much darker or lighter as it takes to read text in it on the palette's
// plain and alternate rows. Rows that are selected have a text colour of their own.
QColor readableColor(const QColor &color, const QPalette &palette);
