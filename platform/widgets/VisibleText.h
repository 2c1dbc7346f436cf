#pragma once

#include <QString>

// A character of a text from outside: one that controls, or that turns the writing direction, is
// replaced by a visible one.
QChar visibleCharacter(QChar character);
// Every character keeps its place.
QString visibleCharacters(const QString &text);
// Ends in an ellipsis where it was longer.
QString cutText(const QString &text, qsizetype longest);
// As one line can show it: visible characters, and what is absurdly long is cut.
QString visibleText(const QString &text);
